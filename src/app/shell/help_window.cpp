#include "shell/help_window.h"

#include "shell/about_box.h"

#include <QCoreApplication>
#include <QShortcut>
#include <QUrl>

#include <string>

namespace torvane::app {

std::filesystem::path ManualPath(std::string_view page) {
    const std::filesystem::path programDir = QCoreApplication::applicationDirPath().toStdString();
    const std::filesystem::path beside = programDir / "manual" / page;
    // Installed, the manual stands in the shared data folder of the prefix.
    const std::filesystem::path installed =
        programDir.parent_path() / "share" / "torvane-studio" / "manual" / page;
    std::error_code error;
    return !std::filesystem::exists(beside, error) && std::filesystem::exists(installed, error)
               ? installed
               : beside;
}

void AnswerHelpKey(QWidget* dialog, std::string_view page) {
    // A window of the dialog: while the dialog runs modally, a window of anything else would
    // take no input.
    QObject::connect(
        new QShortcut(QKeySequence::HelpContents, dialog), &QShortcut::activated, dialog,
        [dialog, page = std::string(page)] { (new HelpWindow(ManualPath(page), dialog))->show(); });
}

HelpWindow::HelpWindow(const std::filesystem::path& manual, QWidget* parent)
    : QTextBrowser(parent) {
    setObjectName("HelpWindow");
    setWindowFlag(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QString(ProgramTitle) + " Help");
    setOpenExternalLinks(true);
    const QString file = QString::fromStdString(manual.string());
    if (std::filesystem::exists(manual)) {
        setSource(QUrl::fromLocalFile(file));
    } else {
        setPlainText("The manual is not installed: " + file);
    }
    resize(640, 560);
}

} // namespace torvane::app
