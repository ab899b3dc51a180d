#pragma once
// frmTLM0012, "Selection of a display item": the items of a layer, marked where they are on show.
// Accepted with the new View flags by position; cancelled leaves the layer as it was.

#include "items/item_choice.h"
#include "shell/message_sink.h"

#include <QDialog>

#include <vector>

class QListWidget;

namespace torvane::app {

class DisplayItemDialog : public QDialog {
    Q_OBJECT
public:
    DisplayItemDialog(std::vector<items::ItemChoice> items, shell::MessageSink& sink,
                      QWidget* owner);
    // The View flag of every position; meaningful once accepted.
    const std::vector<bool>& View() const { return view_; }

private:
    void MarkAll(bool marked);
    void Confirm();

    std::vector<items::ItemChoice> items_;
    shell::MessageSink& sink_;
    std::vector<bool> view_;
    QListWidget* list_; // lstItem
};

} // namespace torvane::app
