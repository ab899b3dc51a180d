#pragma once
// The histogram window (frmTLM0040, "HISTOGRAM") as a plain model: its private copies of a
// layer's Ne and TH streams, which views it offers, which it shows, and the figures of both.

#include "views/histogram.h"
#include "views/histogram_view.h"

#include <filesystem>
#include <optional>

namespace torvane::graph {
struct GraphWindowState;
}
namespace torvane::logdata {
struct LayerSet;
}

namespace torvane::views {

// What the graph window hands over when mnuHisto opens a histogram of its active layer.
struct HistogramRequest {
    std::filesystem::path TempDir;
    std::filesystem::path FileNe;
    std::filesystem::path FileTh;
    ThCalibration Th;
};
HistogramRequest HistogramRequestOf(const logdata::LayerSet& layers, int layer);
// The same for the window's active layer.
HistogramRequest HistogramRequestOf(const graph::GraphWindowState& window);

struct HistogramWindowState {
    // The private copies, HSNEnnnn.tmp and HSTHnnnn.tmp; empty when no copy was made.
    std::filesystem::path TempNe;
    std::filesystem::path TempTh;
    ThCalibration Th;
    // The range last asked for; the Ne view is made again only for another one.
    NeRange Range;
    bool ThEnabled = false; // mnuTh
    bool NeEnabled = false; // mnuNe
    std::optional<HistogramKind> Shown;
    std::optional<HistogramView> ThView;
    std::optional<HistogramView> NeView;
};

// Copies the streams and makes the first view: TH when its copy holds samples, else Ne with
// the whole range. False when the window must close again (neither view, or a failed read,
// already told through the sink). The copies are made even then; CloseHistogram removes them.
bool OpenHistogram(HistogramWindowState& state, const HistogramRequest& request,
                   shell::MessageSink& sink);

// mnuTh: shows the TH figures made at the start; nothing is read again.
void ShowThView(HistogramWindowState& state);

// After OK in the range dialog: makes the Ne figures unless they were made for that range, and
// shows them. False when the read failed and the window must close.
bool ShowNeRange(HistogramWindowState& state, NeRange range, shell::MessageSink& sink);

// The view shown now; null before one was made.
const HistogramView* ShownView(const HistogramWindowState& state);

// Unload: removes the private copies that exist.
void CloseHistogram(HistogramWindowState& state);

} // namespace torvane::views
