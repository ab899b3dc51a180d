// Writes the seed corpus of fuzz_decomp_logfile into the folder given on the command line:
// small valid logging files, each behind the control byte that the target expects.

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "rlg_container.h"

namespace {

using torvane::rlg::HeaderBytes;
using torvane::rlg::RlgWriter;

struct Seed {
    std::string Name;
    std::vector<std::string> Streams;
    std::size_t Samples;
};

std::vector<std::int16_t> Wave(std::size_t count, std::size_t stream) {
    std::vector<std::int16_t> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<std::int16_t>(
            std::lround(3000.0 * std::sin(static_cast<double>(i + 40 * stream) / 9.0)));
    }
    return samples;
}

std::vector<std::uint8_t> Container(const Seed& seed) {
    HeaderBytes header{};
    for (std::size_t i = 0; i < header.size(); ++i) {
        header[i] = static_cast<std::uint8_t>(i * 7);
    }
    RlgWriter writer(header, seed.Streams);
    for (std::size_t i = 0; i < seed.Streams.size(); ++i) {
        // The last stream stays empty, like LAP on a circuit without a timing line.
        const auto samples = Wave(i + 1 < seed.Streams.size() ? seed.Samples + i : 0, i);
        writer.Append(i, samples);
    }
    return writer.Finish();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    const std::filesystem::path folder(argv[1]);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const std::vector<Seed> seeds{
        {"one-stream", {"Ne", "LAP"}, 64},
        {"three-streams", {"Ne", "TH", "LAP"}, 33},
        {"run",
         {"Ne", "TH", "VFW", "VRW", "DETO1", "DETO2", "VB", "VM1", "VM2", "VM3", "VM4", "LAP"},
         20},
        {"empty", {"Ne", "LAP"}, 0},
        {"no-streams", {}, 0},
    };
    for (const auto& seed : seeds) {
        const auto file = Container(seed);
        for (const std::uint8_t control : {std::uint8_t{0x15}, std::uint8_t{0x14}}) {
            const auto path = folder / (seed.Name + (control & 1 ? "-repaired" : "-as-is"));
            std::ofstream out(path, std::ios::binary | std::ios::trunc);
            out.put(static_cast<char>(control));
            out.write(reinterpret_cast<const char*>(file.data()),
                      static_cast<std::streamsize>(file.size()));
            if (!out) {
                std::fprintf(stderr, "cannot write %s\n", path.c_str());
                return 1;
            }
        }
    }
    return 0;
}
