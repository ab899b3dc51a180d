// logger status, list, download and clear: the logger windows' work from the command line.

#include "binding/tlm_driver.h"
#include "cli/cli_support.h"
#include "cli/commands.h"
#include "cli/deployed_run.h"
#include "cli/live_commands.h"
#include "cli/setting_output.h"
#include "logger/clear_logger.h"
#include "logger/download.h"
#include "logger/file_list.h"
#include "logger/logger_action.h"
#include "shell/number_format.h"
#include "views/detonation_logger.h"
#include "views/detonation_map.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <system_error>

namespace torvane::cli {
namespace {

using logger::LoggerLink;
using nlohmann::json;

std::string StateName(std::uint8_t state) {
    switch (state) {
    case TLM_STATE_INITIALIZING:
        return "initialising";
    case TLM_STATE_IDLE:
        return "idle";
    case TLM_STATE_ACQUIRING:
        return "acquiring data";
    case TLM_STATE_SENDING:
        return "sending logging data";
    case TLM_STATE_WRITING_FLASH:
        return "writing flash memory";
    case TLM_STATE_THROTTLE_INIT:
        return "throttle initialisation";
    case TLM_STATE_SUSPENSION_INIT:
        return "suspension initialisation";
    case TLM_STATE_READY:
        return "ready";
    case TLM_STATE_SERVICE:
        return "service mode";
    case TLM_STATE_BROKEN:
        return "out of order";
    default:
        return "unknown";
    }
}

int Status(LoggerLink& link, bool asJson) {
    // A plain look: whatever the logger is doing, it is neither asked nor waited for.
    const logger::ActionOptions options{.WhenAcquiring = logger::WhenAcquiring::LetThrough,
                                        .CheckState = false,
                                        .WaitUntilReady = false,
                                        .GiveBackAcquisition = false};
    TlmStatus status{};
    if (!logger::RunLoggerAction(link, options, [&](logger::ActionContext&) {
             status = link.Status;
             return logger::results::Ok;
         }).Done) {
        return 1;
    }
    if (asJson) {
        std::cout << json{{"state", status.bytState},
                          {"stateName", StateName(status.bytState)},
                          {"sense", status.bytSense},
                          {"error", status.bytError},
                          {"flags", status.bytFlags}}
                         .dump()
                  << '\n';
    } else {
        std::cout << "state  " << int{status.bytState} << " (" << StateName(status.bytState)
                  << ")\nsense  " << int{status.bytSense} << "\nerror  " << int{status.bytError}
                  << "\nflags  0x" << shell::FormatNumber(status.bytFlags, "00") << '\n';
    }
    return 0;
}

void PrintRows(const std::vector<logger::FileListRow>& rows) {
    std::cout << "FileName  Measurement time  Data size[Kbyte]  Download\n";
    for (const auto& row : rows) {
        std::cout << shell::FormatText(row.FileName, "@@@@@@@@") << "  "
                  << shell::FormatText(row.MeasurementTime, "@@@@@@@@@@@@@@") << "    "
                  << shell::FormatText(row.DataSize, "@@@@@@@@@@@@@@@@") << "    " << row.Download
                  << '\n';
    }
}

int List(LoggerLink& link, bool asJson) {
    const auto list = logger::ReadLoggerFileList(link);
    if (!list) {
        return 1;
    }
    const auto rows = logger::FileListRows(list->Entries);
    if (!asJson) {
        PrintRows(rows);
        return 0;
    }
    json files = json::array();
    for (const auto& row : rows) {
        const TlmDownloadEntry& entry = list->Entries[row.EntryIndex];
        files.push_back({{"number", entry.intNumber},
                         {"done", entry.intDone != 0},
                         {"seconds", entry.lngSeconds},
                         {"size", entry.lngSize}});
    }
    std::cout << files.dump() << '\n';
    return 0;
}

// Shows the transfer's progress on a terminal; nothing else of the window applies here.
class TerminalProgress : public logger::DownloadObserver {
public:
    TerminalProgress(std::int32_t size)
        : size_(size)
        , shown_(::isatty(STDERR_FILENO) == 1) {}
    ~TerminalProgress() override {
        if (shown_ && started_) {
            std::cerr << '\n';
        }
    }
    TerminalProgress(const TerminalProgress&) = delete;
    TerminalProgress& operator=(const TerminalProgress&) = delete;

