#include "graph/file_choice.h"

namespace torvane::app {
namespace {

std::optional<std::filesystem::path> ChoosePath(FileDialogContext& context, QWidget* owner,
                                                output::FileDialogMode mode) {
    const output::FileDialogResult result = FileDialog::Run({.Mode = mode}, context, owner);
    if (result.Cancel) {
        return std::nullopt;
    }
    return result.Filepath;
}

} // namespace

std::optional<std::filesystem::path> ChooseLoggingFile(FileDialogContext& context, QWidget* owner) {
    return ChoosePath(context, owner, output::FileDialogMode::LoadLoggingFile);
}

std::optional<std::filesystem::path> ChooseSaveFile(FileDialogContext& context, QWidget* owner) {
    return ChoosePath(context, owner, output::FileDialogMode::SaveLoggingFile);
}

std::optional<std::filesystem::path> ChooseDetonationFile(FileDialogContext& context,
                                                          QWidget* owner) {
    return ChoosePath(context, owner, output::FileDialogMode::LoadDetonationFile);
}

std::optional<std::filesystem::path> ChooseDetonationSave(FileDialogContext& context,
                                                          QWidget* owner) {
    return ChoosePath(context, owner, output::FileDialogMode::SaveDetonationFile);
}

std::optional<std::filesystem::path> ChoosePdfFile(FileDialogContext& context, QWidget* owner) {
    return ChoosePath(context, owner, output::FileDialogMode::SavePdfFile);
}

std::optional<output::SaveChoice> ChooseSaveOrExport(FileDialogContext& context, QWidget* owner,
                                                     bool rangeMarked) {
    const output::FileDialogResult result = FileDialog::Run(
        {.Mode = output::FileDialogMode::SaveLoggingFile, .CsvRange = rangeMarked}, context, owner);
    if (result.Cancel) {
        return std::nullopt;
    }
    return output::SaveChoice{
        .Filepath = result.Filepath, .CsvAllItem = result.CsvAllItem, .CsvRange = result.CsvRange};
}

} // namespace torvane::app
