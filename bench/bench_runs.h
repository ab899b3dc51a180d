#pragma once
// The runs the benchmarks work on: the largest one that the logger's memory holds, and runs of
// the vehicle model deployed as a window's first layer.

#include "binding/tlm_decompressor.h"
#include "logdata/deployment.h"
#include "logdata/laps.h"
#include "logger/laf_table.h"
#include "rlg_container.h"
#include "shell/message_sink.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

namespace torvane::bench {

// Nine analogue channels at 5 ms with one byte a sample are 540 bytes per 300 ms; 28 MiB of
// logging memory then hold 28 MiB * 300 ms / 540 bytes = 271.8 minutes, about 4.5 hours.
inline constexpr double LargestRunMinutes = 29360128.0 * 300.0 / 540.0 / 60000.0;

// Every analogue channel at 5 ms, the detonation counters at 300 ms, lap marks on.
inline logdata::LogHeader LargestRunSetting() {
    logdata::LogHeader setting = sim::DemoSetting();
    for (int entry : {0, 1, 2, 3, 6, 7, 8, 9, 10}) {
        setting.SetSampleTime(entry, 5);
    }
    setting.SetSampleTime(4, 300);
    setting.SetSampleTime(5, 300);
    setting.SetWord(logdata::SettingWord::LapOn, 1);
    return setting;
}

// A run of the vehicle model written as a logging file in a private folder and deployed there
// as window 1, layer 0, with its lap marks read; the default air/fuel table converts.
class DeployedRun {
public:
    DeployedRun(const logdata::LogHeader& setting, double minutes, std::uint64_t seed) {
        std::random_device entropy;
        layers_.TempDir =
            std::filesystem::temp_directory_path() / ("torvane-bench-" + std::to_string(entropy()));
        std::filesystem::create_directories(layers_.TempDir);
        const std::filesystem::path file = layers_.TempDir / "RUN.rlg";
        rlg::WriteFileAtomically(file, sim::GenerateRunFile(setting, minutes * 60000.0, seed));
        binding::TlmDecompressor decompressor;
        shell::RecordingSink sink;
        logdata::DeployLoggingFile(layers_, 0, file, decompressor, sink);
        logdata::ReadLapFile(layers_, 0);
        laf_.SetPoints(logger::DefaultLafPoints());
    }
    ~DeployedRun() {
        std::error_code error;
        std::filesystem::remove_all(layers_.TempDir, error);
    }
    DeployedRun(const DeployedRun&) = delete;
    DeployedRun& operator=(const DeployedRun&) = delete;

    const logdata::LayerSet& Layers() const { return layers_; }
    const logger::LafTable& Laf() const { return laf_; }
    const std::filesystem::path& Folder() const { return layers_.TempDir; }

private:
    logdata::LayerSet layers_;
    logger::LafTable laf_;
};

} // namespace torvane::bench
