#include "shell/help_window.h"

#include "shell/about_box.h"

#include <QCoreApplication>
#include <QDialog>
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

namespace {

constexpr const char* HelpPageProperty = "torvaneHelpPage";

} // namespace

void SetHelpPage(QWidget* window, std::string_view page) {
    window->setProperty(HelpPageProperty,
                        QString::fromUtf8(page.data(), static_cast<qsizetype>(page.size())));
}

void AnswerHelpKey(QWidget* dialog, std::string_view page) {
    SetHelpPage(dialog, page);
    // Only a dialog is always a window of its own. Anything else may stand in the frame's window
    // (a graph window is made before it is placed in the frame, and Qt counts tool windows into
    // their owner's), where a second F1 shortcut would make both ambiguous.
    if (qobject_cast<QDialog*>(dialog) == nullptr) {
        return;
    }
    // A window of the dialog: while the dialog runs modally, a window of anything else would
    // take no input.
    QObject::connect(
        new QShortcut(QKeySequence::HelpContents, dialog), &QShortcut::activated, dialog,
        [dialog, page = std::string(page)] { (new HelpWindow(ManualPath(page), dialog))->show(); });
}

std::string HelpPageOf(const QWidget* widget) {
    for (; widget != nullptr; widget = widget->parentWidget()) {
        const QVariant page = widget->property(HelpPageProperty);
        if (page.isValid()) {
            return page.toString().toStdString();
        }
    }
    return "index.html";
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
