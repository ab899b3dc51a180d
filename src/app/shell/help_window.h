#pragma once
// The built-in help window: the HTML manual that is installed beside the program.

#include <QTextBrowser>

#include <filesystem>
#include <string>
#include <string_view>

namespace torvane::app {

// A page of the manual (manual/index.html unless another is named): beside the program, or
// where `cmake --install` puts it, share/torvane-studio/manual under the program's prefix.
std::filesystem::path ManualPath(std::string_view page = "index.html");

// F1 in the dialog or window opens the manual at its page, as a window of the dialog. Inside
// the frame (a graph window) or as a tool window of it (the toolbox, the lap list) the window
// only names its page: the frame's F1 opens the page of the window that holds the focus
// (HelpPageOf).
void AnswerHelpKey(QWidget* dialog, std::string_view page = "index.html");

// Names the page of a window whose F1 someone else answers (the frame's own F1).
void SetHelpPage(QWidget* window, std::string_view page);

// The page of the nearest window around `widget` that answers F1; index.html for none.
std::string HelpPageOf(const QWidget* widget);

class HelpWindow : public QTextBrowser {
    Q_OBJECT
public:
    explicit HelpWindow(const std::filesystem::path& manual, QWidget* parent = nullptr);
};

} // namespace torvane::app
