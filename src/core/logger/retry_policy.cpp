#include "logger/retry_policy.h"

#include "logger/link_messages.h"

namespace torvane::logger {
namespace {

constexpr int MaxRetries = 4;

bool WorthRetrying(std::int32_t code) {
    return code == TLM_ERR_TIMEOUT || code == TLM_ERR_BUSY || code == TLM_ERR_LINK_LOST;
}

} // namespace

std::int32_t CallWithRetries(LoggerLink& link, const std::function<std::int32_t()>& call,
                             RetryRules rules) {
    int triesLeft = MaxRetries;
    std::uint8_t keptSense = 0;
    std::int32_t result = 0;
    while (triesLeft >= 0) {
        const std::int32_t code = call();
        const bool answered = rules.ResultIsCount ? code >= 0 : code == 0;
        if (!answered) {
            result = code;
            if (!WorthRetrying(code)) {
                break;
            }
            --triesLeft;
            continue;
        }
        const std::uint8_t sense = link.Status.bytSense;
        if (sense != TLM_SENSE_CLEAN && sense != rules.SenseLeftToCaller) {
            --triesLeft;
            // The sense of the first dirty try is the one reported, unless a driver failure
            // came before it.
            if (keptSense == 0 && result == 0) {
                keptSense = sense;
            }
            continue;
        }
        keptSense = 0;
        result = 0;
        break;
    }
    if (keptSense == 0) {
        return result;
    }
    ShowSenseError(link.Sink, keptSense);
    return results::SenseShown;
}

} // namespace torvane::logger
