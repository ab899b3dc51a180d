#include "logger/file_list.h"

#include "logger/driver_calls.h"
#include "logger/logger_action.h"
#include "shell/common.h"
#include "shell/number_format.h"

#include <charconv>

namespace torvane::logger {
namespace {

using shell::FormatNumber;
namespace formats = shell::formats;

constexpr int FirstProgramThatClears = 2;
constexpr std::int64_t ShortestListedMs = 3001;
constexpr std::int32_t ShortestDownloadSeconds = 4;

int ProgramNumber(const TlmSpecialData& special) {
    const std::string text = shell::BytesToString(special.bytProgramNo);
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

} // namespace

std::optional<LoggerFileList> ReadLoggerFileList(LoggerLink& link) {
    std::optional<LoggerFileList> list;
    const ActionOptions options{.WhenAcquiring = WhenAcquiring::LetThrough,
                                .WaitUntilReady = false,
                                .GiveBackAcquisition = false};
    RunLoggerAction(link, options, [&](ActionContext&) {
        int count = 0;
        if (const std::int32_t result = GetFileCount(link, count); result != 0) {
            return result;
        }
        if (count == 0) {
            shell::ShowMessage(link.Sink, "There is no file in Logger.", shell::buttons::Ok,
                               shell::icons::Information);
            list.emplace();
            return results::Ok;
        }
        LoggerFileList read;
        if (const std::int32_t result = GetDownloadList(link, count, read.Entries); result != 0) {
            return result;
        }
        TlmSpecialData special{};
        if (const std::int32_t result = ReadSpecialData(link, special); result != 0) {
            return result;
        }
        read.ClearAllowed = ProgramNumber(special) >= FirstProgramThatClears;
        list = std::move(read);
        return results::Ok;
    });
    return list;
}

bool IsListed(const TlmDownloadEntry& entry) {
    return std::int64_t{entry.lngSeconds} * 1000 >= ShortestListedMs;
}

std::string MeasurementTimeText(std::int32_t seconds) {
    return FormatNumber(seconds / 3600, formats::ThreeDigits) + "H" +
           FormatNumber(seconds % 3600 / 60, formats::TwoDigits) + "M" +
           FormatNumber(seconds % 60, formats::TwoDigits) + "S";
}

std::string DataSizeText(std::int32_t size) {
    return FormatNumber(size / 1024 + 1, formats::Integer);
}

std::vector<FileListRow> FileListRows(std::span<const TlmDownloadEntry> entries) {
    std::vector<FileListRow> rows;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const TlmDownloadEntry& entry = entries[i];
        if (!IsListed(entry)) {
            continue;
        }
        const std::string number = FormatNumber(entry.intNumber, formats::ThreeDigits);
        rows.push_back({number, number, MeasurementTimeText(entry.lngSeconds),
                        DataSizeText(entry.lngSize), entry.intDone != 0 ? "Done" : "None", i});
    }
    return rows;
}

const TlmDownloadEntry* ChooseDownloadEntry(std::span<const TlmDownloadEntry> entries, int number,
                                            shell::MessageSink& sink) {
    for (const TlmDownloadEntry& entry : entries) {
        if (entry.intNumber != number) {
            continue;
        }
        if (entry.lngSeconds < ShortestDownloadSeconds) {
            shell::ShowMessage(sink,
                               "Can not open the specified file,Because of excessive short "
                               "measurement time.",
                               shell::buttons::Ok, shell::icons::Warning);
            return nullptr;
        }
        return &entry;
    }
    return nullptr;
}

} // namespace torvane::logger
