#pragma once
// frmTLM0041, "Axial setup of Ne data": asks the histogram window for an engine-speed range,
// checked by core's rules of the dialog.

#include "shell/message_sink.h"
#include "views/histogram.h"

#include <QDialog>

#include <optional>

class QLineEdit;
class QPushButton;

namespace torvane::app {

class NeRangeDialog : public QDialog {
    Q_OBJECT
public:
    NeRangeDialog(views::NeRange shown, shell::MessageSink& sink, QWidget* parent = nullptr);

    // The range after OK; nothing after Cancel.
    std::optional<views::NeRange> Range() const { return range_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void PressOk();

    shell::MessageSink& sink_;
    QLineEdit* start_; // txtDataStart
    QLineEdit* end_;   // txtDataEnd
    QPushButton* ok_;  // cmdExec
    std::optional<views::NeRange> range_;
};

} // namespace torvane::app
