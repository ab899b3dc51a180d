#include "logger/monitor_readings.h"

#include "shell/common.h"
#include "shell/number_format.h"

#include <span>
#include <string_view>

namespace torvane::logger {
namespace {

using shell::FormatNumber;
namespace formats = shell::formats;

constexpr double RawFullScale = 1023.0;
constexpr double InputVolts = 5.0;

struct Limits {
    double Low;
    double High;
    std::string_view Format;
};

// At or past a limit the label shows the limit itself, in the label's format.
MonitorValue Limited(double value, const Limits& limits) {
    if (value <= limits.Low) {
        value = limits.Low;
    } else if (value >= limits.High) {
        value = limits.High;
    }
    return {value, FormatNumber(value, limits.Format)};
}

// The values kept in single precision are compared and shown as the float they were stored in.
double Single(double value) {
    return static_cast<double>(static_cast<float>(value));
}

double Volts(std::int16_t raw) {
    return raw / RawFullScale * InputVolts;
}

MonitorValue Counter(std::int32_t& sum, std::int16_t count, bool counting) {
    if (counting) {
        sum += count;
    }
    if (sum >= CounterLimit) {
        sum = CounterLimit;
    }
    const std::int32_t shown = sum < 1 ? 0 : sum;
    return {static_cast<double>(shown), FormatNumber(shown, formats::Integer)};
}

template <std::size_t N> std::string TextOf(const std::uint8_t (&field)[N]) {
    return shell::BytesToString(std::span<const std::uint8_t>(field, N));
}

constexpr std::array<const char*, 12> MonthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

} // namespace

const char* MonitorFieldKey(MonitorField field) {
    static constexpr std::array<const char*, MonitorFieldCount> Keys = {
        "Ne",    "TH",  "THV", "VFW", "VRW", "DETO1", "DETO2", "VB", "FRSUS",
        "RRSUS", "VM1", "VM2", "VM3", "VM4", "LAF1",  "LAF2",  "LAP"};
    return Keys[static_cast<std::size_t>(field)];
}

MonitorValues ConvertReading(const TlmSignalCondition& signal, const TlmSettingData& setting,
                             const LafTable& laf, MonitorCounters& counters,
                             const std::optional<MonitorValue>& previousThrottle) {
    MonitorValues values;
    auto set = [&values](MonitorField field, MonitorValue value) {
        values[static_cast<std::size_t>(field)] = std::move(value);
    };
    set(MonitorField::Ne, Limited(signal.intNe, {0, 30000, formats::Integer}));
    if (setting.intThOpen > setting.intThClose) {
        const double percent = Single(static_cast<double>(signal.intTh - setting.intThClose) /
                                      (setting.intThOpen - setting.intThClose) * 100.0);
        set(MonitorField::THper, Limited(percent, {-10, 110, formats::Integer}));
    } else if (previousThrottle) {
        set(MonitorField::THper, *previousThrottle);
    }
    set(MonitorField::THV, Limited(Single(Volts(signal.intTh)), {-0.5, 5, formats::TwoDecimals}));
    set(MonitorField::VFW, Limited(signal.intVfw, {0, 400, formats::Integer}));
    set(MonitorField::VRW, Limited(signal.intVrw, {0, 400, formats::Integer}));

    // The first reading after opening only starts the count.
    set(MonitorField::DETO1, Counter(counters.Deto1, signal.intDeto1, counters.Counting[0]));
    set(MonitorField::DETO2, Counter(counters.Deto2, signal.intDeto2, counters.Counting[0]));
    counters.Counting[0] = true;

    set(MonitorField::VB,
        Limited(Single(signal.intVb / RawFullScale * 25.0 + 0.28), {0, 25, formats::OneDecimal}));
    // Suspensions count down from the zero point; the two sensors differ in full scale.
    set(MonitorField::FRSUS,
        Limited(Single((setting.intFrZero - signal.intVm[0]) / RawFullScale * 187.5),
                {-5, 200, formats::Integer}));
    set(MonitorField::RRSUS,
        Limited(Single((setting.intRrZero - signal.intVm[1]) / RawFullScale * 125.0),
                {-5, 200, formats::Integer}));
    for (int i = 0; i < 4; ++i) {
        set(static_cast<MonitorField>(static_cast<int>(MonitorField::VM1) + i),
            Limited(Volts(signal.intVm[i]), {-0.5, 5, formats::TwoDecimals}));
    }
    for (int i = 0; i < 2; ++i) {
        const double ratio = laf.ConvertLaf(Volts(signal.intVm[2 + i]));
        set(static_cast<MonitorField>(static_cast<int>(MonitorField::LAF1) + i),
            {ratio, FormatNumber(ratio, formats::TwoDecimals)});
    }
    set(MonitorField::LAP, Counter(counters.Lap, signal.intLap, counters.Counting[1]));
    counters.Counting[1] = true;
    return values;
}

std::string ProgramText(const TlmSpecialData& special) {
    return TextOf(special.bytProgramName) + " " + TextOf(special.bytProgramNo);
}

std::string SettingTimeText(const TlmSettingData& setting) {
    if (setting.intYear == 0 || setting.intMonth == 0 || setting.intDay == 0) {
        return {};
    }
    // "AM/PM h:mm" puts the half of the day first and counts hours 12, 1, ... 11.
    const int hour = setting.intHour;
    const int hour12 = hour % 12 == 0 ? 12 : hour % 12;
    const int month = setting.intMonth;
    const std::string monthText = month >= 1 && month <= 12
                                      ? std::string(MonthNames[static_cast<std::size_t>(month - 1)])
                                      : FormatNumber(month, formats::Integer);
    std::string text;
    for (const std::string& piece :
         {std::string(hour % 24 < 12 ? "AM " : "PM "), FormatNumber(hour12, formats::Integer),
          std::string(":"), FormatNumber(setting.intMinute, formats::TwoDigits),
          std::string(" on "), monthText, std::string(" "),
          FormatNumber(setting.intDay, formats::TwoDigits), std::string(", "),
          FormatNumber(setting.intYear, formats::FourDigits)}) {
        text.append(piece);
    }
    return text;
}

std::string StartConditionText(const TlmSettingData& setting) {
    std::string text = "Ne ";
    text.append(FormatNumber(setting.intStartNe * 50, formats::Integer));
    text.append("r/min & TH ");
    text.append(FormatNumber(setting.intStartTh, formats::Integer));
    text.append("%");
    return text;
}

} // namespace torvane::logger
