#include "logger/setting_file.h"

#include <algorithm>
#include <array>
#include <bit>

namespace torvane::logger {
namespace {

// TlmSettingData is nothing but 41 words in word order.
using Words = std::array<std::int16_t, logdata::LogHeaderWords>;
static_assert(sizeof(Words) == sizeof(TlmSettingData));

} // namespace

logdata::LogHeader HeaderOf(const TlmSettingData& record) {
    const auto words = std::bit_cast<Words>(record);
    logdata::LogHeader header;
    for (int i = 0; i < logdata::LogHeaderWords; ++i) {
        header.SetWord(i, words[static_cast<std::size_t>(i)]);
    }
    return header;
}

TlmSettingData RecordOf(const logdata::LogHeader& header) {
    Words words{};
    for (int i = 0; i < logdata::LogHeaderWords; ++i) {
        words[static_cast<std::size_t>(i)] = header.Word(i);
    }
    return std::bit_cast<TlmSettingData>(words);
}

std::optional<logdata::LogHeader> LoadSetting(const std::filesystem::path& file,
                                              layout::FileFailure& failure) {
    const auto bytes = layout::ReadFileImage(file, logdata::LogHeaderSize, failure);
    if (!bytes) {
        return std::nullopt;
    }
    logdata::LogHeader::Bytes record{};
    std::copy(bytes->begin(), bytes->end(), record.begin());
    return logdata::LogHeader::FromBytes(record);
}

bool SaveSetting(const std::filesystem::path& file, const logdata::LogHeader& setting,
                 layout::FileFailure& failure) {
    const auto bytes = setting.ToBytes();
    std::filesystem::path temporary = file;
    temporary += ".tmp";
    return layout::ReplaceFileImage(file, temporary, bytes, failure);
}

const std::vector<SettingField>& SettingFields() {
    static const std::vector<SettingField> fields{
        {"Sus", 0},       {"NeTime", 1},    {"ThTime", 2},         {"VfwTime", 3},
        {"VrwTime", 4},   {"Deto1Time", 5}, {"Deto2Time", 6},      {"VbTime", 7},
        {"VmTime", 8, 4}, {"PulseF", 12},   {"PulseR", 13},        {"CmF", 14},
        {"CmR", 15},      {"StartTh", 16},  {"StartNe", 17},       {"Engine", 18},
        {"Shift", 19},    {"ThClose", 20},  {"ThOpen", 21},        {"FrZero", 22},
        {"RrZero", 23},   {"Minute", 24},   {"Hour", 25},          {"Day", 26},
        {"Month", 27},    {"Year", 28},     {"Reserved29", 29, 6}, {"Program", 35},
        {"LapOn", 36},    {"Laf", 37},      {"Reserved38", 38, 2}, {"Reserved40", 40},
    };
    return fields;
}

} // namespace torvane::logger
