#include "logger/setting_view.h"

#include "shell/number_format.h"
#include "shell/rounding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctime>
#include <optional>
#include <string_view>

namespace torvane::logger {
namespace {

using logdata::SettingWord;

constexpr std::array<SettingWord, SampleRowCount> RowWords{
    SettingWord::NeTime,  SettingWord::VfwTime, SettingWord::VrwTime,
    SettingWord::ThTime,  SettingWord::VbTime,  SettingWord::Vm1Time,
    SettingWord::Vm2Time, SettingWord::Vm3Time, SettingWord::Vm4Time};
constexpr std::array<SettingWord, OnOffCount> OnOffWords{
    SettingWord::Deto1Time, SettingWord::Deto2Time, SettingWord::LapOn};
constexpr std::array<std::string_view, 12> MonthNames{
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr int StartNeShownMax = 401;

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The value of a box when its trimmed text is a number, as the interface's numeric test takes it.
std::optional<double> NumberIn(std::string_view text) {
    text = Trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size() ||
        !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

bool InRange(std::string_view text, double low, double high) {
    const auto value = NumberIn(text);
    return value && *value >= low && *value <= high;
}

// A box's number as a word, rounded half to even; a box that holds no number gives 0.
std::int16_t WordOf(std::string_view text) {
    const double value = NumberIn(text).value_or(0.0);
    return static_cast<std::int16_t>(std::clamp(shell::RoundHalfEven(value), -32768.0, 32767.0));
}

std::string Number(int value) {
    return std::to_string(value);
}

int ListIndexOf(int pulses) {
    if (pulses > PulseCount) {
        return PulseCount - 1;
    }
    return std::max(pulses - 1, -1);
}

int MaskOf(int word) {
    return word >= 0 && word <= 3 ? word : 0;
}

bool IsLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

bool IsValidDate(int year, int month, int day, int hour, int minute) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || hour < 0 || hour > 23 ||
        minute < 0 || minute > 59) {
        return false;
    }
    constexpr std::array<int, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const int last = days[static_cast<std::size_t>(month - 1)] + (month == 2 && IsLeapYear(year));
    return day >= 1 && day <= last;
}

void SetSensorLabels(SettingView& view) {
    view.VmLabels = {view.FrSus ? "FRSUS" : "VM1", view.RrSus ? "RRSUS" : "VM2",
                     view.Laf1 ? "LAF1" : "VM3", view.Laf2 ? "LAF2" : "VM4"};
}

} // namespace

std::string PulseText(int listIndex) {
    return shell::FormatText(Number(listIndex + 1), "@@@@@@");
}

SettingView ClearedSettingView() {
    return SettingView{};
}

std::string SetTimeText(const logdata::LogHeader& setting) {
    const int year = setting.Word(SettingWord::Year);
    const int month = setting.Word(SettingWord::Month);
    const int day = setting.Word(SettingWord::Day);
    const int hour = setting.Word(SettingWord::Hour);
    const int minute = setting.Word(SettingWord::Minute);
    if (!IsValidDate(year, month, day, hour, minute)) {
        return {};
    }
    const int twelveHour = hour % 12 == 0 ? 12 : hour % 12;
    return std::string(hour < 12 ? "AM " : "PM ") + Number(twelveHour) + ":" +
           shell::FormatNumber(minute, shell::formats::TwoDigits) + " on " +
           std::string(MonthNames[static_cast<std::size_t>(month - 1)]) + " " +
           shell::FormatNumber(day, shell::formats::TwoDigits) + ", " + Number(year);
}

void ShowSetting(SettingView& view, const logdata::LogHeader& setting, const MemoryTable& table) {
    for (int row = 0; row < SampleRowCount; ++row) {
        auto& boxes = view.Sampling[static_cast<std::size_t>(row)];
        boxes.fill(false);
        const int column = PeriodIndex(setting.Word(RowWords[static_cast<std::size_t>(row)]));
        if (column >= 0) {
            boxes[static_cast<std::size_t>(column)] = true;
        }
    }
    for (std::size_t item = 0; item < OnOffWords.size(); ++item) {
        view.On[item] = setting.Word(OnOffWords[item]) != 0;
        view.Off[item] = !view.On[item];
    }
    const int sus = MaskOf(setting.Word(SettingWord::Sus));
    const int laf = MaskOf(setting.Word(SettingWord::Laf));
    view.FrSus = (sus & 1) != 0;
    view.RrSus = (sus & 2) != 0;
    view.Laf1 = (laf & 1) != 0;
    view.Laf2 = (laf & 2) != 0;
    SetSensorLabels(view);
    view.PulseF = ListIndexOf(setting.Word(SettingWord::PulseF));
    view.PulseR = ListIndexOf(setting.Word(SettingWord::PulseR));
    view.CmF = Number(std::clamp<int>(setting.Word(SettingWord::CmF), CmMin, CmMax));
    view.CmR = Number(std::clamp<int>(setting.Word(SettingWord::CmR), CmMin, CmMax));
    const auto speedText = [](int word) {
        return word >= StartNeShownMax ? Number(EngineSpeedMax) : Number(word * EngineSpeedStep);
    };
    view.StartNe = speedText(setting.Word(SettingWord::StartNe));
    view.Shift = speedText(setting.Word(SettingWord::Shift));
    const int startTh = setting.Word(SettingWord::StartTh);
    view.StartTh = startTh > ThMax ? Number(ThMax) : Number(startTh);
    const int engine = setting.Word(SettingWord::Engine);
    view.Engine = engine >= 0 && engine <= 2 ? static_cast<logger::Engine>(engine)
                                             : logger::Engine::OnePerRev;
    view.SetTime = SetTimeText(setting);
    UpdateLoggingTime(view, table);
}

SamplingChoice ChoiceOf(const SettingView& view) {
    SamplingChoice choice;
    for (std::size_t row = 0; row < view.Sampling.size(); ++row) {
        const auto& boxes = view.Sampling[row];
        const auto first = std::find(boxes.begin(), boxes.end(), true);
        choice.Column[row] = first == boxes.end() ? -1 : static_cast<int>(first - boxes.begin());
    }
    choice.Deto1 = view.On[static_cast<std::size_t>(OnOffItem::Deto1)];
    choice.Deto2 = view.On[static_cast<std::size_t>(OnOffItem::Deto2)];
    return choice;
}

void UpdateLoggingTime(SettingView& view, const MemoryTable& table) {
    view.TotalBytes = BytesPer300Ms(table, ChoiceOf(view));
    view.TotalTime = LoggingTimeText(view.TotalBytes);
}

void ClickSampling(SettingView& view, SampleRow row, int column, bool ticked,
                   const MemoryTable& table) {
    if (column < 0 || column >= PeriodCount) {
        return;
    }
    auto& boxes = view.Sampling[static_cast<std::size_t>(row)];
    boxes.fill(false);
    boxes[static_cast<std::size_t>(column)] = ticked;
    UpdateLoggingTime(view, table);
}

void ClickOnOff(SettingView& view, OnOffItem item, bool onBox, bool ticked,
                const MemoryTable& table) {
    const auto index = static_cast<std::size_t>(item);
    (onBox ? view.On : view.Off)[index] = ticked;
    (onBox ? view.Off : view.On)[index] = !ticked;
    UpdateLoggingTime(view, table);
}

void ToggleSensorMenu(SettingView& view, SensorMenu menu) {
    bool* const ticks[] = {&view.FrSus, &view.RrSus, &view.Laf1, &view.Laf2};
    bool& tick = *ticks[static_cast<int>(menu)];
    tick = !tick;
    SetSensorLabels(view);
}

bool SensorMenuTicked(const SettingView& view, SensorMenu menu) {
    const bool ticks[] = {view.FrSus, view.RrSus, view.Laf1, view.Laf2};
    return ticks[static_cast<int>(menu)];
}

std::string_view FieldControlName(SettingFieldError field) {
    switch (field) {
    case SettingFieldError::CmF:
        return "txtCm_F";
    case SettingFieldError::CmR:
        return "txtCm_R";
    case SettingFieldError::StartTh:
    case SettingFieldError::NoStartCondition:
        return "txtTH";
    case SettingFieldError::StartNe:
        return "txtNe";
    case SettingFieldError::Shift:
        return "txtShift";
    case SettingFieldError::None:
        break;
    }
    return {};
}

SettingFieldError CheckSetting(SettingView& view) {
    if (!InRange(view.CmF, CmMin, CmMax)) {
        return SettingFieldError::CmF;
    }
    if (!InRange(view.CmR, CmMin, CmMax)) {
        return SettingFieldError::CmR;
    }
    if (!InRange(view.StartTh, 0, ThMax)) {
        return SettingFieldError::StartTh;
    }
    if (!InRange(view.StartNe, 0, EngineSpeedMax)) {
        return SettingFieldError::StartNe;
    }
    const double startNe = *NumberIn(view.StartNe);
    if (startNe >= 1 && startNe <= 49) {
        view.StartNe = Number(EngineSpeedStep);
    }
    if (*NumberIn(view.StartTh) <= 0 && *NumberIn(view.StartNe) <= 0) {
        return SettingFieldError::NoStartCondition;
    }
    if (!InRange(view.Shift, 0, EngineSpeedMax)) {
        return SettingFieldError::Shift;
    }
    return SettingFieldError::None;
}

LocalTime NowLocal() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min};
}

