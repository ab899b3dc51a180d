#pragma once
// What the setting window shows, as plain values, and the conversions between it and the setting
// record: ShowSetting (record to screen), CheckSetting (is the screen fit to send) and
// BuildSetting (screen to record). The window paints this and never keeps a value of its own.

#include "logdata/log_header.h"
#include "logger/logging_time.h"

#include <array>
#include <string>

namespace torvane::logger {

// Limits of the up-down boxes.
inline constexpr int CmMin = 50;
inline constexpr int CmMax = 300;
inline constexpr int ThMax = 100;
inline constexpr int EngineSpeedMax = 20000;
inline constexpr int EngineSpeedStep = 50;
// Entries of each pulse list: 1 to 20.
inline constexpr int PulseCount = 20;

enum class OnOffItem : int { Deto1, Deto2, Lap };
inline constexpr int OnOffCount = 3;

enum class Engine : int { OnePerRev, TwoPerRev, HalfPerRev };

struct SettingView {
    // Row (logger::SampleRow order) by sampling column: at most one tick a row.
    std::array<std::array<bool, PeriodCount>, SampleRowCount> Sampling{};
    // chkON and chkOFF by OnOffItem.
    std::array<bool, OnOffCount> On{};
    std::array<bool, OnOffCount> Off{};
    // What VM1..VM4 carry: the menus' ticks and the labels.
    bool FrSus = false;
    bool RrSus = false;
    bool Laf1 = false;
    bool Laf2 = false;
    std::array<std::string, 4> VmLabels{"VM1", "VM2", "VM3", "VM4"};
    // List index of the pulse lists, 0 for one pulse; -1 when nothing is chosen.
    int PulseF = -1;
    int PulseR = -1;
    std::string CmF;
    std::string CmR;
    std::string StartTh = "0";
    std::string StartNe = "0";
    std::string Shift = "0";
    logger::Engine Engine = logger::Engine::OnePerRev;
    // "AM/PM h:mm on mmmm dd, yyyy" of the record's time, or empty.
    std::string SetTime;
    std::string TotalTime;
    std::int64_t TotalBytes = 0;
};

// A pulse list's entry: the number right-aligned in six places.
std::string PulseText(int listIndex);

// The screen as ClearSettingView leaves it: nothing ticked, empty circumferences, "0" in the
// start and shift boxes, no pulses chosen, no times.
SettingView ClearedSettingView();

// The record on the screen, then the logging time. Values out of range show as the rules say:
// a period not in the table ticks nothing, Sus or Laf outside 0..3 count as 0, circumferences
// are held to 50..300, a start speed of 401 or more shows "20000", a start throttle of 101 or
// more "100", an engine option outside 0..2 the first one.
void ShowSetting(SettingView& view, const logdata::LogHeader& setting, const MemoryTable& table);

// The label of the record's time: "PM 3:07 on November 24, 2026", or empty when the words are no
// valid date.
std::string SetTimeText(const logdata::LogHeader& setting);

// The row's ticks and the detonation switches as a budget choice.
SamplingChoice ChoiceOf(const SettingView& view);
// TotalBytes and TotalTime from the ticks.
void UpdateLoggingTime(SettingView& view, const MemoryTable& table);

// A sampling box clicked: it takes the new state and the rest of its row is cleared.
void ClickSampling(SettingView& view, SampleRow row, int column, bool ticked,
                   const MemoryTable& table);
// chkON or chkOFF clicked: it takes the new state and its partner the opposite.
void ClickOnOff(SettingView& view, OnOffItem item, bool onBox, bool ticked,
                const MemoryTable& table);
// A sensor menu toggled: its tick and the label of its input.
enum class SensorMenu { FrSus, RrSus, Laf1, Laf2 };
void ToggleSensorMenu(SettingView& view, SensorMenu menu);
bool SensorMenuTicked(const SettingView& view, SensorMenu menu);

// The field CheckSetting refused, by its code; None is good.
enum class SettingFieldError : int {
    None = 0,
    CmF = 1,
    CmR = 2,
    StartTh = 3,
    StartNe = 4,
    Shift = 5,
    NoStartCondition = 6,
};
// The name of the box a code focuses: txtCm_F, txtCm_R, txtTH (3 and 6), txtNe, txtShift.
std::string_view FieldControlName(SettingFieldError field);

// The checks in their order (1, 2, 3, 4, 6, 5); the first failure is returned. A start speed of
// 1 to 49 is replaced in the view by "50" on the way.
SettingFieldError CheckSetting(SettingView& view);

struct LocalTime {
    int Year = 0;
    int Month = 0;
    int Day = 0;
    int Hour = 0;
    int Minute = 0;
};
LocalTime NowLocal();

// The screen into the record. Words the screen does not show (the sensor points, the program,
// the reserved words) stay as they are in `setting`. Assumes CheckSetting passed.
logdata::LogHeader BuildSetting(const SettingView& view, logdata::LogHeader setting,
                                const LocalTime& now);

} // namespace torvane::logger
