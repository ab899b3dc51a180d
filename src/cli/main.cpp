// torvane-cli: batch work on logging files and on the logger. Other tools script it, so its
// commands, options and output shapes stay as they are.

#include "cli/commands.h"
#include "cli/work_folders.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <sstream>

namespace {

using namespace torvane::cli;

// The time scale's fields in the layout file: pixels per step in 16 bits, ms in 32.
const auto PixelsPerStepRange = CLI::Range(1, 32767);
const auto MsPerStepRange = CLI::Range(1, 2147483647);
// Times on the command line: about 24 days either way, far past any run, and small enough for
// every column and sample computation that follows.
constexpr double TimeLimitMs = 2147483647.0;
const auto TimeRange = CLI::Range(-TimeLimitMs, TimeLimitMs);
// A render's surfaces are three pictures of this size: at most 256 MiB each.
constexpr long long MaxPicturePixels = 1LL << 26;
constexpr int MaxPictureSide = 32767;

// "--at 1000,2500.5" as a list of times in ms.
std::vector<double> ParseTimes(const std::string& text) {
    std::vector<double> times;
    std::stringstream parts(text);
    for (std::string part; std::getline(parts, part, ',');) {
        double value = 0.0;
        const auto [ptr, ec] = std::from_chars(part.data(), part.data() + part.size(), value);
        if (part.empty() || ec != std::errc{} || ptr != part.data() + part.size()) {
            throw CLI::ValidationError("--at", "not a time in ms: \"" + part + "\"");
        }
        if (!(std::abs(value) <= TimeLimitMs)) {
            throw CLI::ValidationError("--at", "time out of range: \"" + part + "\"");
        }
        times.push_back(value);
    }
    return times;
}

// "--size 1920x1080" as width and height.
void ParseSize(const std::string& text, int& width, int& height) {
    const auto separator = text.find('x');
    const auto number = [&text](std::size_t first, std::size_t last, int& value) {
        const auto [ptr, ec] = std::from_chars(text.data() + first, text.data() + last, value);
        return first < last && ec == std::errc{} && ptr == text.data() + last;
    };
    if (separator == std::string::npos || !number(0, separator, width) ||
        !number(separator + 1, text.size(), height)) {
        throw CLI::ValidationError("--size", "not WxH: \"" + text + "\"");
    }
    if (width > MaxPictureSide || height > MaxPictureSide ||
        static_cast<long long>(width) * height > MaxPicturePixels) {
        throw CLI::ValidationError("--size", "too large: \"" + text + "\" (at most " +
                                                 std::to_string(MaxPicturePixels) + " pixels)");
    }
}

} // namespace

