#pragma once
// The about box: the program's name and version, and OK.

#include <QDialog>

namespace torvane::app {

inline constexpr const char* ProgramTitle = "Torvane Studio";
inline constexpr const char* ProgramVersion = "2.00.00";

class AboutBox : public QDialog {
    Q_OBJECT
public:
    explicit AboutBox(QWidget* owner);
};

} // namespace torvane::app
