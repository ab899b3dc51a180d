#pragma once
// Where the graph windows ask the operator for a file. A plain file dialog for now; the
// program's own file dialog takes its place behind these two functions.

#include <filesystem>
#include <optional>

class QWidget;

namespace torvane::app {

// A logging file to open; nothing when the operator cancels.
std::optional<std::filesystem::path> ChooseLoggingFile(QWidget* owner);
// A place to save a logging file to; nothing when the operator cancels.
std::optional<std::filesystem::path> ChooseSaveFile(QWidget* owner);

} // namespace torvane::app
