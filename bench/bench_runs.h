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

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

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

// The run of the largest setting of the given length, made once for the benchmark program.
inline DeployedRun& LargestSettingRun(double minutes) {
    static std::map<double, std::unique_ptr<DeployedRun>> runs;
    auto& run = runs[minutes];
    if (!run) {
        run = std::make_unique<DeployedRun>(LargestRunSetting(), minutes, 5);
    }
    return *run;
}

// The baselines: what reading or writing the same bytes costs with nothing else to do.
inline constexpr std::size_t PlainBlockBytes = 64 * 1024;

// The files read front to back in 64 KiB blocks, every byte looked at once; the bytes read.
inline std::int64_t ReadEveryByte(std::span<const std::filesystem::path> files) {
    std::vector<unsigned char> block(PlainBlockBytes);
    std::int64_t bytes = 0;
    unsigned sum = 0;
    for (const std::filesystem::path& file : files) {
        std::FILE* in = std::fopen(file.c_str(), "rb");
        if (in == nullptr) {
            continue;
        }
        for (std::size_t got = 0; (got = std::fread(block.data(), 1, block.size(), in)) > 0;) {
            for (std::size_t i = 0; i < got; ++i) {
                sum += block[i];
            }
            bytes += static_cast<std::int64_t>(got);
        }
        std::fclose(in);
    }
    benchmark::DoNotOptimize(sum);
    return bytes;
}

// `total` bytes written to `file` in 64 KiB blocks.
inline void WriteBytes(const std::filesystem::path& file, std::int64_t total) {
    const std::vector<char> block(PlainBlockBytes, '0');
    std::FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr) {
        return;
    }
    for (std::int64_t left = total; left > 0;) {
        const auto chunk = static_cast<std::size_t>(
            std::min<std::int64_t>(left, static_cast<std::int64_t>(block.size())));
        std::fwrite(block.data(), 1, chunk, out);
        left -= static_cast<std::int64_t>(chunk);
    }
    std::fclose(out);
}

} // namespace torvane::bench
