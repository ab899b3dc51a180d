#pragma once
// The setting record as torvane-cli prints it, and the logger commands over it.

#include "logdata/log_header.h"
#include "logger/logger_link.h"
#include "logger/logging_time.h"

#include <filesystem>
#include <optional>

namespace torvane::cli {

// MT.DAT when one is given, else the default table. False when the file cannot be read (told).
bool MemoryTableFor(const std::optional<std::filesystem::path>& file, logger::MemoryTable& table);

// The record as the setting window shows it, and the logging time; or the JSON of
// docs/cli-json.md.
void PrintSetting(const logdata::LogHeader& setting, const logger::MemoryTable& table, bool asJson);

// logger setting: reads the logger's setting record.
int ReadLoggerSetting(logger::LoggerLink& link, const logger::MemoryTable& table, bool asJson);
// logger send: sends a SETTING.DAT as the window's DataTrancemission does, then gives the logger
// back as the window does when it closes.
int SendLoggerSetting(logger::LoggerLink& link, const std::filesystem::path& file);

} // namespace torvane::cli
