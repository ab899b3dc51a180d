#pragma once
// mnuSave of a graph window once the save dialog has answered: a logging-file name keeps the
// main file there, any other name exports the main file's items as CSV. Only layer 0 is ever
// saved or exported.

#include "graph/layer_view.h"
#include "graph/window_state.h"
#include "logger/laf_table.h"
#include "output/save_choice.h"
#include "shell/message_sink.h"
#include "shell/window_registry.h"

#include <vector>

namespace torvane::load {

// The items an export writes, as indexes into the layer's ItemChannel: the slots that hold
// data and whose channel the layer's display shows, then the computed items in view; with
// `all`, every slot that holds data and every computed item.
std::vector<int> CsvItems(const logdata::LayerRecord& record, const graph::LayerView& view,
                          bool all);

// A name ending in RLG copies the main file there (onto itself nothing happens). A downloaded
// file counts as saved from then on and its working copy in TMP is deleted; the layer takes
// the new path and its caption. Any other name writes the CSV file, over the marked range when
// the choice asks for it. False when something failed; the operator has been told.
bool SaveMainFile(graph::GraphWindowState& state, const output::SaveChoice& choice,
                  shell::WindowRegistry& registry, const logger::LafTable& laf,
                  shell::MessageSink& sink);

} // namespace torvane::load
