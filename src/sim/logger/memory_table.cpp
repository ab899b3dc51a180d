#include "logger/memory_table.h"

#include <fstream>

namespace torvane::sim {
namespace {

using logdata::SettingWord;

constexpr std::array<int, 6> PeriodsMs{5, 10, 25, 50, 100, 300};
constexpr int PeriodsPerRow = static_cast<int>(PeriodsMs.size());

// The table's rows are not in the setting's word order.
constexpr std::array<SettingWord, 9> RowWords{
    SettingWord::NeTime,  SettingWord::VfwTime, SettingWord::VrwTime,
    SettingWord::ThTime,  SettingWord::VbTime,  SettingWord::Vm1Time,
    SettingWord::Vm2Time, SettingWord::Vm3Time, SettingWord::Vm4Time};
constexpr std::size_t Deto1Byte = 54;
constexpr std::size_t Deto2Byte = 55;
constexpr int LapStepMs = 300;

} // namespace

MemoryTable DefaultMemoryTable() {
    MemoryTable table{};
    for (std::size_t i = 0; i < RowWords.size() * PeriodsPerRow; ++i) {
        table[i] = 1;
    }
    return table;
}

std::optional<MemoryTable> LoadMemoryTable(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    MemoryTable table{};
    if (!in.read(reinterpret_cast<char*>(table.data()),
                 static_cast<std::streamsize>(table.size()))) {
        return std::nullopt;
    }
    return table;
}

std::int64_t BytesPer300Ms(const MemoryTable& table, const logdata::LogHeader& setting) {
    std::int64_t total = 0;
    for (std::size_t row = 0; row < RowWords.size(); ++row) {
        const int period = setting.Word(RowWords[row]);
        for (std::size_t column = 0; column < PeriodsMs.size(); ++column) {
            if (PeriodsMs[column] == period) {
                total += LapStepMs / period * table[row * PeriodsPerRow + column];
            }
        }
    }
    if (setting.Word(SettingWord::Deto1Time) != 0) {
        total += table[Deto1Byte];
    }
    if (setting.Word(SettingWord::Deto2Time) != 0) {
        total += table[Deto2Byte];
    }
    return total;
}

} // namespace torvane::sim
