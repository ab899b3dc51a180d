#pragma once
// A detonation map computed from a deployed run. The detonation counters hold one count per
// 300 ms period; each period is placed by the engine speed and the throttle opening of its last
// sample, read through the streams in blocks of periods, so memory stays the same whatever the
// length of the run.

#include "logdata/layer.h"
#include "logdata/log_header.h"
#include "shell/message_sink.h"
#include "views/dto_file.h"

#include <cstdint>
#include <filesystem>

namespace torvane::views {

inline constexpr int DetonationPeriodMs = 300;
// Periods read in one pass over the four streams.
inline constexpr std::int64_t PeriodsPerBlock = 100;

// The four streams a map is made of; an empty path reads as an empty stream.
struct DetonationStreams {
    std::filesystem::path Ne;
    std::filesystem::path Th;
    std::filesystem::path Deto1;
    std::filesystem::path Deto2;
};

// The map of the streams with the run time (s) and distance (km) beside it. Unreadable streams
// read as empty ones.
DetonationContent ComputeDetonationMap(const DetonationStreams& streams,
                                       const logdata::LogHeader& header, std::int64_t runDistance,
                                       std::int64_t runTime);

// The map written to a fresh work file in tempDir: its path, or an empty path after telling the
// operator why it could not be written.
std::filesystem::path GetDetonationFromLayer(const DetonationStreams& streams,
                                             const logdata::LogHeader& header,
                                             std::int64_t runDistance, std::int64_t runTime,
                                             const std::filesystem::path& tempDir,
                                             shell::MessageSink& sink);

// The distance a layer's run covered in whole km, from its front wheel speed (km/h), else its
// rear one; 0 when neither was logged.
std::int64_t LayerRunDistance(const logdata::LayerSet& layers, int layer);

// The run time of a layer in whole seconds: its measurement time rounded to a whole ms, divided
// by 1000 without remainder.
std::int64_t LayerRunTime(const logdata::LayerRecord& record);

// The map of a window's layer, as the frame's "OpenFile" entry makes it.
std::filesystem::path GetDetonationOfLayer(const logdata::LayerSet& layers, int layer,
                                           shell::MessageSink& sink);

} // namespace torvane::views
