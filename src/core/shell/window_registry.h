#pragma once
// Numbers the graph windows. A window's number names its stream files, so numbers are reused
// from the lowest upward once a window has closed and its streams are gone. Number 0 is never
// handed out.

#include <cstdint>
#include <vector>

namespace torvane::shell {

class WindowRegistry {
public:
    WindowRegistry();

    // Takes the lowest free number from 1 up, growing the table when none is free.
    int Claim();
    // True while at least one number is in use.
    bool AnyFroms() const;
    // Frees the number and clears its logger mark. False for a number outside the table.
    bool DeleteFrom(int number);
    // 1 while the window shows a downloaded file that has not been saved, else 0; 0 for a
    // number outside the table.
    std::int32_t GetLogger(int number) const;
    bool SetLogger(int number, std::int32_t logger);
    bool InUse(int number) const;

private:
    struct Slot {
        bool Free = true;
        std::int32_t Logger = 0;
    };
    bool Contains(int number) const;
    std::vector<Slot> slots_;
};

} // namespace torvane::shell
