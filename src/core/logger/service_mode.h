#pragma once
// frmTLM0060's behaviour, service mode: the logger's built-in functions, its identity block and
// error log read and shown as hexadecimal dumps and saved raw, and the heat runs. Each function
// takes a link of its own; only a heat run holds one for its whole length, and while it runs
// nothing else of the window may start.

#include "logger/heat_run.h"
#include "logger/logger_link.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace torvane::logger {

// The built-in functions, by their service codes.
enum class ServiceFunction : std::int16_t {
    InitialConfiguration = TLM_SERVICE_INITIAL_CONFIGURATION,
    Test1 = TLM_SERVICE_TEST1,
    Test2 = TLM_SERVICE_TEST2,
};

enum class ServiceDump { SpecialData, ErrorCode };

// The window's controls that a heat run disables; cmdHeatEnd of the running one is the only
// button left.
enum class ServiceControl { Heat, HeatEnd, Test, Initial, Special, Error };

class ServiceMode {
public:
    ServiceMode(Driver& driver, shell::MessageSink& sink, std::filesystem::path tempDir,
                logger::Pause pause = SleepFor)
        : link_(driver, sink, std::move(pause))
        , tempDir_(std::move(tempDir)) {}

    // cmdInitial, cmdTest: runs the function and tells how it went; true when it completed
    // normally.
    bool RunFunction(ServiceFunction function);
    // cmdSpecial, cmdError: reads the block and shows it in the dump; false when it could not be
    // read (the operator has been told).
    bool ReadSpecialData();
    bool ReadErrorCode();

    // Starts a heat run; nothing when one runs already. The window steps the returned activity
    // and calls HeatRunEnded when its last step has run.
    shell::SteppedActivity* StartHeatRun(HeatRunKind kind);
    // cmdHeatEnd.
    void RequestHeatRunEnd();
    void HeatRunEnded();
    const HeatRun* RunningHeatRun() const { return heatRun_.get(); }

    // Whether a control answers now; index names cmdHeat(i) and cmdHeatEnd(i).
    bool Enabled(ServiceControl control, int index = 0) const;

    // txtDump.
    const std::string& DumpText() const { return dump_; }
    // The last block read of each kind (zeros before the first read).
    std::span<const std::uint8_t> Bytes(ServiceDump dump) const;

private:
    void ShowErrorState();

    LoggerLink link_;
    std::filesystem::path tempDir_;
    std::array<std::uint8_t, TLM_SPECIAL_DATA_SIZE> special_{};
    std::array<std::uint8_t, TLM_ERROR_INFO_SIZE> error_{};
    std::string dump_;
    std::unique_ptr<HeatRun> heatRun_;
    int heatIndex_ = 0;
};

// Writes a dump's bytes raw to `file`, with no header, as mnuSaveSp and mnuSaveErr do: an
// existing longer file keeps its tail beyond them. The file is written beside its place and
// renamed, so a failure leaves the old file (or none) as it was. False after telling the
// operator why.
bool SaveDump(std::span<const std::uint8_t> bytes, const std::filesystem::path& file,
              shell::MessageSink& sink);

} // namespace torvane::logger
