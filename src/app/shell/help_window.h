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

// F1 in the dialog opens the manual at its page, as a window of the dialog. Any other window (a
// graph window inside the frame, a tool window of it such as the toolbox or the lap list) only
// names its page: the frame's F1 opens the page of the window that holds the focus
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
