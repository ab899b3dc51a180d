#pragma once
// frmTLM0011, "Save of layout": names the store's pending display and saves it, or deletes a saved
// layout. Accepted once a layout was saved; cancelled otherwise, even after a delete.

#include "layout/layout_store.h"
#include "shell/message_sink.h"

#include <QDialog>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace torvane::app {

class LayoutSaveDialog : public QDialog {
    Q_OBJECT
public:
    LayoutSaveDialog(layout::LayoutStore& store, shell::MessageSink& sink, QWidget* owner);

private:
    // Lists the saved layouts and offers the buttons they allow, as on opening.
    void Fill();
    void Save();
    void Delete();

    layout::LayoutStore& store_;
    shell::MessageSink& sink_;
    QListWidget* list_;   // lstLayout
    QLineEdit* name_;     // txtLayName
    QPushButton* save_;   // cmdSave
    QPushButton* delete_; // cmdDel
    QPushButton* cancel_; // cmdCancel
};

} // namespace torvane::app
