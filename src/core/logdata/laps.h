#pragma once
// Lap marks of a layer, read from its LAP stream.

#include "logdata/layer.h"

#include <cstdint>

namespace torvane::logdata {

// The time of a lap mark: LAP word w of 300 ms step n (from 1) counts 5 ms ticks back from the
// step's end, so marks are resolved to 5 ms.
double LapMarkTime(std::int64_t step, int word);

// Number of lap marks in a LapInfo: entry 0 is there even when no mark is.
std::size_t LapMarkCount(const LapInfo& lap);

// Builds the layer's LapInfo from its LAP stream (empty when no marks were logged) and places
// the layer's row in the lap bar below the rows of the layers before it that have marks.
void ReadLapFile(LayerSet& layers, int layer);

} // namespace torvane::logdata
