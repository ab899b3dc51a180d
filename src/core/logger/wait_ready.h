#pragma once
// The wait after every change of the logger's state.

#include "logger/logger_link.h"

#include <chrono>
#include <cstdint>

namespace torvane::logger {

inline constexpr std::chrono::milliseconds ReadyPollInterval{700};

// Polls the status until the logger is idle or acquiring (0), out of order (shown;
// results::OutOfOrder) or stopped on an error (results::ErrorState), pausing ReadyPollInterval
// between polls. A failed status call is returned. There is no time-out: a logger that stays
// busy, or in state 7, is waited for.
std::int32_t WaitLoggerReady(LoggerLink& link);

} // namespace torvane::logger
