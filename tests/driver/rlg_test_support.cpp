#include "rlg_test_support.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "byte_order.h"
#include "rlg_format.h"

namespace torvane::rlg::test {

namespace fs = std::filesystem;

HeaderBytes MakeHeader(unsigned seed) {
    std::mt19937 engine(seed);
    HeaderBytes header{};
    std::generate(header.begin(), header.end(),
                  [&] { return static_cast<std::uint8_t>(engine() & 0xFF); });
    return header;
}

std::vector<std::int16_t> RandomSamples(std::size_t count, unsigned seed) {
    std::mt19937 engine(seed);
    std::vector<std::int16_t> samples(count);
    std::generate(samples.begin(), samples.end(),
                  [&] { return static_cast<std::int16_t>(engine() & 0xFFFF); });
    return samples;
}

std::vector<std::int16_t> SensorSamples(std::size_t count, unsigned seed) {
    std::mt19937 engine(seed);
    std::uniform_int_distribution<int> noise(-3, 3);
    std::vector<std::int16_t> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double wave = 12000.0 * std::sin(static_cast<double>(i) / 400.0);
        samples[i] = static_cast<std::int16_t>(std::lround(wave) + noise(engine));
    }
    return samples;
}

std::vector<StreamData> RunStreams(unsigned seed) {
    const std::vector<std::string> names{"Ne", "TH",  "VFW", "VRW", "DETO1", "DETO2",
                                         "VB", "VM1", "VM2", "VM3", "VM4",   "LAP"};
    std::vector<StreamData> streams;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t count = i == 11 ? 0 : 1 + 997 * (i + 1) % 4001;
        streams.push_back({names[i], i % 3 == 0 ? RandomSamples(count, seed + unsigned(i))
                                                : SensorSamples(count, seed + unsigned(i))});
    }
    return streams;
}

std::vector<std::uint8_t> BuildContainer(const HeaderBytes& header,
                                         const std::vector<StreamData>& streams) {
    std::vector<std::string> names;
    for (const auto& stream : streams) {
        names.push_back(stream.Name);
    }
    RlgWriter writer(header, names);
    for (std::size_t i = 0; i < streams.size(); ++i) {
        writer.Append(i, streams[i].Samples);
    }
    return writer.Finish();
}

std::vector<std::int16_t> ReadWords(const fs::path& path) {
    const auto bytes = ReadBytes(path);
    std::vector<std::int16_t> words(bytes.size() / 2);
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<std::int16_t>(GetLittleEndian<std::uint16_t>(bytes, 2 * i));
    }
    return words;
}

void ResealHead(std::vector<std::uint8_t>& file) {
    const std::size_t count = GetLittleEndian<std::uint16_t>(file, format::StreamCountOffset);
    const std::size_t crcOffset = format::HeadSize(count) - format::CrcSize;
    if (crcOffset + format::CrcSize > file.size()) {
        return; // a stream count that no head of this file can have
    }
    PutLittleEndian(std::span(file), crcOffset,
                    format::UpdateCrc32(0, std::span(file).first(crcOffset)));
}

} // namespace torvane::rlg::test
