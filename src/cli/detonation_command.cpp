// torvane-cli deto: the detonation map of a run or of a .dto file, as the map window shows it.

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "cli/deployed_run.h"
#include "cli/offscreen_gui.h"

#include "load/link_command.h"
#include "logdata/channels.h"
#include "render/detonation_picture.h"
#include "views/detonation_layer.h"
#include "views/detonation_map.h"

#include <QImage>

#include <cstdlib>
#include <iostream>

namespace torvane::cli {
namespace {

using nlohmann::json;

// The rows by engine speed from 5000 r/min, each with its counts by throttle from 0 %.
json MapJson(const views::DetonationMapState& state, int map) {
    json rows = json::array();
    for (const auto& row : state.Counts[static_cast<std::size_t>(map)]) {
        rows.push_back(json(std::vector<int>(row.begin(), row.end())));
    }
    return rows;
}

void PrintJson(const views::DetonationMapState& state) {
    std::cout << json{{"map1", MapJson(state, 0)},
                      {"map2", MapJson(state, 1)},
                      {"present", {state.Present[0], state.Present[1]}},
                      {"RunTime", state.RunTime},
                      {"RunDistance", state.RunDistance},
                      {"total1", state.Total[0]},
                      {"total2", state.Total[1]}}
                     .dump()
              << '\n';
}

void PrintText(const views::DetonationMapState& state) {
    const views::DetonationLabels labels = views::LabelsOf(state);
    std::cout << "Rundistance[km]  " << labels.RunDistance << "\nRuntime          "
              << labels.RunTime << '\n';
    for (std::size_t map = 0; map < views::MapCount; ++map) {
        std::cout << "DETO" << map + 1 << "            ";
        if (state.Present[map]) {
            std::cout << "Total " << labels.Total[map] << "  Total/km " << labels.PerKm[map]
                      << '\n';
        } else {
            std::cout << "not recorded\n";
        }
    }
}

// The map of the run's main file through a work file in the run's private folder, as the
// frame's "OpenFile" entry makes it from a window's layer.
std::optional<views::DetonationMapState> MapOfRun(const std::filesystem::path& input,
                                                  DeployedRun& run, shell::MessageSink& sink) {
    if (!run.Deploy(input, sink)) {
        return std::nullopt;
    }
    const logdata::LayerRecord& layer = run.Layer();
    if (!layer.ItemExists[logdata::Ne] ||
        !(layer.ItemExists[logdata::DETO1] || layer.ItemExists[logdata::DETO2])) {
        Fail("The run has no engine speed or no detonation counter: it makes no map.");
        return std::nullopt;
    }
    const std::filesystem::path work = views::GetDetonationOfLayer(run.Layers(), 0, sink);
    if (work.empty()) {
        return std::nullopt;
    }
    return views::LoadDetonationMap(views::DetonationSource::Layer, work, sink);
}

bool WritePng(const views::DetonationMapState& state, const std::filesystem::path& output,
              const std::filesystem::path& runtimeFolder) {
    const OffscreenGui gui(runtimeFolder);
    return render::DetonationPictureWithTexts(state).save(QString::fromStdString(output.string()),
                                                          "PNG");
}

} // namespace

int Detonation(const DetonationOptions& options) {
    StderrSink sink;
    DeployedRun run;
    std::optional<views::DetonationMapState> state;
    if (load::FileKindOf(options.Input.string()) == load::FileKind::DetonationFile) {
        state = views::LoadDetonationMap(views::DetonationSource::File, options.Input, sink);
    } else {
        state = MapOfRun(options.Input, run, sink);
    }
    if (!state) {
        return 1;
    }
    if (options.Output && !views::SaveDetonationFile(*state, *options.Output, sink)) {
        return 1;
    }
    if (options.Png && !WritePng(*state, *options.Png, run.Layers().TempDir)) {
        return Fail("cannot write " + options.Png->string());
    }
    PrintDetonation(*state, options.Json);
    return 0;
}

void PrintDetonation(const views::DetonationMapState& state, bool asJson) {
    if (asJson) {
        PrintJson(state);
    } else {
        PrintText(state);
    }
}

} // namespace torvane::cli
