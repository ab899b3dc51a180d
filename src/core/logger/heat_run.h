#pragma once
// The heat run: a long test that keeps one link open and, pass after pass until it is stopped,
// sends a setting and reads it back, starts the logger's function, reads live signals for
// about three minutes, reads the detonation map and downloads the first file to HEATRUN.TMP,
// then steps to the next setting. Each Step is a short piece of a pass, so that the window takes
// events (the end button among them) between pieces.

#include "logger/logger_link.h"
#include "shell/stepped_activity.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>

namespace torvane::logger {

inline constexpr const char* HeatRunFileName = "HEATRUN.TMP";
// Readings per pass, about three minutes at one every 30 ms.
inline constexpr int HeatSignalReadings = 6001;
inline constexpr std::chrono::milliseconds HeatSignalPause{30};
inline constexpr std::chrono::milliseconds HeatResetPause{1500};

// The three heat runs of the service window: 0 runs on acquisition itself, 1 and 2 on the
// logger's service functions 8 and 9.
enum class HeatRunKind { Acquisition = 0, Service2 = 1, Service3 = 2 };

// What the heat run does at a stage, for a window that shows it.
enum class HeatStage {
    Opening,
    SendingSetting,
    StartingFunction,
    ReadingSignals,
    ReadingDetonation,
    Downloading,
    NextSetting,
    Finished,
};

// Stage results besides the link's: a state the stage does not take, and a finished stage that
// has already told the operator (or had nothing to tell).
namespace heat_results {
inline constexpr std::int32_t UnexpectedState = 3;
inline constexpr std::int32_t Told = 5;
} // namespace heat_results

class HeatRun : public shell::SteppedActivity {
public:
    // errorLog receives the logger's error log when a logger that broke ends the run.
    HeatRun(LoggerLink& link, HeatRunKind kind, std::filesystem::path tempDir,
            std::function<void(std::span<const std::uint8_t>)> errorLog)
        : link_(link)
        , kind_(kind)
        , file_(std::move(tempDir) / HeatRunFileName)
        , errorLog_(std::move(errorLog)) {}
    ~HeatRun() override;
    HeatRun(const HeatRun&) = delete;
    HeatRun& operator=(const HeatRun&) = delete;

    bool Step() override;
    // cmdHeatEnd: the run ends at the next look, which comes after every stage and between
    // readings and blocks.
    void RequestEnd() { endRequested_ = true; }

    HeatStage Stage() const { return stage_; }
    int Passes() const { return passes_; }
    // The result the run ended on (0 when it was stopped).
    std::int32_t Result() const { return result_; }
    const TlmSettingData& Setting() const { return setting_; }
    const std::filesystem::path& File() const { return file_; }

private:
    std::int32_t Open();
    // The status look that every stage starts with; state 2 is stopped where the stage says so.
    std::int32_t CheckStage(bool takesReady, bool stopsAcquisition);
    std::int32_t SendSetting();
    std::int32_t StartFunction();
    std::int32_t ReadSignals();
    std::int32_t ReadDetonation();
    std::int32_t StartDownload();
    std::int32_t DownloadBlock();
    std::int32_t EndDownload();
    void Finish(std::int32_t result);

    LoggerLink& link_;
    HeatRunKind kind_;
    std::filesystem::path file_;
    std::function<void(std::span<const std::uint8_t>)> errorLog_;
    HeatStage stage_ = HeatStage::Opening;
    TlmSettingData setting_{};
    bool endRequested_ = false;
    bool linkOpen_ = false;
    int readings_ = 0;
    int passes_ = 0;
    int failures_ = 0;
    bool transferring_ = false;
    TlmTransferBlock block_{};
    std::int32_t result_ = 0;
};

} // namespace torvane::logger
