// Writes the seed corpus of fuzz_setting_files into the folder given on the command line: the
// fresh setting record, the default memory table, a record of every period and one of odd words,
// each behind the control byte that the target expects.

#include "logdata/log_header.h"
#include "logger/logging_time.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

void Write(const std::filesystem::path& file, std::uint8_t control,
           const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.put(static_cast<char>(control));
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::uint8_t> Bytes(const torvane::logdata::LogHeader& header) {
    const auto bytes = header.ToBytes();
    return {bytes.begin(), bytes.end()};
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    using torvane::logdata::SettingWord;
    const std::filesystem::path folder = argv[1];
    Write(folder / "fresh", 0, Bytes(torvane::logdata::FreshSetting()));
    const auto table = torvane::logger::DefaultMemoryTable();
    Write(folder / "table", 1, {table.begin(), table.end()});

    torvane::logdata::LogHeader every = torvane::logdata::FreshSetting();
    const int periods[] = {5, 10, 25, 50, 100, 300, 5, 10, 25, 50, 100};
    for (int entry = 0; entry < torvane::logdata::SampleTimeCount; ++entry) {
        every.SetSampleTime(entry, static_cast<std::int16_t>(periods[entry]));
    }
    every.SetWord(SettingWord::Year, 2026);
    every.SetWord(SettingWord::Month, 2);
    every.SetWord(SettingWord::Day, 28);
    Write(folder / "every-period", 1, Bytes(every));

    torvane::logdata::LogHeader odd;
    for (int word = 0; word < torvane::logdata::LogHeaderWords; ++word) {
        odd.SetWord(word, static_cast<std::int16_t>(word % 2 == 0 ? -32768 : 32767));
    }
    Write(folder / "odd-words", 0, Bytes(odd));
    Write(folder / "short", 0, {0x05, 0x00, 0x19});
    return 0;
}
