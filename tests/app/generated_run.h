#pragma once
// A logging file of the vehicle model, written as the logger writes it: fixtures for the
// desktop's tests come from code, not from stored files.

#include "logdata/channels.h"
#include "rlg_container.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace torvane::testing {

inline bool WriteGeneratedRun(const std::filesystem::path& file, double durationMs,
                              std::uint64_t seed) {
    return rlg::WriteFileAtomically(file,
                                    sim::GenerateRunFile(sim::DemoSetting(), durationMs, seed));
}

} // namespace torvane::testing
