// torvane-cli histogram: the TH and Ne histograms of a run's main file, as the histogram window
// makes them from the graph window's layer 0.

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "cli/deployed_run.h"
#include "cli/offscreen_gui.h"

#include "render/histogram_picture.h"
#include "shell/number_format.h"
#include "views/histogram_range.h"
#include "views/histogram_window.h"

#include <iostream>

namespace torvane::cli {
namespace {

using nlohmann::json;

json ViewJson(const views::HistogramView& view) {
    json counts = json::array();
    json percent = json::array();
    json shares = json::array();
    for (std::size_t i = 0; i < views::BarCount; ++i) {
        counts.push_back(view.Figures.Counts[i]);
        percent.push_back(JsonNumber(view.Figures.Percent[i]));
        shares.push_back(view.Shares[i]);
    }
    json out{{"counts", counts},
             {"percent", percent},
             {"max", view.Figures.Max},
             {"shares", shares},
             {"total", view.Figures.Total}};
    if (view.Kind == views::HistogramKind::Ne) {
        out["start"] = view.Range.Start;
        out["end"] = view.Range.End;
        out["width"] = view.Width;
    }
    return out;
}

// One line a bar: its band as the read-out names it, its count and its share.
void PrintView(const views::HistogramView& view) {
    const bool ne = view.Kind == views::HistogramKind::Ne;
    std::cout << (ne ? "Ne" : "TH") << "  " << view.Figures.Total << " samples";
    if (ne) {
        std::cout << ", " << view.Range.Start << " - " << view.Range.End << " r/min, band "
                  << view.Width;
    }
    std::cout << "\n";
    for (int i = 0; i < views::BarCount; ++i) {
        const views::Band bar = views::BandOf(view, i);
        const std::string band = std::to_string(bar.From) + " - " + std::to_string(bar.To);
        std::cout << "  " << shell::FormatText(band, "@@@@@@@@@@@@@@@") << "  "
                  << shell::FormatText(
                         std::to_string(view.Figures.Counts[static_cast<std::size_t>(i)]),
                         "@@@@@@@@@@")
                  << "  " << view.Shares[static_cast<std::size_t>(i)] << "%\n";
    }
}

bool SavePicture(const views::HistogramView& view, const std::filesystem::path& file) {
    return render::DrawHistogramPicture(view).save(QString::fromStdString(file.string()), "PNG");
}

} // namespace

int Histogram(const HistogramOptions& options) {
    StderrSink sink;
    views::NeRange range;
    if (options.NeStart || options.NeEnd) {
        const views::NeRangeCheck check =
            views::CheckNeRange(options.NeStart.value_or(""), options.NeEnd.value_or(""));
        if (!check.Accepted) {
            shell::ShowMessage(sink, check.Message, shell::buttons::Ok, shell::icons::Information);
            return 1;
        }
        range = check.Range;
    }
    DeployedRun run;
    if (!run.Deploy(options.Input, sink)) {
        return 1;
    }
    views::HistogramWindowState state;
    const bool opened =
        views::OpenHistogram(state, views::HistogramRequestOf(run.Layers(), 0), sink);
    if (!opened && !state.ThEnabled && !state.NeEnabled) {
        return Fail("the run holds no Ne and no TH samples");
    }
    if (!opened || (state.NeEnabled && !views::ShowNeRange(state, range, sink))) {
        views::CloseHistogram(state);
        return 1;
    }
    views::CloseHistogram(state);

    if ((options.PngTh && !state.ThView) || (options.PngNe && !state.NeView)) {
        return Fail(std::string("the run holds no ") +
                    (options.PngTh && !state.ThView ? "TH" : "Ne") + " samples to draw");
    }
    if (options.PngTh || options.PngNe) {
        const OffscreenGui gui(run.Layers().TempDir);
        for (const auto& [file, view] :
             {std::pair{options.PngTh, state.ThView}, std::pair{options.PngNe, state.NeView}}) {
            if (file && !SavePicture(*view, *file)) {
                return Fail("cannot write " + file->string());
            }
        }
    }

    // The window opens on TH when the run has it, so its count is the run's.
    const views::HistogramView& first = state.ThView ? *state.ThView : *state.NeView;
    if (options.Json) {
        json out{{"total", first.Figures.Total}};
        if (state.ThView) {
            out["TH"] = ViewJson(*state.ThView);
        }
        if (state.NeView) {
            out["Ne"] = ViewJson(*state.NeView);
        }
        std::cout << out.dump() << '\n';
        return 0;
    }
    for (const auto& view : {state.ThView, state.NeView}) {
        if (view) {
            PrintView(*view);
        }
    }
    return 0;
}

} // namespace torvane::cli
