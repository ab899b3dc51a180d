#pragma once
// A run recorded before the link was opened: the vehicle model ridden under a setting and
// written as a logging file in one go.

#include "logdata/log_header.h"

#include <cstdint>
#include <string>
#include <vector>

namespace torvane::sim {

// Every stream is in a logging file the logger makes, empty when its setting does not record it.
std::vector<std::string> LoggingFileStreams();

// The logging file of a run of durationMs from seed; empty if the writer failed.
std::vector<std::uint8_t> RecordedRunFile(const logdata::LogHeader& setting, double durationMs,
                                          std::uint64_t seed);

} // namespace torvane::sim
