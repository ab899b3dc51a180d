#pragma once
// The logger's file list as the download dialog reads and shows it.

#include "logger/logger_link.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace torvane::logger {

struct LoggerFileList {
    // Every file in the logger, in the logger's order, listed or not.
    std::vector<TlmDownloadEntry> Entries;
    // The logger's program can clear its memory (program number 2 or later).
    bool ClearAllowed = false;
};

// Reads the list over one link, letting an acquiring logger through. Nothing when the link
// failed or the logger was busy (the operator has been told); an empty list when the logger
// holds no file (told "There is no file in Logger.").
std::optional<LoggerFileList> ReadLoggerFileList(LoggerLink& link);

// Files of 3 seconds or less are not listed (they stay among the entries).
bool IsListed(const TlmDownloadEntry& entry);

// One row of the list: the texts of its five columns.
struct FileListRow {
    std::string Number;          // "000"; the row's own text, which a download is chosen by
    std::string FileName;        // "000" again
    std::string MeasurementTime; // "001H02M05S"
    std::string DataSize;        // kilobytes: size / 1024 + 1
    std::string Download;        // "Done" or "None"
    std::size_t EntryIndex = 0;
};

std::vector<FileListRow> FileListRows(std::span<const TlmDownloadEntry> entries);

std::string MeasurementTimeText(std::int32_t seconds);
std::string DataSizeText(std::int32_t size);

// The first entry of the chosen number. A file shorter than 4 seconds is refused with a warning
// and gives nothing; so does a number that is not in the list.
const TlmDownloadEntry* ChooseDownloadEntry(std::span<const TlmDownloadEntry> entries, int number,
                                            shell::MessageSink& sink);

} // namespace torvane::logger