logdata::LogHeader BuildSetting(const SettingView& view, logdata::LogHeader setting,
                                const LocalTime& now) {
    setting.SetWord(SettingWord::Sus,
                    static_cast<std::int16_t>((view.FrSus ? 1 : 0) | (view.RrSus ? 2 : 0)));
    setting.SetWord(SettingWord::Laf,
                    static_cast<std::int16_t>((view.Laf1 ? 1 : 0) | (view.Laf2 ? 2 : 0)));
    const SamplingChoice choice = ChoiceOf(view);
    for (std::size_t row = 0; row < RowWords.size(); ++row) {
        const int column = choice.Column[row];
        setting.SetWord(RowWords[row],
                        static_cast<std::int16_t>(
                            column < 0 ? 0 : SamplingPeriods[static_cast<std::size_t>(column)]));
    }
    setting.SetWord(SettingWord::Deto1Time, choice.Deto1 ? 300 : 0);
    setting.SetWord(SettingWord::Deto2Time, choice.Deto2 ? 300 : 0);
    setting.SetWord(SettingWord::PulseF, WordOf(view.PulseF < 0 ? "" : PulseText(view.PulseF)));
    setting.SetWord(SettingWord::PulseR, WordOf(view.PulseR < 0 ? "" : PulseText(view.PulseR)));
    setting.SetWord(SettingWord::CmF, WordOf(view.CmF));
    setting.SetWord(SettingWord::CmR, WordOf(view.CmR));
    setting.SetWord(SettingWord::StartTh, WordOf(view.StartTh));
    // Integer division, toward zero: 8049 r/min is stored as 160.
    setting.SetWord(SettingWord::StartNe,
                    static_cast<std::int16_t>(WordOf(view.StartNe) / EngineSpeedStep));
    setting.SetWord(SettingWord::Shift,
                    static_cast<std::int16_t>(WordOf(view.Shift) / EngineSpeedStep));
    setting.SetWord(SettingWord::Engine, static_cast<std::int16_t>(view.Engine));
    setting.SetWord(SettingWord::Minute, static_cast<std::int16_t>(now.Minute));
    setting.SetWord(SettingWord::Hour, static_cast<std::int16_t>(now.Hour));
    setting.SetWord(SettingWord::Day, static_cast<std::int16_t>(now.Day));
    setting.SetWord(SettingWord::Month, static_cast<std::int16_t>(now.Month));
    setting.SetWord(SettingWord::Year, static_cast<std::int16_t>(now.Year));
    setting.SetWord(SettingWord::LapOn, view.On[static_cast<std::size_t>(OnOffItem::Lap)] ? 1 : 0);
    return setting;
}

} // namespace torvane::logger
