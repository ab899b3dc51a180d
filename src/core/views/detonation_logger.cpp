#include "views/detonation_logger.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/logger_action.h"

#include <algorithm>
#include <optional>

namespace torvane::views {

DetonationBytes DetonationBytesOf(const TlmDetonationMap& map) {
    DetonationContent content;
    std::copy(std::begin(map.bytMap1), std::end(map.bytMap1), content.Maps[0].begin());
    std::copy(std::begin(map.bytMap2), std::end(map.bytMap2), content.Maps[1].begin());
    content.RunTime = map.lngRunTime;
    content.RunDistance = map.lngRunDistance;
    content.Present = {(map.intPresent & 1) != 0, (map.intPresent & 2) != 0};
    return EncodeDetonation(content);
}

std::filesystem::path GetDetonationFromLogger(logger::LoggerLink& link,
                                              const std::filesystem::path& tempDir) {
    // Reading the map disturbs nothing: an acquiring logger is neither asked nor stopped, and
    // nothing is waited for.
    const logger::ActionOptions options{.WhenAcquiring = logger::WhenAcquiring::LetThrough,
                                        .WaitUntilReady = false,
                                        .GiveBackAcquisition = false};
    std::optional<TlmDetonationMap> read;
    logger::RunLoggerAction(link, options, [&](logger::ActionContext&) {
        // The other windows take a ready logger like an idle one; the map is only read from an
        // idle or acquiring one.
        if (link.Status.bytState == TLM_STATE_READY) {
            logger::ShowLoggerState(link);
            return logger::results::Ok;
        }
        TlmDetonationMap map{};
        const std::int32_t result = logger::ReadDetonationMap(link, map);
        if (result == 0) {
            read = map;
        }
        return result;
    });
    if (!read) {
        return {};
    }
    return WriteDetonationWorkFile(tempDir, DetonationBytesOf(*read), link.Sink);
}

} // namespace torvane::views
