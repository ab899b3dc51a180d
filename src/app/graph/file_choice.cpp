#include "graph/file_choice.h"

#include <QFileDialog>

namespace torvane::app {
namespace {

constexpr const char* LoggingFilter = "Logging Files (*.rlg)";
constexpr const char* CsvFilter = "Csv Files (*.csv)";

std::optional<std::filesystem::path> ToPath(const QString& chosen) {
    if (chosen.isEmpty()) {
        return std::nullopt;
    }
    return std::filesystem::path(chosen.toStdString());
}

} // namespace

std::optional<std::filesystem::path> ChooseLoggingFile(QWidget* owner) {
    return ToPath(QFileDialog::getOpenFileName(owner, QString(), QString(), LoggingFilter));
}

std::optional<std::filesystem::path> ChooseSaveFile(QWidget* owner) {
    return ToPath(QFileDialog::getSaveFileName(owner, QString(), QString(), LoggingFilter));
}

std::optional<output::SaveChoice> ChooseSaveOrExport(QWidget* owner, bool rangeMarked) {
    const auto path = ToPath(QFileDialog::getSaveFileName(
        owner, QString(), QString(), QString("%1;;%2").arg(LoggingFilter, CsvFilter)));
    if (!path) {
        return std::nullopt;
    }
    return output::SaveChoice{.Filepath = *path, .CsvAllItem = false, .CsvRange = rangeMarked};
}

} // namespace torvane::app
