#pragma once
// Fixtures of the container tests, all made by code from fixed seeds.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "rlg_container.h"
#include "support/temp_folder.h"

namespace torvane::rlg::test {

using torvane::testing::ReadBytes;
using torvane::testing::TempFolder;
using torvane::testing::WriteBytes;

struct StreamData {
    std::string Name;
    std::vector<std::int16_t> Samples;
};

HeaderBytes MakeHeader(unsigned seed);
std::vector<std::int16_t> RandomSamples(std::size_t count, unsigned seed);
// A slowly varying sensor word with a little noise, as the logger records it.
std::vector<std::int16_t> SensorSamples(std::size_t count, unsigned seed);
// The twelve streams of a run: eleven sampled channels of different lengths and an empty LAP.
std::vector<StreamData> RunStreams(unsigned seed);

// Each stream appended in one piece.
std::vector<std::uint8_t> BuildContainer(const HeaderBytes& header,
                                         const std::vector<StreamData>& streams);

std::vector<std::int16_t> ReadWords(const std::filesystem::path& path);

// Recomputes the head CRC after a test has changed a field of the head, where the stream count
// still leaves room for one.
void ResealHead(std::vector<std::uint8_t>& file);

} // namespace torvane::rlg::test
