#pragma once
// What the operator is told about the link: driver errors, sense codes and the logger's state.

#include "logger/logger_link.h"

#include <cstdint>
#include <string>

namespace torvane::logger {

// "Sence code error. Error code = " and the sense as three digits; the spelling is the
// program's own.
std::string SenseErrorText(std::uint8_t sense);
void ShowSenseError(shell::MessageSink& sink, std::uint8_t sense);

// Tells the operator about a negative driver result (the codes of the table below; any other
// result shows nothing), then closes the link unless keepOpen.
void ReportDriverError(LoggerLink& link, std::int32_t result, bool keepOpen);

// The text of a logger state that stops a window's action: the stop icon and OK. States 224 and
// 225 give an empty text, which shows the pending run-time error; idle, ready and unknown states
// show nothing.
void ShowLoggerState(LoggerLink& link);

// The end of every logger action: a negative result is reported (which closes the link);
// otherwise the link is closed quietly.
void FinishLink(LoggerLink& link, std::int32_t result);

} // namespace torvane::logger
