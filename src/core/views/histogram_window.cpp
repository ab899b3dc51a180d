#include "views/histogram_window.h"

#include "graph/window_state.h"
#include "logdata/channels.h"
#include "shell/temp_files.h"

#include <system_error>

namespace torvane::views {
namespace fs = std::filesystem;

namespace {

// A copy of the stream under the next free number, so the window keeps its data when the file
// it came from is closed or replaced. An empty path when the copy could not be made; a copy
// is only ever made of a regular file.
fs::path PrivateCopy(const fs::path& source, const fs::path& tempDir, std::string_view prefix) {
    std::error_code error;
    if (source.empty() || !fs::is_regular_file(source, error)) {
        return {};
    }
    const fs::path copy = shell::NextNumberedFile(tempDir, prefix, ".tmp");
    if (!fs::copy_file(source, copy, fs::copy_options::none, error)) {
        fs::remove(copy, error);
        return {};
    }
    return copy;
}

bool HoldsSamples(const fs::path& copy) {
    std::error_code error;
    return !copy.empty() && fs::is_regular_file(copy, error) && fs::file_size(copy, error) >= 1 &&
           !error;
}

bool MakeNe(HistogramWindowState& state, NeRange range, shell::MessageSink& sink) {
    HistogramFigures figures;
    if (!MakeNeHistogram(state.TempNe, range, figures, sink)) {
        return false;
    }
    state.NeView = MakeNeView(figures, range);
    return true;
}

} // namespace

HistogramRequest HistogramRequestOf(const logdata::LayerSet& layers, int layer) {
    const logdata::LayerRecord& record = layers.Layer.at(static_cast<std::size_t>(layer));
    HistogramRequest request;
    request.TempDir = layers.TempDir;
    request.FileNe = layers.StreamPath(layer, logdata::StreamNames[logdata::Ne]);
    request.FileTh = layers.StreamPath(layer, logdata::StreamNames[logdata::TH]);
    request.Th = {static_cast<std::int16_t>(record.Header.ThOpen()),
                  static_cast<std::int16_t>(record.Header.ThClose())};
    return request;
}

HistogramRequest HistogramRequestOf(const graph::GraphWindowState& window) {
    return HistogramRequestOf(window.Layers, window.ActiveLayer);
}

bool OpenHistogram(HistogramWindowState& state, const HistogramRequest& request,
                   shell::MessageSink& sink) {
    state = {};
    state.TempNe = PrivateCopy(request.FileNe, request.TempDir, "HSNE");
    state.TempTh = PrivateCopy(request.FileTh, request.TempDir, "HSTH");
    state.Th = request.Th;
    state.ThEnabled = HoldsSamples(state.TempTh);
    state.NeEnabled = HoldsSamples(state.TempNe);
    if (state.ThEnabled) {
        HistogramFigures figures;
        if (!MakeThHistogram(state.TempTh, state.Th, figures, sink)) {
            return false;
        }
        state.ThView = MakeThView(figures);
        state.Shown = HistogramKind::Th;
        return true;
    }
    if (state.NeEnabled) {
        if (!MakeNe(state, state.Range, sink)) {
            return false;
        }
        state.Shown = HistogramKind::Ne;
        return true;
    }
    return false;
}

void ShowThView(HistogramWindowState& state) {
    if (state.ThView) {
        state.Shown = HistogramKind::Th;
    }
}

bool ShowNeRange(HistogramWindowState& state, NeRange range, shell::MessageSink& sink) {
    if (!state.NeEnabled) {
        return false;
    }
    if (!state.NeView || state.NeView->Range != range) {
        if (!MakeNe(state, range, sink)) {
            return false;
        }
    }
    state.Range = range;
    state.Shown = HistogramKind::Ne;
    return true;
}

const HistogramView* ShownView(const HistogramWindowState& state) {
    if (state.Shown == HistogramKind::Th && state.ThView) {
        return &*state.ThView;
    }
    if (state.Shown == HistogramKind::Ne && state.NeView) {
        return &*state.NeView;
    }
    return nullptr;
}

void CloseHistogram(HistogramWindowState& state) {
    std::error_code error;
    for (fs::path* copy : {&state.TempNe, &state.TempTh}) {
        if (!copy->empty()) {
            fs::remove(*copy, error);
            copy->clear();
        }
    }
}

} // namespace torvane::views
