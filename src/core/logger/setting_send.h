#pragma once
// Sending a setting to the logger, and giving the logger back when the work with it ends: the
// two halves of the setting window's work that the command line does too.

#include "logdata/log_header.h"
#include "logger/logger_link.h"

namespace torvane::logger {

// "Error! \r\nPlease check reconsideration of a setting item, ..." (stop, OK).
void ShowSettingError(shell::MessageSink& sink);

// Readies the logger (a logger that is acquiring is stopped only if the operator agrees; any
// state but idle or ready is told as its status code), takes the logger's program number into
// the record and sends it. True when the logger took it: "The setup was completed normally." has
// been shown and the logger is left stopped, for the caller to give back (ReleaseLogger).
bool SendSettingToLogger(LoggerLink& link, logdata::LogHeader& setting);

// True when stored throttle points are a wrong pair: word 0 not below word 1.
bool ThrottlePointsWrong(const TlmInitData& data);

// The end of the work with a logger, over one quiet link: the stored throttle points are read,
// and a wrong pair asks "The Initialized throttle is not correct." when askOnWrongThrottle (Cancel
// refuses: false is returned and nothing is given back); a logger left stopped (mustRelease) is
// given back to acquisition and mustRelease cleared. Driver failures are reported; they do not
// refuse.
bool ReleaseLogger(LoggerLink& link, bool& mustRelease, bool askOnWrongThrottle);

} // namespace torvane::logger
