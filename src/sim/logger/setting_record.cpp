#include "logger/setting_record.h"

#include <array>
#include <bit>
#include <cstdint>

namespace torvane::sim {
namespace {

// TlmSettingData is nothing but 41 words in word order; bit_cast sees them as an array without
// caring how the fields are named.
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

} // namespace torvane::sim
