// info, values, laps and export: commands that deploy a logging file and read it as a window
// would.

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "cli/deployed_run.h"
#include "layout/layout_store.h"
#include "load/run_time_guard.h"
#include "load/save_file.h"
#include "logdata/channels.h"
#include "logdata/csv_export.h"
#include "logdata/laps.h"
#include "logdata/values.h"
#include "shell/number_format.h"

#include <iostream>

namespace torvane::cli {
namespace {

using logdata::LapMarkCount;
using nlohmann::json;

std::vector<double> LapMarks(const logdata::LapInfo& lap) {
    return LapMarkCount(lap) == 0 ? std::vector<double>{} : lap.LapTime;
}

json HeaderJson(const logdata::LogHeader& header) {
    json sampleTimes = json::array();
    for (int i = 0; i < logdata::SampleTimeCount; ++i) {
        sampleTimes.push_back(header.SampleTime(i));
    }
    return {{"SusMode", header.SusMode()},     {"SampleTime", sampleTimes},
            {"ThClose", header.ThClose()},     {"ThOpen", header.ThOpen()},
            {"FrSusZero", header.FrSusZero()}, {"RrSusZero", header.RrSusZero()},
            {"LapWord", header.LapWord()},     {"LafMode", header.LafMode()}};
}

void PrintInfoText(const DeployedRun& run) {
    const auto& layer = run.Layer();
    const auto& header = layer.Header;
    std::cout << "MeasureTime    " << shell::FormatTime(layer.MeasureTime) << "  ("
              << shell::ShortestText(layer.MeasureTime) << " ms)\n"
              << "MinSampleTime  " << run.Layers().MinSampleTime << " ms\n"
              << "DeployCount    " << layer.DeployCount << "\n"
              << "SusMode " << header.SusMode() << "  LafMode " << header.LafMode() << "  LapWord "
              << header.LapWord() << "\n"
              << "ThClose " << header.ThClose() << "  ThOpen " << header.ThOpen() << "  FrSusZero "
              << header.FrSusZero() << "  RrSusZero " << header.RrSusZero() << "\n"
              << "Header words  ";
    for (int i = 0; i < logdata::LogHeaderWords; ++i) {
        std::cout << ' ' << header.Word(i);
    }
    std::cout << "\n\nSlot  Channel  Interval  Exists\n";
    for (int slot = 0; slot < logdata::SlotCount; ++slot) {
        const int channel = layer.ItemChannel[static_cast<std::size_t>(slot)];
        const int interval = logdata::ChannelSampleTime(header, channel);
        std::cout << shell::FormatText(std::to_string(slot), "@@@@") << "  "
                  << shell::FormatText(logdata::ChannelLabel(channel), "@@@@@@@@@@@") << "  "
                  << shell::FormatText(std::to_string(interval) + " ms", "@@@@@@@@") << "  "
                  << (layer.ItemExists[static_cast<std::size_t>(slot)] ? "yes" : "no") << "\n";
    }
    const auto marks = LapMarks(run.Lap());
    std::cout << "\nLap marks      " << marks.size() << "\n";
    for (std::size_t i = 1; i < marks.size(); ++i) {
        std::cout << "  Lap " << shell::FormatText(std::to_string(i), "@@@") << "  "
                  << shell::FormatTime(marks[i] - marks[i - 1]) << "\n";
    }
    std::cout << "BestLap        " << shell::FormatTime(run.Lap().BestLap) << "\n";
}

std::string ValueText(double value, int channel) {
    return shell::FormatNumber(value, logdata::ChannelFormat(channel)) +
           std::string(logdata::ChannelUnit(channel));
}

// The logging file of one command, deployed, with the program's air/fuel table; when Deployed()
// is false the refusal has been told on stderr.
class CommandRun {
public:
    explicit CommandRun(const std::filesystem::path& input)
        : environment_(LoadEnvironment(sink_))
        , deployed_(run_.Deploy(input, sink_)) {}

