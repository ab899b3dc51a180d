#include "shell/step_timer.h"

namespace torvane::app {

StepTimer::StepTimer(QObject* parent)
    : QObject(parent) {
    // Single shot, started again after each step: a step that asks the operator runs a message
    // box's loop, and a repeating timer would start the next step inside it.
    timer_.setSingleShot(true);
    timer_.setInterval(0);
    connect(&timer_, &QTimer::timeout, this, &StepTimer::Tick);
}

void StepTimer::Run(shell::SteppedActivity& activity) {
    activity_ = &activity;
    timer_.start();
}

void StepTimer::Tick() {
    if (activity_->Step()) {
        timer_.start();
        return;
    }
    activity_ = nullptr;
    emit Finished();
}

} // namespace torvane::app
