#include "logger/password_dialog.h"

#include "logger/service_gate.h"

#include "shell/help_window.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace torvane::app {

PasswordDialog::PasswordDialog(QWidget* owner)
    : QDialog(owner)
    , password_(new QLineEdit(this)) {
    setObjectName("frmTLM0080");
    setWindowTitle("Service mode");
    password_->setObjectName("txtPass");
    password_->setEchoMode(QLineEdit::Password);
    auto* ok = new QPushButton("OK(&O)", this);
    ok->setObjectName("cmdOk");
    ok->setDefault(true);
    auto* cancel = new QPushButton("Cancel(&C)", this);
    cancel->setObjectName("cmdCancel");
    cancel->setAutoDefault(false);
    connect(ok, &QPushButton::clicked, this, [this] {
        if (logger::OpensServiceMode(password_->text().toStdString())) {
            accept();
        }
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(password_);
    layout->addLayout(buttons);
    AnswerHelpKey(this, "password.html");
    setFixedSize(sizeHint().expandedTo(QSize(280, 0)));
}

} // namespace torvane::app
