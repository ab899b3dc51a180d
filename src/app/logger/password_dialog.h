#pragma once
// frmTLM0080, "Service mode": the password box in front of service mode. OK with the right
// password accepts it; a wrong one leaves the box as it is. Cancel closes it.

#include <QDialog>

class QLineEdit;

namespace torvane::app {

class PasswordDialog : public QDialog {
    Q_OBJECT
public:
    explicit PasswordDialog(QWidget* owner);

private:
    QLineEdit* password_; // txtPass
};

} // namespace torvane::app
