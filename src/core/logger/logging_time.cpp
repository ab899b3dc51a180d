#include "logger/logging_time.h"

#include "shell/number_format.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace torvane::logger {
namespace {

// The logging memory times the 300 ms budget period.
constexpr double MemoryTimesPeriod = static_cast<double>(LoggingMemoryBytes) * 300.0;

// The setting words of the table's rows, in the table's order.
constexpr std::array<logdata::SettingWord, SampleRowCount> RowWords{
    logdata::SettingWord::NeTime,  logdata::SettingWord::VfwTime, logdata::SettingWord::VrwTime,
    logdata::SettingWord::ThTime,  logdata::SettingWord::VbTime,  logdata::SettingWord::Vm1Time,
    logdata::SettingWord::Vm2Time, logdata::SettingWord::Vm3Time, logdata::SettingWord::Vm4Time};

} // namespace

int PeriodIndex(int periodMs) {
    const auto found = std::find(SamplingPeriods.begin(), SamplingPeriods.end(), periodMs);
    return found == SamplingPeriods.end() ? -1 : static_cast<int>(found - SamplingPeriods.begin());
}

int SamplesPer300Ms(int periodIndex) {
    return 300 / SamplingPeriods.at(static_cast<std::size_t>(periodIndex));
}

MemoryTable DefaultMemoryTable() {
    MemoryTable table{};
    std::fill_n(table.begin(), SampleRowCount * PeriodCount, std::uint8_t{1});
    return table;
}

bool LoadMemoryTable(const std::filesystem::path& file, MemoryTable& table,
                     layout::FileFailure& failure) {
    std::error_code error;
    if (std::filesystem::symlink_status(file, error).type() ==
        std::filesystem::file_type::not_found) {
        table = DefaultMemoryTable();
        return true;
    }
    const auto bytes = layout::ReadFileImage(file, MemoryTableSize, failure);
    if (!bytes) {
        return false;
    }
    table = MemoryTable{};
    std::copy(bytes->begin(), bytes->end(), table.begin());
    return true;
}

SamplingChoice ChoiceOf(const logdata::LogHeader& setting) {
    SamplingChoice choice;
    for (std::size_t row = 0; row < RowWords.size(); ++row) {
        choice.Column[row] = PeriodIndex(setting.Word(RowWords[row]));
    }
    choice.Deto1 = setting.Word(logdata::SettingWord::Deto1Time) != 0;
    choice.Deto2 = setting.Word(logdata::SettingWord::Deto2Time) != 0;
    return choice;
}

std::int64_t BytesPer300Ms(const MemoryTable& table, const SamplingChoice& choice) {
    std::int64_t total = 0;
    for (int row = 0; row < SampleRowCount; ++row) {
        const int column = choice.Column[static_cast<std::size_t>(row)];
        if (column >= 0 && column < PeriodCount) {
            total += std::int64_t{SamplesPer300Ms(column)} *
                     table[static_cast<std::size_t>(row * PeriodCount + column)];
        }
    }
    total += choice.Deto1 ? table[Deto1Byte] : 0;
    total += choice.Deto2 ? table[Deto2Byte] : 0;
    return total;
}

std::string LoggingTimeText(std::int64_t bytesPer300Ms) {
    if (bytesPer300Ms <= 0) {
        return "0h 00m";
    }
    const double minutes =
        shell::RoundHalfEven(MemoryTimesPeriod / (static_cast<double>(bytesPer300Ms) * 60'000.0));
    const auto whole = static_cast<std::int64_t>(
        std::min(minutes, static_cast<double>(std::numeric_limits<std::int32_t>::max())));
    return shell::FormatNumber(static_cast<double>(whole / 60), shell::formats::Thousands) + "h " +
           shell::FormatNumber(static_cast<double>(whole % 60), shell::formats::TwoDigits) + "m";
}

} // namespace torvane::logger
