#pragma once
// The built-in help window: the HTML manual that is installed beside the program.

#include <QTextBrowser>

#include <filesystem>
#include <string_view>

namespace torvane::app {

// A page of the manual (manual/index.html unless another is named): beside the program, or
// where `cmake --install` puts it, share/torvane-studio/manual under the program's prefix.
std::filesystem::path ManualPath(std::string_view page = "index.html");

// F1 in the dialog or window opens the manual at its page, as a window of the dialog.
void AnswerHelpKey(QWidget* dialog, std::string_view page = "index.html");

class HelpWindow : public QTextBrowser {
    Q_OBJECT
public:
    explicit HelpWindow(const std::filesystem::path& manual, QWidget* parent = nullptr);
};

} // namespace torvane::app
