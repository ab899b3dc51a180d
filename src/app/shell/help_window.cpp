#include "shell/help_window.h"

#include "shell/about_box.h"

#include <QCoreApplication>
#include <QEvent>
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

// Keeps a window's F1 on while the window is one of its own. Placed in the frame's window (a
// graph window is made before it goes into the frame), or a tool window, which Qt counts into
// its owner's, it is off: a second F1 there would make both ambiguous, and the frame's F1 opens
// the page instead.
class OwnWindowKey : public QObject {
public:
    OwnWindowKey(QWidget& window, QShortcut& key)
        : QObject(&window)
        , window_(window)
        , key_(key) {
        window.installEventFilter(this);
        Follow();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ParentChange) {
            Follow();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void Follow() { key_.setEnabled(window_.isWindow() && window_.windowType() != Qt::Tool); }

    QWidget& window_;
    QShortcut& key_;
};

} // namespace

void SetHelpPage(QWidget* window, std::string_view page) {
    window->setProperty(HelpPageProperty,
                        QString::fromUtf8(page.data(), static_cast<qsizetype>(page.size())));
}

void AnswerHelpKey(QWidget* dialog, std::string_view page) {
    SetHelpPage(dialog, page);
    // A window of the dialog: while the dialog runs modally, a window of anything else would
    // take no input.
    auto* shortcut = new QShortcut(QKeySequence::HelpContents, dialog);
    QObject::connect(shortcut, &QShortcut::activated, dialog, [dialog, page = std::string(page)] {
        (new HelpWindow(ManualPath(page), dialog))->show();
    });
    new OwnWindowKey(*dialog, *shortcut);
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
