#pragma once
// The one retry policy of the logger calls. A call is made at most five times, back to back:
// time-outs, a busy logger and a broken exchange (-3, -6, -7) are tried again, a dirty sense code
// is tried again, and a clean try wipes out the failures before it. Any other driver code ends
// at once and is returned unreported, for the caller to report. When no try came out clean and
// a sense code was seen first, that sense is shown and the result is results::SenseShown.

#include "logger/logger_link.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace torvane::logger {

struct RetryRules {
    // The file count answers with a number: any result of zero or more is an answer.
    bool ResultIsCount = false;
    // A sense besides 0 that counts as clean, because the caller deals with it.
    std::optional<std::uint8_t> SenseLeftToCaller{};
};

// Makes the call under the policy; the call fills link.Status.
std::int32_t CallWithRetries(LoggerLink& link, const std::function<std::int32_t()>& call,
                             RetryRules rules = {});

} // namespace torvane::logger