    bool Deployed() const { return deployed_; }
    const DeployedRun& Run() const { return run_; }
    const logger::LafTable& Laf() const { return environment_.Laf; }
    const shell::AppPaths& Paths() const { return environment_.Paths; }
    shell::MessageSink& Sink() { return sink_; }

private:
    StderrSink sink_;
    Environment environment_;
    DeployedRun run_;
    bool deployed_;
};

} // namespace

int Info(const InfoOptions& options) {
    const CommandRun opened(options.Input);
    if (!opened.Deployed()) {
        return 1;
    }
    const DeployedRun& run = opened.Run();
    if (!options.Json) {
        PrintInfoText(run);
        return 0;
    }
    const auto& layer = run.Layer();
    json slots = json::array();
    for (int slot = 0; slot < logdata::SlotCount; ++slot) {
        const int channel = layer.ItemChannel[static_cast<std::size_t>(slot)];
        slots.push_back({{"slot", slot},
                         {"channel", channel},
                         {"name", logdata::ChannelName(channel)},
                         {"exists", layer.ItemExists[static_cast<std::size_t>(slot)]}});
    }
    json laps = json::array();
    for (const double mark : LapMarks(run.Lap())) {
        laps.push_back(JsonNumber(mark));
    }
    const json info{{"MeasureTime", JsonNumber(layer.MeasureTime)},
                    {"MinSampleTime", run.Layers().MinSampleTime},
                    {"DeployCount", layer.DeployCount},
                    {"header", HeaderJson(layer.Header)},
                    {"slots", slots},
                    {"laps", laps},
                    {"BestLap", JsonNumber(run.Lap().BestLap)}};
    std::cout << info.dump() << '\n';
    return 0;
}

int Values(const ValuesOptions& options) {
    const CommandRun opened(options.Input);
    if (!opened.Deployed()) {
        return 1;
    }
    const DeployedRun& run = opened.Run();
    const logdata::ValueReader reader(run.Layers(), opened.Laf());
    const logdata::TimeScale scale{options.PixelsPerStep, options.MsPerStep};
    const auto& layer = run.Layer();
    json rows = json::array();
    for (const double time : options.Times) {
        json values = json::object();
        std::string line = shell::FormatTime(time);
        for (int slot = 0; slot < logdata::SlotCount; ++slot) {
            if (!layer.ItemExists[static_cast<std::size_t>(slot)]) {
                continue;
            }
            const int channel = layer.ItemChannel[static_cast<std::size_t>(slot)];
            const double value = reader.ValueAt(0, slot, time, scale);
            values[std::string(logdata::ChannelName(channel))] = JsonNumber(value);
            line +=
                "  " + std::string(logdata::ChannelName(channel)) + " " + ValueText(value, channel);
        }
        rows.push_back({{"time", JsonNumber(time)}, {"values", values}});
        if (!options.Json) {
            std::cout << line << '\n';
        }
    }
    if (options.Json) {
        std::cout << rows.dump() << '\n';
    }
    return 0;
}

int Laps(const LapsOptions& options) {
    const CommandRun opened(options.Input);
    if (!opened.Deployed()) {
        return 1;
    }
    const DeployedRun& run = opened.Run();
    const auto marks = LapMarks(run.Lap());
    json laps = json::array();
    for (std::size_t i = 1; i < marks.size(); ++i) {
        laps.push_back({{"lap", i},
                        {"start", JsonNumber(marks[i - 1])},
                        {"end", JsonNumber(marks[i])},
                        {"time", JsonNumber(marks[i] - marks[i - 1])}});
        if (!options.Json) {
            std::cout << "Lap " << shell::FormatText(std::to_string(i), "@@@") << "  "
                      << shell::FormatTime(marks[i - 1]) << " - " << shell::FormatTime(marks[i])
                      << "  " << shell::FormatTime(marks[i] - marks[i - 1]) << '\n';
        }
    }
    if (options.Json) {
        std::cout << json{{"laps", laps}, {"best", JsonNumber(run.Lap().BestLap)}}.dump() << '\n';
    } else {
        std::cout << "Best " << shell::FormatTime(run.Lap().BestLap) << '\n';
    }
    return 0;
}

int Export(const ExportOptions& options) {
    if (options.Range &&
        !(options.Range->Start >= 0.0 && options.Range->End >= options.Range->Start)) {
        return Fail("--range: START_MS must be 0 or more and END_MS not before it");
    }
    CommandRun opened(options.Input);
    if (!opened.Deployed()) {
        return 1;
    }
    // The items a new window shows: those of the display it starts with.
    graph::LayerView view;
    layout::LayoutStore layouts(opened.Paths(), opened.Sink());
    layouts.LoadLayouts();
    layouts.GetLayout(0, view.Display);
    const std::vector<int> items = load::CsvItems(opened.Run().Layer(), view, options.All);
    if (items.empty()) {
        return Fail("No item to export: the display shows none of the file's items (try --all)");
    }
    const bool written = load::RunReportingErrors(opened.Sink(), [&] {
        return logdata::WriteCsv(options.Output, opened.Run().Layers(), items, options.Range,
                                 opened.Laf(), opened.Sink());
    });
    return written ? 0 : 1;
}

} // namespace torvane::cli
