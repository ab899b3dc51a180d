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
    std::filesystem::path Header;
    std::vector<std::string> Streams; // NAME=FILE
    std::filesystem::path Output;
};
int Pack(const PackOptions& options);

struct UnpackOptions {
    std::filesystem::path Input;
    std::filesystem::path Folder;
    int Number = 10;
};
int Unpack(const UnpackOptions& options);

struct GenerateOptions {
    std::filesystem::path Output;
    double Minutes = 10.0;
    std::uint64_t Seed = 1;
    std::optional<std::filesystem::path> Setting;
};
int Generate(const GenerateOptions& options);

struct InfoOptions {
    std::filesystem::path Input;
    bool Json = false;
};
int Info(const InfoOptions& options);

struct ValuesOptions {
    std::filesystem::path Input;
    std::vector<double> Times;
    int PixelsPerStep = 1;
    int MsPerStep = 100;
    bool Json = false;
};
int Values(const ValuesOptions& options);

struct LapsOptions {
    std::filesystem::path Input;
    bool Json = false;
};
int Laps(const LapsOptions& options);

// The main file's items as CSV, as a window's save command writes them: the items the default
// display shows, or all; the whole run, or a range in ms.
struct ExportOptions {
    std::filesystem::path Input;
    std::filesystem::path Output;
    bool All = false;
    std::optional<logdata::CsvRange> Range;
};
int Export(const ExportOptions& options);

// The graph area of a window showing the run (the default display, or record 0 of a layout
// file) drawn to a PNG file, without a screen.
struct RenderOptions {
    std::filesystem::path Input;
    std::filesystem::path Output;
    int Width = 1024;
    int Height = 600;
    double Offset = 0.0;
    std::optional<int> PixelsPerStep;
    std::optional<int> MsPerStep;
    std::optional<std::filesystem::path> Layout;
    // Up to two further runs laid over the first as layers 1 and 2.
    std::vector<std::filesystem::path> Layers;
    // An OUT ending in ".pdf" is a printed page: the picture centred at the zoom on the paper.
    int Zoom = 100;
    std::string Paper = "A4";
    bool Landscape = false;
};
int Render(const RenderOptions& options);

// The logger commands: one short link each, through the same policy as the desktop's windows.
// Messages go to stderr; questions are answered No (Cancel) unless Yes.
enum class LoggerCommand { Status, List, Download, Clear };
struct LoggerOptions {
    LoggerCommand Command = LoggerCommand::Status;
    int Number = 0;               // download: the logger's file number
    std::filesystem::path Output; // download: the logging file to write
    bool Yes = false;
    bool Json = false;
};
int Logger(const LoggerOptions& options);

} // namespace torvane::cli
