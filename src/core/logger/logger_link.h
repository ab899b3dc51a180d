#pragma once
// One short link to the logger: open, check, act, close. A link carries the driver, the status
// record that the driver fills on every call of this link (never reused for another link), the
// sink through which the operator is told and asked, and the pause of the readiness wait, which
// tests replace so that they do not sleep.

#include "logger/driver.h"
#include "shell/message_sink.h"

#include <chrono>
#include <cstdint>
#include <functional>

namespace torvane::logger {

// Results of the link routines besides the driver's negative codes. A window treats any
// non-zero result as the end of its action.
namespace results {
inline constexpr std::int32_t Ok = 0;
// A sense code error, already shown to the operator.
inline constexpr std::int32_t SenseShown = 2;
// The logger is out of order (state 240), already shown.
inline constexpr std::int32_t OutOfOrder = 4;
// The logger has stopped on an error (bytError), not shown.
inline constexpr std::int32_t ErrorState = 6;
} // namespace results

using Pause = std::function<void(std::chrono::milliseconds)>;

// Blocks the calling thread, as the logger windows do while they wait for the logger.
void SleepFor(std::chrono::milliseconds duration);

struct LoggerLink {
    LoggerLink(logger::Driver& linkDriver, shell::MessageSink& messageSink,
               logger::Pause linkPause = SleepFor)
        : Driver(linkDriver)
        , Sink(messageSink)
        , Pause(std::move(linkPause)) {}

    logger::Driver& Driver;
    shell::MessageSink& Sink;
    logger::Pause Pause;
    TlmStatus Status{};
};

} // namespace torvane::logger
