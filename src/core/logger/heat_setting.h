#pragma once
// The settings a heat run cycles through: the one it starts from, the step to the next one after
// every pass, and the fields it compares after sending one.

#include "tlm.h"

namespace torvane::logger {

// Every channel at 10 ms, both detonation counters on, one pulse and 50 cm per wheel, no start
// condition, dated 1/1/1 00:01; every other word 0.
TlmSettingData HeatRunFirstSetting();

// The setting of the next pass. The sampling period alternates between 10 and 5 ms and never
// reaches 25, and the shift speed steps by two: the logger has always been driven so.
void HeatNextSetting(TlmSettingData& setting);

// The fields the heat run sent and reads back: suspension, every sampling word, the detonation
// counters, pulses, circumferences, start conditions, engine and shift options, and the date.
bool SameHeatSetting(const TlmSettingData& sent, const TlmSettingData& read);

} // namespace torvane::logger
