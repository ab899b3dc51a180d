#pragma once
// frmTLM0050, "REAL TIME MONITOR": the logger's live values in engineering units, its program,
// the time of its setting and its start conditions. The window holds one link from opening to
// closing; tmrReal asks core's monitor for one reading every 25 ms, so the interface waits at
// most one exchange at a time, and a lost link is retried silently on every tick. Closing, by
// any way, releases the link.

#include "logger/laf_table.h"
#include "logger/logger_link.h"
#include "logger/monitor.h"

#include <QDialog>

#include <array>

class QAction;
class QLabel;
class QTimer;

namespace torvane::app {

class MonitorWindow : public QDialog {
    Q_OBJECT
public:
    MonitorWindow(logger::Driver& driver, shell::MessageSink& sink, const logger::LafTable& laf,
                  QWidget* parent = nullptr);
    ~MonitorWindow() override;

    // Opens the link and takes the first reading; false when the window is not to be shown
    // (the operator has been told).
    bool Open();
    // Opens and shows the window modally; nothing when it could not open.
    static void Run(logger::Driver& driver, shell::MessageSink& sink, const logger::LafTable& laf,
                    QWidget* parent = nullptr);

    const logger::Monitor& Model() const { return monitor_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void done(int result) override;

private:
    void BuildControls();
    void Tick();
    void ToggleStop();
    void Print();
    void ShowValues();
    void ShowMenuAndTimer();

    logger::LoggerLink link_;
    logger::Monitor monitor_;
    QTimer* tmrReal_;
    QAction* mnuStop_;
    std::array<QLabel*, logger::MonitorFieldCount> values_{};
    QLabel* lblProgram_;
    QLabel* lblDate_;
    QLabel* lblStart_;
};

} // namespace torvane::app
