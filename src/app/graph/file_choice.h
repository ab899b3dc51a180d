#pragma once
// Where the graph windows ask the operator for a file. A plain file dialog for now; the
// program's own file dialog takes its place behind these two functions.

#include "output/save_choice.h"

#include <filesystem>
#include <optional>

class QWidget;

namespace torvane::app {

// A logging file to open; nothing when the operator cancels.
std::optional<std::filesystem::path> ChooseLoggingFile(QWidget* owner);
// A place to save a logging file to; nothing when the operator cancels.
std::optional<std::filesystem::path> ChooseSaveFile(QWidget* owner);
// Where to save the main file, or a CSV file to export it to, with the export's options.
std::optional<output::SaveChoice> ChooseSaveOrExport(QWidget* owner, bool rangeMarked);

} // namespace torvane::app
