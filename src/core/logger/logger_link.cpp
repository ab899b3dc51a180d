#include "logger/logger_link.h"

#include <thread>

namespace torvane::logger {

void SleepFor(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

} // namespace torvane::logger
