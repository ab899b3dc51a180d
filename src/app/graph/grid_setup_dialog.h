#pragma once
// frmTLM0014, "Setup of a grid": an item of layer 0 (cmbItem), whether its grid is drawn
// (chkGrid), and its scale limits (txtMax, txtMin) in engineering units. Accepted with the
// limits in axis units.

#include "items/grid_limits.h"
#include "shell/message_sink.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace torvane::app {

class GridSetupDialog : public QDialog {
    Q_OBJECT
public:
    GridSetupDialog(items::GridRequest request, shell::MessageSink& sink, QWidget* owner);
    // Meaningful once accepted.
    const items::GridResult& Result() const { return result_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const items::GridItem& Chosen() const;
    void ShowLimits(const items::LimitTexts& limits);
    void Confirm();

    items::GridRequest request_;
    shell::MessageSink& sink_;
    items::GridResult result_;
    QComboBox* item_; // cmbItem
    QCheckBox* grid_; // chkGrid
    QLineEdit* max_;  // txtMax
    QLineEdit* min_;  // txtMin
};

} // namespace torvane::app
