#include "shell/service_door.h"

#include "logger/password_dialog.h"

#include <QDialog>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

namespace torvane::app {

bool OpensServiceDoor(Qt::KeyboardModifiers modifiers, bool upHeld) {
    const Qt::KeyboardModifiers needed = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    return upHeld && (modifiers & needed) == needed;
}

ServiceDoor::ServiceDoor(QWidget* frame)
    : QObject(frame)
    , frame_(frame)
    , timer_(new QTimer(frame)) {
    timer_->setObjectName("tmrKeyEvn");
    timer_->setInterval(KeyEventInterval);
    connect(timer_, &QTimer::timeout, this, &ServiceDoor::Check);
    timer_->start();
    qApp->installEventFilter(this);
}

ServiceDoor::~ServiceDoor() {
    qApp->removeEventFilter(this);
}

void ServiceDoor::Check() {
    if (!OpensServiceDoor(QGuiApplication::queryKeyboardModifiers(), upHeld_)) {
        return;
    }
    // The keys may still be held when the next second comes: one dialog at a time.
    timer_->stop();
    PasswordDialog password(frame_);
    if (password.exec() == QDialog::Accepted && serviceMode_) {
        serviceMode_(frame_);
    }
    timer_->start();
}

bool ServiceDoor::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Up && !key->isAutoRepeat()) {
            upHeld_ = event->type() == QEvent::KeyPress;
        }
        break;
    }
    case QEvent::ApplicationDeactivate:
        // A key let go while another program had the keyboard sends no release here.
        upHeld_ = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace torvane::app
