#pragma once
// frmTLM0040, "HISTOGRAM": the TH or Ne histogram of a graph window's layer, a modeless window
// of its own (many may be open), over core's histogram window model.

#include "shell/message_sink.h"
#include "views/histogram_window.h"

#include <QMainWindow>

class QAction;
class QLabel;

namespace torvane::app {

class HistogramWindow : public QMainWindow {
    Q_OBJECT
public:
    HistogramWindow(shell::MessageSink& sink, QWidget* owner);
    // Unload: the private copies of the streams go with the window.
    ~HistogramWindow() override;
    HistogramWindow(const HistogramWindow&) = delete;
    HistogramWindow& operator=(const HistogramWindow&) = delete;

    // Copies the layer's streams and shows the first view; false when there is nothing to show
    // or the read failed (already told), and the window must go again.
    bool Load(const views::HistogramRequest& request);
    const views::HistogramWindowState& State() const { return state_; }

    // mnuTh and mnuNe: the TH view; the range dialog, then the Ne view.
    void ShowTh();
    void ChooseNe();
    // The Ne view of that range, as after OK in the dialog.
    void ShowNe(views::NeRange range);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowShownView();
    void ReadOut(QPoint at);

    views::HistogramWindowState state_;
    shell::MessageSink& sink_;
    QLabel* picture_; // picHist
    QLabel* data_;    // lblData
    QAction* th_;     // mnuTh
    QAction* ne_;     // mnuNe
};

// mnuHisto: a new histogram window for the request, shown; null when it closed at once.
HistogramWindow* OpenHistogramWindow(const views::HistogramRequest& request,
                                     shell::MessageSink& sink, QWidget* owner);

} // namespace torvane::app
