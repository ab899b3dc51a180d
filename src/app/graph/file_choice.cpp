#include "graph/file_choice.h"

#include <QFileDialog>

namespace torvane::app {
namespace {

constexpr const char* LoggingFilter = "Logging Files (*.rlg)";

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

} // namespace torvane::app
