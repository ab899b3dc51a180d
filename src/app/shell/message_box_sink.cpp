#include "shell/message_box_sink.h"

#include "shell/about_box.h"

#include <QMessageBox>

namespace torvane::app {
namespace {

QMessageBox::Icon IconFor(int icon) {
    switch (icon) {
    case shell::icons::Stop:
        return QMessageBox::Critical;
    case shell::icons::Question:
        return QMessageBox::Question;
    case shell::icons::Warning:
        return QMessageBox::Warning;
    case shell::icons::Information:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QMessageBox::StandardButtons ButtonsFor(int buttons) {
    switch (buttons) {
    case shell::buttons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case shell::buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case shell::buttons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    default:
        return QMessageBox::Ok;
    }
}

int AnswerFor(int button) {
    switch (button) {
    case QMessageBox::Cancel:
        return shell::answers::Cancel;
    case QMessageBox::Yes:
        return shell::answers::Yes;
    case QMessageBox::No:
        return shell::answers::No;
    default:
        return shell::answers::Ok;
    }
}

} // namespace

int MessageBoxSink::Show(const shell::Message& message) {
    QMessageBox box(IconFor(message.Icon), ProgramTitle, QString::fromStdString(message.Text),
                    ButtonsFor(message.Buttons), owner_);
    return AnswerFor(box.exec());
}

} // namespace torvane::app