    void Progress(std::int64_t bytesSoFar) override {
        if (shown_) {
            started_ = true;
            std::cerr << "\rDownloading: " << bytesSoFar << " of " << size_ << " bytes"
                      << std::flush;
        }
    }

private:
    std::int32_t size_;
    bool shown_;
    bool started_ = false;
};

int Download(LoggerLink& link, int number, const std::filesystem::path& output) {
    const auto list = logger::ReadLoggerFileList(link);
    if (!list || list->Entries.empty()) {
        return 1;
    }
    const bool held =
        std::any_of(list->Entries.begin(), list->Entries.end(),
                    [number](const auto& entry) { return entry.intNumber == number; });
    if (!held) {
        return Fail("The logger holds no file " + std::to_string(number) + ".");
    }
    const TlmDownloadEntry* entry = logger::ChooseDownloadEntry(list->Entries, number, link.Sink);
    if (entry == nullptr) {
        return 1;
    }
    logger::DownloadOutcome outcome;
    {
        TerminalProgress progress(entry->lngSize);
        outcome = logger::DownloadFile(link, *entry, output, progress, logger::ReplaceWhen::Whole);
    }
    if (outcome.Ok && !outcome.Whole) {
        // The logger ended the transfer early without a failure (a sense code): OUT is untouched.
        return Fail("The logger sent no whole file; " + output.string() + " was not written.");
    }
    if (!outcome.Ok) {
        return 1;
    }
    std::error_code ignored;
    if (!std::filesystem::exists(output, ignored)) {
        return Fail("The logger wrote no file: " + output.string());
    }
    return 0;
}

int Clear(LoggerLink& link) {
    const auto list = logger::ReadLoggerFileList(link);
    if (!list) {
        return 1;
    }
    if (list->Entries.empty()) {
        return 0;
    }
    if (!list->ClearAllowed) {
        return Fail("The logger's program can not clear its memory.");
    }
    return logger::ClearLogger(link) == logger::ClearOutcome::Cleared ? 0 : 1;
}

// The logger's map through a work file in a private folder, kept as OUT.
int Detonation(LoggerLink& link, const std::filesystem::path& output, bool asJson) {
    const DeployedRun folder;
    const std::filesystem::path work =
        views::GetDetonationFromLogger(link, folder.Layers().TempDir);
    if (work.empty()) {
        return 1;
    }
    const auto state = views::LoadDetonationMap(views::DetonationSource::Logger, work, link.Sink);
    if (!state || !views::SaveDetonationFile(*state, output, link.Sink)) {
        return 1;
    }
    PrintDetonation(*state, asJson);
    return 0;
}

// Counts what the operator was told, so that a command that failed silently can say so: the
// program leaves some endings untold (a logger stopped on an error, a question answered No).
class CountingSink : public shell::MessageSink {
public:
    explicit CountingSink(shell::MessageSink& target)
        : target_(target) {}
    int Show(const shell::Message& message) override {
        ++Shown;
        return target_.Show(message);
    }
    int Shown = 0;

private:
    shell::MessageSink& target_;
};

int Run(LoggerLink& link, const LoggerOptions& options) {
    switch (options.Command) {
    case LoggerCommand::Status:
        return Status(link, options.Json);
    case LoggerCommand::List:
        return List(link, options.Json);
    case LoggerCommand::Download:
        return Download(link, options.Number, options.Output);
    case LoggerCommand::Clear:
        return Clear(link);
    case LoggerCommand::Setting: {
        logger::MemoryTable table{};
        return MemoryTableFor(options.MemoryTable, table)
                   ? ReadLoggerSetting(link, table, options.Json)
                   : 1;
    }
    case LoggerCommand::Send:
        return SendLoggerSetting(link, options.Input);
    case LoggerCommand::Monitor:
        return Monitor(link, options);
    case LoggerCommand::Dump:
        return Dump(link, options);
    case LoggerCommand::Service:
        return Service(link, options);
    case LoggerCommand::Detonation:
        return Detonation(link, options.Output, options.Json);
    }
    return 1;
}

} // namespace

int Logger(const LoggerOptions& options) {
    if (options.Command == LoggerCommand::Service && !options.Yes) {
        return Fail("A service function changes the logger; add --yes to run " + options.What +
                    ".");
    }
    StderrSink stderrSink(options.Yes);
    CountingSink sink(stderrSink);
    binding::TlmDriver driver;
    LoggerLink link(driver, sink);
    const int status = Run(link, options);
    if (status != 0 && sink.Shown == 0) {
        return Fail("The logger did not finish the command; \"torvane-cli logger status\" shows "
                    "its state.");
    }
    return status;
}

} // namespace torvane::cli
