#pragma once
// One live reading of the logger turned into what the real-time monitor shows: every value in
// engineering units, limited and formatted as its label shows it, and the running sums of the
// counters, which the logger reports as counts since the last reading.

#include "logger/laf_table.h"

#include "tlm.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace torvane::logger {

// A shown value: the number after its limits, and the label's text.
struct MonitorValue {
    double Value = 0.0;
    std::string Text;
};

// The labels in the order they are filled; the names are the channels' own.
enum class MonitorField {
    Ne,
    THper,
    THV,
    VFW,
    VRW,
    DETO1,
    DETO2,
    VB,
    FRSUS,
    RRSUS,
    VM1,
    VM2,
    VM3,
    VM4,
    LAF1,
    LAF2,
    LAP,
};
inline constexpr std::size_t MonitorFieldCount = static_cast<std::size_t>(MonitorField::LAP) + 1;

// The key of a field in the command line's JSON lines ("Ne", "TH", "THV", ...).
const char* MonitorFieldKey(MonitorField field);

using MonitorValues = std::array<MonitorValue, MonitorFieldCount>;

// The counters' displays stop at 65535, and so does a sum that reaches it.
inline constexpr std::int32_t CounterLimit = 65535;

// The detonation counters share the first flag, the lap counter has the second: the first
// reading after opening shows 0 and its counts are thrown away.
struct MonitorCounters {
    std::int32_t Deto1 = 0;
    std::int32_t Deto2 = 0;
    std::int32_t Lap = 0;
    std::array<bool, 2> Counting{};
};

// The values of one reading. The throttle percentage needs a calibration whose open point is
// above its closed point; without one it stays at `previousThrottle` (nothing on the first
// reading). The counters take this reading's counts.
MonitorValues ConvertReading(const TlmSignalCondition& signal, const TlmSettingData& setting,
                             const LafTable& laf, MonitorCounters& counters,
                             const std::optional<MonitorValue>& previousThrottle);

// lblProgram: the program's name, a blank and its number.
std::string ProgramText(const TlmSpecialData& special);
// lblDate: "PM 2:05 on March 07, 2026", or empty when the setting has no date.
std::string SettingTimeText(const TlmSettingData& setting);
// lblStart: "Ne 8000r/min & TH 80%".
std::string StartConditionText(const TlmSettingData& setting);

} // namespace torvane::logger
