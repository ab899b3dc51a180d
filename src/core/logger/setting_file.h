#pragma once
// SETTING.DAT, the last setting sent to the logger or first made here: the 82-byte setting record
// (the same 41 words as a logging file's header), kept in the initial-data folder. MT.DAT stands
// beside it.

#include "layout/file_image.h"
#include "logdata/log_header.h"
#include "tlm.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace torvane::logger {

inline constexpr std::string_view SettingFileName = "SETTING.DAT";
inline constexpr std::string_view MemoryTableFileName = "MT.DAT";

// The record as the window reads it: a file shorter than 82 bytes fills the words it holds and
// leaves the rest 0, as a plain read of the record would, and only the first 82 bytes of a longer
// one count. nullopt with the failure set when the file cannot be read (missing, a folder, a
// FIFO, no permission).
std::optional<logdata::LogHeader> LoadSetting(const std::filesystem::path& file,
                                              layout::FileFailure& failure);

// Replaces the file through a temporary file beside it, so that a failure leaves the old one.
bool SaveSetting(const std::filesystem::path& file, const logdata::LogHeader& setting,
                 layout::FileFailure& failure);

// The record as it crosses the link and as the program keeps it: the same 41 words.
logdata::LogHeader HeaderOf(const TlmSettingData& record);
TlmSettingData RecordOf(const logdata::LogHeader& header);

// The record's fields by their names without the type prefix ("Sus", "NeTime", "VmTime"...), in
// the record's order. A field of several words (VmTime, the reserved runs) names its first word
// and its count.
struct SettingField {
    std::string_view Name;
    int FirstWord = 0;
    int Words = 1;
};
const std::vector<SettingField>& SettingFields();

} // namespace torvane::logger
