#pragma once
// A logging file of the vehicle model, written as the logger writes it: fixtures for the
// desktop's tests come from code, not from stored files.

#include "logdata/channels.h"
#include "rlg_container.h"
#include "vehicle/demo_setting.h"
#include "vehicle/generate_run.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace torvane::testing {

inline bool WriteGeneratedRun(const std::filesystem::path& file, double durationMs,
                              std::uint64_t seed) {
    const logdata::LogHeader setting = sim::DemoSetting();
    rlg::RlgWriter writer(setting.ToBytes(),
                          {logdata::StreamNames.begin(), logdata::StreamNames.end()});
    sim::GenerateRun(setting, durationMs, seed,
                     [&](int stream, std::span<const std::int16_t> samples) {
                         writer.Append(static_cast<std::size_t>(stream), samples);
                     });
    return rlg::WriteFileAtomically(file, writer.Finish());
}

} // namespace torvane::testing
