#pragma once
// logger monitor, dump and service: the real-time monitor's and service mode's work from the
// command line, over the same core models as their windows.

#include "cli/commands.h"
#include "logger/logger_link.h"

namespace torvane::cli {

// Prints --count readings, one each --interval ms. A link lost on the way is told as the
// window tells it and ends the command with 1, where the window would retry on every tick.
int Monitor(logger::LoggerLink& link, const LoggerOptions& options);
// Reads the identity block or the error log and writes it raw, or as the window's dump.
int Dump(logger::LoggerLink& link, const LoggerOptions& options);
// Runs TEST1, TEST2 or the initial configuration (the caller has --yes: it changes the logger).
int Service(logger::LoggerLink& link, const LoggerOptions& options);

} // namespace torvane::cli
