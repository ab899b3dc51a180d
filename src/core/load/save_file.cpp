#include "load/save_file.h"

#include "graph/item_panel.h"
#include "load/comment_file.h"
#include "load/keep_logging_file.h"
#include "load/link_command.h"
#include "load/run_time_guard.h"
#include "logdata/csv_export.h"

namespace torvane::load {
namespace fs = std::filesystem;

namespace {

bool ExportMainFile(const graph::GraphWindowState& state, const output::SaveChoice& choice,
                    const logger::LafTable& laf, shell::MessageSink& sink) {
    const std::vector<int> items =
        CsvItems(state.Layers.Layer[0], state.Views[0], choice.CsvAllItem);
    std::optional<logdata::CsvRange> range;
    if (choice.CsvRange) {
        range = logdata::CsvRange{state.RangeStart, state.RangeEnd};
    }
    return RunReportingErrors(sink, [&] {
        return logdata::WriteCsv(choice.Filepath, state.Layers, items, range, laf, sink);
    });
}

} // namespace

std::vector<int> CsvItems(const logdata::LayerRecord& record, const graph::LayerView& view,
                          bool all) {
    std::vector<int> items;
    for (std::size_t index = 0; index < record.ItemChannel.size(); ++index) {
        const int position = static_cast<int>(index);
        const graph::ItemDisplay* display = graph::ItemDisplayOf(view, record, position);
        const bool shown = all || (display != nullptr && display->View == 1);
        const bool holdsData = position < logdata::SlotCount
                                   ? record.ItemExists[index]
                                   : index - logdata::SlotCount < record.FormulaItems.size();
        if (shown && holdsData) {
            items.push_back(position);
        }
    }
    return items;
}

bool SaveMainFile(graph::GraphWindowState& state, const output::SaveChoice& choice,
                  shell::WindowRegistry& registry, const logger::LafTable& laf,
                  shell::MessageSink& sink) {
    if (FileKindOf(choice.Filepath.string()) != FileKind::LoggingFile) {
        return ExportMainFile(state, choice, laf, sink);
    }
    logdata::LayerRecord& main = state.Layers.Layer[0];
    const fs::path old = main.FilePath;
    if (choice.Filepath.native() == old.native()) {
        return true;
    }
    if (!CopyLoggingFile(old, choice.Filepath, sink)) {
        return false;
    }
    // The comments go with the file under its new name.
    WriteCommentFile(WindowFileComments(state, old), choice.Filepath, sink);
    const int window = state.Layers.WindowNumber;
    if (registry.GetLogger(window) == 1) {
        registry.SetLogger(window, 0);
        // The copy is the file now; a working copy that cannot go keeps the layer on it.
        if (!DeleteLoggingFile(old, sink)) {
            return false;
        }
    }
    main.FilePath = choice.Filepath;
    state.Panel.RenameFile(0, graph::BareFileName(main.FilePath));
    return true;
}

} // namespace torvane::load
