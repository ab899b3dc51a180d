#pragma once
// A run of the vehicle model written as a logging file (*.rlg) in one go, as the logger writes
// its files: the virtual logger's stored runs, `torvane-cli generate`, and fixtures of tests and
// benchmarks.

#include "logdata/log_header.h"

#include <cstdint>
#include <string>
#include <vector>

namespace torvane::sim {

// Every stream is in a logging file the logger makes, empty when its setting does not record it.
std::vector<std::string> LoggingFileStreams();

// The logging file of a run of durationMs from seed; empty if the writer failed.
std::vector<std::uint8_t> GenerateRunFile(const logdata::LogHeader& setting, double durationMs,
                                          std::uint64_t seed);

} // namespace torvane::sim
