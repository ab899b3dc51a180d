#pragma once
// Where the graph windows ask the operator for a file: the program's own file dialog, in the
// mode of each question.

#include "output/file_dialog.h"
#include "output/save_choice.h"

#include <filesystem>
#include <optional>

class QWidget;

namespace torvane::app {

// A logging file to open; nothing when the operator cancels.
std::optional<std::filesystem::path> ChooseLoggingFile(FileDialogContext& context, QWidget* owner);
// A place to save a logging file to; nothing when the operator cancels.
std::optional<std::filesystem::path> ChooseSaveFile(FileDialogContext& context, QWidget* owner);
// A detonation map file to open (mode 3), and where to save one (mode 4); nothing when the
// operator cancels.
std::optional<std::filesystem::path> ChooseDetonationFile(FileDialogContext& context,
                                                          QWidget* owner);
std::optional<std::filesystem::path> ChooseDetonationSave(FileDialogContext& context,
                                                          QWidget* owner);
// Where a printed page goes as a PDF file; nothing when the operator cancels.
std::optional<std::filesystem::path> ChoosePdfFile(FileDialogContext& context, QWidget* owner);
// Where to save the main file, or a CSV file to export it to, with the export's options;
// `rangeMarked` offers the export of the marked range only.
std::optional<output::SaveChoice> ChooseSaveOrExport(FileDialogContext& context, QWidget* owner,
                                                     bool rangeMarked);

} // namespace torvane::app
