#pragma once
// The commands of torvane-cli. Each returns the process exit status: 0 on success, 1 when the
// input was refused (the reason is on stderr).

#include "logdata/csv_export.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace torvane::cli {

struct PackOptions {
    std::filesystem::path header;
    std::vector<std::string> streams; // NAME=FILE
    std::filesystem::path output;
};
int Pack(const PackOptions& options);

struct UnpackOptions {
    std::filesystem::path input;
    std::filesystem::path folder;
    int number = 10;
};
int Unpack(const UnpackOptions& options);

struct GenerateOptions {
    std::filesystem::path output;
    double minutes = 10.0;
    std::uint64_t seed = 1;
    std::optional<std::filesystem::path> setting;
};
int Generate(const GenerateOptions& options);

struct InfoOptions {
    std::filesystem::path input;
    bool json = false;
};
int Info(const InfoOptions& options);

struct ValuesOptions {
    std::filesystem::path input;
    std::vector<double> times;
    int pixelsPerStep = 1;
    int msPerStep = 100;
    bool json = false;
};
int Values(const ValuesOptions& options);

struct LapsOptions {
    std::filesystem::path input;
    bool json = false;
};
int Laps(const LapsOptions& options);

// The main file's items as CSV, as a window's save command writes them: the items the default
// display shows, or all; the whole run, or a range in ms.
struct ExportOptions {
    std::filesystem::path input;
    std::filesystem::path output;
    bool all = false;
    std::optional<logdata::CsvRange> range;
};
int Export(const ExportOptions& options);

// The graph area of a window showing the run (the default display, or record 0 of a layout
// file) drawn to a PNG file, without a screen.
struct RenderOptions {
    std::filesystem::path input;
    std::filesystem::path output;
    int width = 1024;
    int height = 600;
    double offset = 0.0;
    std::optional<int> pixelsPerStep;
    std::optional<int> msPerStep;
    std::optional<std::filesystem::path> layout;
};
int Render(const RenderOptions& options);

// The logger commands: one short link each, through the same policy as the desktop's windows.
// Messages go to stderr; questions are answered No (Cancel) unless yes.
enum class LoggerCommand { Status, List, Download, Clear };
struct LoggerOptions {
    LoggerCommand command = LoggerCommand::Status;
    int number = 0;               // download: the logger's file number
    std::filesystem::path output; // download: the logging file to write
    bool yes = false;
    bool json = false;
};
int Logger(const LoggerOptions& options);

} // namespace torvane::cli
