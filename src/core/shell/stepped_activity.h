#pragma once
// A long activity (a download, a monitor's polling, a heat run) cut into short steps, so that a
// window can run one step each time its event loop comes round, showing progress and taking the
// operator's stop between steps, while the command line runs the same steps in a plain loop.

namespace torvane::shell {

class SteppedActivity {
public:
    virtual ~SteppedActivity() = default;

    // Runs one step; false once the activity has finished, its ending included.
    virtual bool Step() = 0;
};

inline void RunToEnd(SteppedActivity& activity) {
    while (activity.Step()) {
    }
}

} // namespace torvane::shell
