#pragma once
// The commands of torvane-cli. Each returns the process exit status: 0 on success, 1 when the
// input was refused (the reason is on stderr).

#include "logdata/csv_export.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace torvane::views {
struct DetonationMapState;
}

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

// A computed item over the main file (layer 0 of window 1), by the code of the desktop's
// "Function calculation": the formula over the items the run offers, its 32-bit result words
// copied to Output when asked.
struct FormulaOptions {
    std::filesystem::path Input;
    std::string Expression;
    int Decimals = 0;
    std::optional<std::filesystem::path> Output;
    bool Json = false;
};
int Formula(const FormulaOptions& options);

// The detonation map of a run's main file (as the frame's "OpenFile" entry makes it from a
// window's layer) or of a .dto file, printed, saved as .dto and drawn as the map window shows it.
struct DetonationOptions {
    std::filesystem::path Input;
    std::optional<std::filesystem::path> Output;
    std::optional<std::filesystem::path> Png;
    bool Json = false;
};
int Detonation(const DetonationOptions& options);
// A map as deto prints it: its totals as text, or the whole map as JSON.
void PrintDetonation(const views::DetonationMapState& state, bool asJson);

// The TH and Ne histograms of the run's main file, as the histogram window makes them; the Ne
// range's texts are checked as the range dialog checks them.
struct HistogramOptions {
    std::filesystem::path Input;
    std::optional<std::string> NeStart;
    std::optional<std::string> NeEnd;
    std::optional<std::filesystem::path> PngTh;
    std::optional<std::filesystem::path> PngNe;
    bool Json = false;
};
int Histogram(const HistogramOptions& options);

// The logger commands: one short link each, through the same policy as the desktop's windows.
// Messages go to stderr; questions are answered No (Cancel) unless Yes.
enum class LoggerCommand {
    Status,
    List,
    Download,
    Clear,
    Setting,
    Send,
    Monitor,
    Dump,
    Service,
    Detonation
};
struct LoggerOptions {
    LoggerCommand Command = LoggerCommand::Status;
    int Number = 0;               // download: the logger's file number
    std::filesystem::path Output; // download: the logging file; dump: the dump's;
                                  // deto: the .dto file
    std::filesystem::path Input;  // send: the SETTING.DAT to send
    std::optional<std::filesystem::path> MemoryTable; // setting: MT.DAT for the logging time
    bool Yes = false;
    bool Json = false;
    int Count = 40;    // monitor: readings to print
    int Interval = 25; // monitor: ms between readings
    std::string What;  // dump: identity or errors; service: test1, test2 or init
    bool Hex = false;  // dump: write the hexadecimal dump instead of the raw bytes
};
int Logger(const LoggerOptions& options);

// A SETTING.DAT as the setting window shows it, with the logging time that MT.DAT (or the
// default table) gives.
struct SettingShowOptions {
    std::filesystem::path Input;
    std::optional<std::filesystem::path> MemoryTable;
    bool Json = false;
};
int SettingShow(const SettingShowOptions& options);

// A SETTING.DAT made from the fresh record with the options applied as the window's controls
// would take them, then checked and built as the window's send does. Texts are passed on as
// typed, so the window's check decides them.
struct SettingMakeOptions {
    std::filesystem::path Output;
    std::vector<std::string> Samples; // NAME=MS
    std::optional<bool> Deto1;
    std::optional<bool> Deto2;
    std::optional<bool> Lap;
    std::optional<std::string> StartNe;
    std::optional<std::string> StartTh;
    std::optional<std::string> Shift;
    std::optional<int> PulseFront;
    std::optional<int> PulseRear;
    std::optional<std::string> CmFront;
    std::optional<std::string> CmRear;
    std::optional<int> Engine;
    std::optional<int> Sus;
    std::optional<int> Laf;
};
int SettingMake(const SettingMakeOptions& options);

} // namespace torvane::cli
