#include "logger/wait_ready.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"

namespace torvane::logger {

std::int32_t WaitLoggerReady(LoggerLink& link) {
    for (;;) {
        if (const std::int32_t result = GetLoggerStatus(link); result != 0) {
            return result;
        }
        const std::uint8_t state = link.Status.bytState;
        if (state == TLM_STATE_IDLE || state == TLM_STATE_ACQUIRING) {
            return results::Ok;
        }
        if (state == TLM_STATE_BROKEN) {
            ShowLoggerState(link);
            return results::OutOfOrder;
        }
        if (link.Status.bytError != 0) {
            return results::ErrorState;
        }
        link.Pause(ReadyPollInterval);
    }
}

} // namespace torvane::logger
