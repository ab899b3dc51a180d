// Writes the seed corpus of fuzz_histogram into the folder given on the command line: a
// calibration, the two texts of the range dialog and a short stream, as the target reads them.

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

void WriteSeed(const std::filesystem::path& file, std::int16_t open, std::int16_t close,
               const std::string& start, const std::string& end,
               const std::vector<std::int16_t>& words) {
    std::ofstream out(file, std::ios::binary);
    for (const std::int16_t value : {open, close}) {
        out.put(static_cast<char>(value & 0xFF)).put(static_cast<char>((value >> 8) & 0xFF));
    }
    out << start << '\n' << end << '\n';
    for (const std::int16_t value : words) {
        out.put(static_cast<char>(value & 0xFF)).put(static_cast<char>((value >> 8) & 0xFF));
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::vector<std::int16_t> wave(600);
    for (std::size_t i = 0; i < wave.size(); ++i) {
        wave[i] = static_cast<std::int16_t>(
            500 + std::lround(400 * std::sin(static_cast<double>(i) / 30.0)));
    }
    WriteSeed(folder / "whole-range", 758, 102, "0", "20000", wave);
    WriteSeed(folder / "narrow-range", 758, 102, "1000", "1021", wave);
    WriteSeed(folder / "no-span", 100, 100, "10.00", "99999", {25, 26, 200, -5});
    WriteSeed(folder / "refused-range", 900, 100, "100", "119", {1000, 1000, 999});
    return 0;
}
