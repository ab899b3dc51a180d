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

// on|off as a switch's state.
void AddSwitch(CLI::App& command, const char* name, std::optional<bool>& value,
               const char* description) {
    command
        .add_option_function<std::string>(
            name, [&value](const std::string& text) { value = text == "on"; }, description)
        ->check(CLI::IsMember({"on", "off"}));
}

void AddSettingMakeOptions(CLI::App& command, SettingMakeOptions& options) {
    command.add_option("OUT", options.Output, "The SETTING.DAT to write")->required();
    command.add_option("--sample", options.Samples,
                       "NAME=MS: NAME one of Ne TH VFW VRW VB VM1 VM2 VM3 VM4, MS one of 5 10 25 "
                       "50 100 300, or 0 to turn the row off");
    AddSwitch(command, "--deto1", options.Deto1, "DETO1 on|off");
    AddSwitch(command, "--deto2", options.Deto2, "DETO2 on|off");
    AddSwitch(command, "--lap", options.Lap, "Lap marks on|off");
    command.add_option("--start-ne", options.StartNe, "Logging starts above this r/min");
    command.add_option("--start-th", options.StartTh, "Logging starts above this throttle %");
    command.add_option("--shift", options.Shift, "Shift engine speed, r/min");
    command.add_option("--pulse-front", options.PulseFront, "Front wheel pulses, 1 to 20")
        ->check(CLI::Range(1, 20));
    command.add_option("--pulse-rear", options.PulseRear, "Rear wheel pulses, 1 to 20")
        ->check(CLI::Range(1, 20));
    command.add_option("--cm-front", options.CmFront, "Front tyre circumference, cm");
    command.add_option("--cm-rear", options.CmRear, "Rear tyre circumference, cm");
    command.add_option("--engine", options.Engine, "Engine pulses: 0 1P/rev, 1 2P/rev, 2 0.5P/rev")
        ->check(CLI::Range(0, 2));
    command.add_option("--sus", options.Sus, "Suspension sensors: 1 FRSUS on VM1, 2 RRSUS on VM2")
        ->check(CLI::Range(0, 3));
    command.add_option("--laf", options.Laf, "Air/fuel sensors: 1 LAF1 on VM3, 2 LAF2 on VM4")
        ->check(CLI::Range(0, 3));
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
        "render", "Draw the graph of a window showing the run into a PNG file, or print it on a "
                  "PDF page, without a screen");
    renderCommand->add_option("FILE", renderOptions.Input, "The logging file")->required();
    renderCommand->add_option("OUT", renderOptions.Output, "The PNG or PDF (*.pdf) file to write")
        ->required();
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
    renderCommand->add_option("--layer", renderOptions.Layers,
                              "A further logging file laid over the first (at most two)");
    renderCommand->add_option("--zoom", renderOptions.Zoom, "PDF: zoom in percent, 50 to 200")
        ->check(CLI::Range(50, 200))
        ->capture_default_str();
    renderCommand
        ->add_option("--paper", renderOptions.Paper,
                     "PDF: paper, by its name in the print dialog or the part before the comma")
        ->capture_default_str();
    renderCommand->add_flag("--landscape", renderOptions.Landscape, "PDF: landscape page");

    FormulaOptions formula;
    auto* formulaCommand = app.add_subcommand(
        "formula", "Compute an item from a formula over a run's items, as the desktop's Function "
                   "calculation does; a formula that begins with \"-\" follows --");
    formulaCommand->add_option("FILE", formula.Input, "The logging file")->required();
    formulaCommand->add_option("EXPR", formula.Expression, "The formula, e.g. Ne*TH/100")
        ->required();
    formulaCommand->add_option("--decimals", formula.Decimals, "Digits below the decimal point")
        ->capture_default_str()
        ->check(CLI::Range(0, 3));
    formulaCommand->add_option("--out", formula.Output,
                               "Write the result's signed 32-bit little-endian words here");
    formulaCommand->add_flag("--json", formula.Json, "Print JSON");

    DetonationOptions detonation;
    auto* detonationCommand = app.add_subcommand(
        "deto", "The detonation map of a run (its main file) or of a .dto file, as the map "
                "window shows it");
    detonationCommand->add_option("FILE", detonation.Input, "A logging file or a .dto file")
        ->required();
    detonationCommand->add_option("--out", detonation.Output, "Save the map as this .dto file");
    detonationCommand->add_option("--png", detonation.Png, "Draw the map into this PNG file");
    detonationCommand->add_flag("--json", detonation.Json, "Print JSON");

    HistogramOptions histogram;
    std::vector<std::string> neRange;
    auto* histogramCommand = app.add_subcommand(
        "histogram",
        "The TH and Ne histograms of a logging file, as the histogram window shows them");
    histogramCommand->add_option("FILE", histogram.Input, "The logging file")->required();
    histogramCommand->add_option("--ne", neRange, "START END: the engine-speed range, r/min")
        ->expected(2);
    histogramCommand->add_option("--png-th", histogram.PngTh, "Draw the TH view into this PNG");
    histogramCommand->add_option("--png-ne", histogram.PngNe, "Draw the Ne view into this PNG");
    histogramCommand->add_flag("--json", histogram.Json, "Print JSON");

    LoggerOptions loggerOptions;
    auto* loggerCommand = app.add_subcommand(
        "logger",
        "Work with the logger: status, list, download NUMBER OUT.rlg, clear, setting, send, "
        "monitor, dump, service, deto OUT.dto");
    loggerCommand->require_subcommand(1);
    loggerCommand->add_flag("--yes", loggerOptions.Yes,
                            "Answer Yes (OK) to the logger's questions; otherwise No (Cancel)");
    loggerCommand->add_flag("--json", loggerOptions.Json,
                            "Print JSON (status, list, setting, monitor, deto)");
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
    auto* loggerSettingCommand = addLoggerCommand(
        "setting", "The logger's setting record and its logging time", LoggerCommand::Setting);
    loggerSettingCommand->add_option("--mt", loggerOptions.MemoryTable,
                                     "MT.DAT for the logging time (default table without)");
    auto* sendCommand = addLoggerCommand(
        "send", "Send a SETTING.DAT to the logger as the setting window does", LoggerCommand::Send);
    sendCommand->add_option("SETTING", loggerOptions.Input, "The SETTING.DAT to send")->required();

    SettingShowOptions settingShow;
    SettingMakeOptions settingMake;
    auto* settingCommand =
        app.add_subcommand("setting", "Show or make a setting record (SETTING.DAT)");
    settingCommand->require_subcommand(1);
    auto* showCommand =
        settingCommand->add_subcommand("show", "A SETTING.DAT as the setting window shows it");
    showCommand->add_option("SETTING", settingShow.Input, "The SETTING.DAT")->required();
    showCommand->add_option("--mt", settingShow.MemoryTable,
                            "MT.DAT for the logging time (default table without)");
    showCommand->add_flag("--json", settingShow.Json, "Print JSON");
    auto* makeCommand = settingCommand->add_subcommand(
        "make", "Make a SETTING.DAT from the fresh record, checked as the window's send checks");
    AddSettingMakeOptions(*makeCommand, settingMake);
    auto* monitorCommand = addLoggerCommand(
        "monitor", "Print the logger's live values in engineering units", LoggerCommand::Monitor);
    monitorCommand->add_option("--count", loggerOptions.Count, "Readings to print (40)")
        ->check(CLI::Range(1, 100'000'000));
    monitorCommand->add_option("--interval", loggerOptions.Interval, "ms between readings (25)")
        ->check(CLI::Range(0, 3'600'000));
    auto* dumpCommand = addLoggerCommand("dump", "Save the logger's identity block or error log",
                                         LoggerCommand::Dump);
    dumpCommand->add_option("WHAT", loggerOptions.What, "identity or errors")
        ->required()
        ->check(CLI::IsMember({"identity", "errors"}));
    dumpCommand->add_option("OUT", loggerOptions.Output, "The file to write")->required();
    dumpCommand->add_flag("--hex", loggerOptions.Hex, "Write the hexadecimal dump as text");
    auto* serviceCommand =
        addLoggerCommand("service", "Run one of the logger's built-in functions (needs --yes)",
                         LoggerCommand::Service);
    serviceCommand->add_option("FUNCTION", loggerOptions.What, "test1, test2 or init")
        ->required()
        ->check(CLI::IsMember({"test1", "test2", "init"}));
    auto* loggerDetonationCommand = addLoggerCommand(
        "deto", "Read the logger's detonation map into a .dto file", LoggerCommand::Detonation);
    loggerDetonationCommand->add_option("OUT", loggerOptions.Output, "The .dto file to write")
        ->required();

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
        if (*formulaCommand) {
            return Formula(formula);
        }
        if (*detonationCommand) {
            return Detonation(detonation);
        }
        if (*histogramCommand) {
            if (!neRange.empty()) {
                histogram.NeStart = neRange[0];
                histogram.NeEnd = neRange[1];
            }
            return Histogram(histogram);
        }
        if (*loggerCommand) {
            return Logger(loggerOptions);
        }
        if (*showCommand) {
            return SettingShow(settingShow);
        }
        if (*makeCommand) {
            return SettingMake(settingMake);
        }
    } catch (const CLI::Error& error) {
        return app.exit(error);
    }
    return 1;
}
