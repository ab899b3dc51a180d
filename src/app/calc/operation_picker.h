#pragma once
// frmTLM0120, "Operation": picks an operation (mode 1) or one of the offered items (mode 2) for
// the formula box. Accepted with the picked text.

#include "calc/formula_dialog.h"
#include "shell/message_sink.h"

#include <QDialog>

#include <string>
#include <vector>

class QListWidget;

namespace torvane::app {

class OperationPicker : public QDialog {
    Q_OBJECT
public:
    OperationPicker(calc::PickerMode mode, const std::vector<int>& kinds, shell::MessageSink& sink,
                    QWidget* owner);

    // The text Ok returned ("sin()", "+", "Ne"...).
    const std::string& Picked() const { return picked_; }

private:
    void Ok();

    calc::PickerMode mode_;
    std::vector<int> kinds_;
    shell::MessageSink& sink_;
    QListWidget* list_; // lstItem
    std::string picked_;
};

} // namespace torvane::app
