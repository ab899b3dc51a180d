#pragma once
// Runs a core activity one step each time the event loop comes round (a zero-interval timer), so
// that a long activity shows its progress and its window answers between steps, on the one
// interface thread and without a handler running inside another.

#include "shell/stepped_activity.h"

#include <QObject>
#include <QTimer>

namespace torvane::app {

class StepTimer : public QObject {
    Q_OBJECT
public:
    explicit StepTimer(QObject* parent = nullptr);

    // Steps `activity`, which must outlive the run, from the next pass of the event loop on.
    void Run(shell::SteppedActivity& activity);
    bool Running() const { return activity_ != nullptr; }

signals:
    // The activity's last step has run.
    void Finished();

private:
    void Tick();

    QTimer timer_;
    shell::SteppedActivity* activity_ = nullptr;
};

} // namespace torvane::app