int main(int argc, char** argv) {
    TakeTerminationSignals();
    CLI::App app{"torvane-cli: batch work on Torvane logging files (*.rlg)"};
    app.require_subcommand(1);

    PackOptions pack;
    auto* packCommand = app.add_subcommand(
        "pack", "Make a logging file from a raw 82-byte header and raw int16 stream files");
    packCommand->add_option("--header", pack.Header, "Raw 82-byte header")->required();
    packCommand->add_option("--stream", pack.Streams,
                            "NAME=FILE, NAME one of Ne TH VFW VRW DETO1 DETO2 VB VM1 VM2 VM3 VM4 "
                            "LAP; a stream not given is empty");
    packCommand->add_option("OUT", pack.Output, "The logging file to write")->required();

    UnpackOptions unpack;
    auto* unpackCommand =
        app.add_subcommand("unpack", "Deploy a logging file's streams into a folder");
    unpackCommand->add_option("FILE", unpack.Input, "The logging file")->required();
    unpackCommand->add_option("DIR", unpack.Folder, "Folder that receives the streams")->required();
    unpackCommand->add_option("--number", unpack.Number, "File number of the streams")
        ->capture_default_str();

    InfoOptions info;
    auto* infoCommand = app.add_subcommand(
        "info", "Header words, item slots, measurement time and laps of a logging file");
    infoCommand->add_option("FILE", info.Input, "The logging file")->required();
    infoCommand->add_flag("--json", info.Json, "Print JSON");

    ValuesOptions values;
    std::string times;
    auto* valuesCommand =
        app.add_subcommand("values", "Values of every existing item at the given times");
    valuesCommand->add_option("FILE", values.Input, "The logging file")->required();
    valuesCommand->add_option("--at", times, "Times in ms, separated by commas")->required();
    valuesCommand->add_option("--pixels-per-step", values.PixelsPerStep, "Time scale: pixels")
        ->capture_default_str()
        ->check(PixelsPerStepRange);
    valuesCommand->add_option("--ms-per-step", values.MsPerStep, "Time scale: ms per step")
        ->capture_default_str()
        ->check(MsPerStepRange);
    valuesCommand->add_flag("--json", values.Json, "Print JSON");

    LapsOptions laps;
    auto* lapsCommand = app.add_subcommand("laps", "The laps of a logging file and the best one");
    lapsCommand->add_option("FILE", laps.Input, "The logging file")->required();
    lapsCommand->add_flag("--json", laps.Json, "Print JSON");

    ExportOptions exportOptions;
    std::vector<double> range;
    auto* exportCommand = app.add_subcommand(
        "export", "Write a logging file's items as CSV, as the desktop's Save(&S) does");
    exportCommand->add_option("FILE", exportOptions.Input, "The logging file")->required();
    exportCommand->add_option("OUT", exportOptions.Output, "The CSV file to write")->required();
    exportCommand->add_flag("--all", exportOptions.All,
                            "Every item of the file, not only those the default display shows");
    exportCommand->add_option("--range", range, "START_MS END_MS: only this part of the run")
        ->expected(2)
        ->check(TimeRange);

    GenerateOptions generate;
    auto* generateCommand = app.add_subcommand(
        "generate", "Make a synthetic logging file from the vehicle model (deterministic by seed)");
    generateCommand->add_option("OUT", generate.Output, "The logging file to write")->required();
    generateCommand->add_option("--minutes", generate.Minutes, "Length of the run")
        ->capture_default_str();
    generateCommand->add_option("--seed", generate.Seed, "Seed of the model")
        ->capture_default_str();
    generateCommand->add_option("--setting", generate.Setting,
                                "SETTING.DAT (82 bytes) that decides the channels and intervals");

    RenderOptions renderOptions;
    std::string renderSize;
    auto* renderCommand = app.add_subcommand(
        "render", "Draw the graph of a window showing the run into a PNG file, without a screen");
    renderCommand->add_option("FILE", renderOptions.Input, "The logging file")->required();
    renderCommand->add_option("OUT", renderOptions.Output, "The PNG file to write")->required();
    renderCommand->add_option("--size", renderSize, "Size of the graph, WxH (default 1024x600)");
    renderCommand->add_option("--offset", renderOptions.Offset, "Time at the left edge, ms")
        ->check(TimeRange);
    renderCommand
        ->add_option("--pixels-per-step", renderOptions.PixelsPerStep,
                     "Time scale: pixels per step")
        ->check(PixelsPerStepRange);
    renderCommand->add_option("--ms-per-step", renderOptions.MsPerStep, "Time scale: ms per step")
        ->check(MsPerStepRange);
    renderCommand->add_option("--layout", renderOptions.Layout,
                              "LAYOUT.DAT whose record 0 is the display");

    LoggerOptions loggerOptions;
    auto* loggerCommand = app.add_subcommand(
        "logger", "Work with the logger: status, list, download NUMBER OUT.rlg, clear");
    loggerCommand->require_subcommand(1);
    loggerCommand->add_flag("--yes", loggerOptions.Yes,
                            "Answer Yes (OK) to the logger's questions; otherwise No (Cancel)");
    loggerCommand->add_flag("--json", loggerOptions.Json, "Print JSON (status, list)");
    const auto addLoggerCommand = [&](const char* name, const char* description,
                                      LoggerCommand command) {
        auto* sub = loggerCommand->add_subcommand(name, description);
        sub->fallthrough();
        sub->callback([&loggerOptions, command] { loggerOptions.Command = command; });
        return sub;
    };
    addLoggerCommand("status", "The logger's state, sense, error and flags", LoggerCommand::Status);
    addLoggerCommand("list", "The logger's files as the download dialog lists them",
                     LoggerCommand::List);
    auto* downloadCommand =
        addLoggerCommand("download", "Download one of the logger's files", LoggerCommand::Download);
    downloadCommand->add_option("NUMBER", loggerOptions.Number, "The file's number in the logger")
        ->required();
    downloadCommand->add_option("OUT", loggerOptions.Output, "The logging file to write")
        ->required();
    addLoggerCommand("clear", "Clear every file in the logger, after the question",
                     LoggerCommand::Clear);

    CLI11_PARSE(app, argc, argv);
    try {
        if (*packCommand) {
            return Pack(pack);
        }
        if (*unpackCommand) {
            return Unpack(unpack);
        }
        if (*infoCommand) {
            return Info(info);
        }
        if (*valuesCommand) {
            values.Times = ParseTimes(times);
            return Values(values);
        }
        if (*lapsCommand) {
            return Laps(laps);
        }
        if (*exportCommand) {
            if (!range.empty()) {
                exportOptions.Range = torvane::logdata::CsvRange{range[0], range[1]};
            }
            return Export(exportOptions);
        }
        if (*generateCommand) {
            return Generate(generate);
        }
        if (*renderCommand) {
            if (!renderSize.empty()) {
                ParseSize(renderSize, renderOptions.Width, renderOptions.Height);
            }
            return Render(renderOptions);
        }
        if (*loggerCommand) {
            return Logger(loggerOptions);
        }
    } catch (const CLI::Error& error) {
        return app.exit(error);
    }
    return 1;
}
