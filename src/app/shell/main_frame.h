#pragma once
// The multi-document frame: the program's menu bar and the area where graph windows open.
// Entries whose windows do not exist yet are present and disabled, so the menu a race engineer
// sees is the whole one from the start.

#include <QHash>
#include <QMainWindow>

class QAction;
class QMdiArea;

namespace torvane::app {

class MainFrame : public QMainWindow {
    Q_OBJECT
public:
    explicit MainFrame(QWidget* parent = nullptr);

    // The menu entry (or submenu) of that object name; null for a name the frame does not have.
    QAction* Action(const QString& name) const { return actions_.value(name); }
    QMdiArea* Area() const { return area_; }

private:
    void BuildMenu();
    void WireHandlers();
    void ShowAbout();

    QMdiArea* area_;
    QHash<QString, QAction*> actions_;
};

} // namespace torvane::app
