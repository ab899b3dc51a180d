#pragma once
// The built-in help window: the HTML manual that is installed beside the program.

#include <QTextBrowser>

#include <filesystem>

namespace torvane::app {

// manual/index.html beside the program.
std::filesystem::path ManualPath();

// F1 in the dialog opens the manual, as a window of the dialog.
void AnswerHelpKey(QWidget* dialog);

class HelpWindow : public QTextBrowser {
    Q_OBJECT
public:
    explicit HelpWindow(const std::filesystem::path& manual, QWidget* parent = nullptr);
};

} // namespace torvane::app
