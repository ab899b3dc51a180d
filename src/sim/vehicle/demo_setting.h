#pragma once
// A setting that logs everything, for demonstrations and generated files.

#include "logdata/log_header.h"

namespace torvane::sim {

// The fresh setting with Ne, TH and both wheel speeds at 10 ms, detonation at 300 ms, the
// supply at 100 ms, the four VM inputs at 10 ms carrying both strokes and both air/fuel
// sensors, lap marks on, and the sensors calibrated.
logdata::LogHeader DemoSetting();

} // namespace torvane::sim
