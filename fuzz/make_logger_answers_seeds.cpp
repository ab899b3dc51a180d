// Seeds of fuzz_logger_answers, made by code: readings at and past every label's limits, a
// calibrated and an uncalibrated setting, and dump blocks of the lengths the windows show.

#include "byte_order.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

void Write(const std::filesystem::path& folder, const std::string& name,
           const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(folder / name, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::uint8_t> Answer(std::int16_t fill, std::int16_t close, std::int16_t open,
                                 std::size_t dumpBytes) {
    std::vector<std::uint8_t> bytes(24 + 82 + 94 + dumpBytes, 0);
    for (std::size_t word = 0; word < 12; ++word) {
        torvane::PutLittleEndian(bytes, 2 * word, fill);
    }
    torvane::PutLittleEndian(bytes, 24 + 40, close);
    torvane::PutLittleEndian(bytes, 24 + 42, open);
    torvane::PutLittleEndian<std::int16_t>(bytes, 24 + 56, 2026);
    torvane::PutLittleEndian<std::int16_t>(bytes, 24 + 54, 3);
    torvane::PutLittleEndian<std::int16_t>(bytes, 24 + 52, 7);
    for (std::size_t i = 0; i < dumpBytes; ++i) {
        bytes[24 + 82 + 94 + i] = static_cast<std::uint8_t>(i * 13);
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    Write(folder, "calibrated", Answer(430, 102, 758, 94));
    Write(folder, "uncalibrated", Answer(-1, 0, 0, 17));
    Write(folder, "past-limits", Answer(32767, 758, 102, 1022));
    Write(folder, "short", {0x10, 0x27});
    return 0;
}
