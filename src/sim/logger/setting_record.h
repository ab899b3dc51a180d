#pragma once
// The setting record as it crosses the link (TlmSettingData) and as the rest of the program
// knows it (logdata::LogHeader): the same 41 words.

#include "logdata/log_header.h"
#include "tlm.h"

namespace torvane::sim {

logdata::LogHeader HeaderOf(const TlmSettingData& record);
TlmSettingData RecordOf(const logdata::LogHeader& header);

} // namespace torvane::sim
