#pragma once
// Clearing every logging file in the logger.

#include "logger/logger_link.h"

namespace torvane::logger {

enum class ClearOutcome {
    Declined,   // the operator answered Cancel to the question
    Cleared,    // cleared and given back to acquisition; "Completed." was shown
    NotCleared, // the link failed or the logger was busy; the operator has been told
};

// Asks "Do you want to clear all data in the logger ?", then stops acquisition, clears, and
// gives the logger back to acquisition, over one link.
ClearOutcome ClearLogger(LoggerLink& link);

} // namespace torvane::logger
