#pragma once
// frmTLM0090, the lap list: the best lap and every lap of one layer, beside the graph windows,
// and mnuLap, which shows it for the active window's active layer. There is one list for the
// whole program; a click on a lap moves the active window's active layer to its start.

#include "graph/lap_list.h"
#include "logdata/layer.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>
#include <string_view>

class QAction;
class QLabel;
class QTableWidget;

namespace torvane::app {

class GraphWindow;

class LapListWindow : public QWidget {
    Q_OBJECT
public:
    explicit LapListWindow(QWidget* owner);

    // Shows the laps of a layer under the file's bare name, keeping a copy of them.
    void DispLapTime(const logdata::LapInfo& lap, std::string_view fileName);
    const graph::LapList& Content() const { return content_; }

signals:
    // A row of the grid was clicked: 0 the start, else the lap's number.
    void LapChosen(int lapNo);
    // The list is being unloaded, from mnuLap or its own window; it is still where it stood.
    void Closing();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    graph::LapList content_;
    QLabel* title_;      // lblTitle
    QLabel* time_;       // lblTime
    QTableWidget* grid_; // grdLap
};

// mnuLap's side of the frame: the entry is checked exactly while the list is loaded, and the
// list's place is kept from one showing to the next while the program runs.
class LapListToggle : public QObject {
    Q_OBJECT
public:
    using ActiveWindow = std::function<GraphWindow*()>;
    LapListToggle(QWidget& frame, QAction& menu, ActiveWindow activeWindow);

    // mnuLap was chosen; its check, already flipped, says what the operator wants.
    void Toggle();
    // The active window, or its active layer, changed: an open list shows that layer.
    void Refill();
    // Unloads the list: mnuLap turned off, or no graph window is left.
    void Close();
    // A loaded list hides while a window that works on the logger alone runs, and shows again
    // after it, where it stood.
    void StepAside(bool aside);

private:
    void Show();

    QWidget& frame_;
    QAction& menu_;
    ActiveWindow activeWindow_;
    QPointer<LapListWindow> list_;
    std::optional<QPoint> place_;
};

} // namespace torvane::app
