#pragma once
// The setting window (frmTLM0020, "SETTING MODE") as a plain model: what it shows (SettingView),
// which of its commands are enabled, the sensor buttons' colours, and whether its once-a-second
// watch for the logger runs. Every event of the window is a function here; the widget forwards
// events, paints the model and starts or stops its timer as WatchIntervalMs says.
//
// Every logger call is one short link that ends before the function returns, and the watch is
// stopped while a command runs, so two links are never open.

#include "logdata/log_header.h"
#include "logger/logger_link.h"
#include "logger/logging_time.h"
#include "logger/setting_view.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

namespace torvane::logger {

inline constexpr int WatchIntervalMs = 1000;

// The sensor buttons, by the kind their step passes to the logger.
enum class SensorButton : int { Throttle0 = 0, Throttle100 = 1, Front = 2, Rear = 3 };
inline constexpr std::int16_t CommitThrottleKind = 4;

// The outcome a sensor button shows.
enum class ButtonColor { Grey, Blue, Red };
// RGB of each colour, as the window paints it.
std::uint32_t ButtonRgb(ButtonColor color);

// The commands that need a logger: the send and suspension menus and the four sensor buttons.
struct SettingCommands {
    bool Send = true;
    bool Sus = true;
    bool Throttle0 = true;
    bool Throttle100 = true;
    bool Front = true;
    bool Rear = true;
};

// The text boxes of the window.
enum class SettingText { CmF, CmR, StartTh, StartNe, Shift };

// The controls that Return walks through, and the boxes that a refused field focuses.
enum class SettingControl {
    PulseF,
    CmF,
    PulseR,
    CmR,
    StartTh,
    StartNe,
    Shift,
    Engine,
    Throttle0,
    Front,
    Rear
};
// Return in a non-empty field: the next field in order; on the engine options the first enabled
// sensor button, else the front pulse list.
SettingControl NextOnReturn(SettingControl from, const SettingCommands& commands);
// The box that a refused field focuses; nullopt for None.
std::optional<SettingControl> FocusOf(SettingFieldError field);
// The keys a text box or pulse list takes: digits and backspace (other characters are dropped).
bool SettingKeyPasses(char key);

class SettingMode {
public:
    using Clock = std::function<LocalTime()>;

    SettingMode(LoggerLink& link, std::filesystem::path initDir, Clock clock = NowLocal);

    // Form_Load: reads MT.DAT, then the logger's setting if it is there, else SETTING.DAT (made
    // from the fresh record when missing). False when the window is not to stay open: the reason
    // has been told.
    bool Open();
    // tmrStatus: one look at the logger.
    void WatchTick();
    // mnuSend: checks, builds and sends the screen's setting and keeps it in SETTING.DAT. Returns
    // the refused field (its box takes the focus), or None.
    SettingFieldError Send();
    // Form_Unload. False refuses the close (a wrong throttle pair and the operator's Cancel).
    bool Close();
    // A sensor button: its step. True when it succeeded (the watch runs again).
    bool TakeSensor(SensorButton button);

    // The operator's edits.
    void ToggleMenu(SensorMenu menu);
    void ClickSampling(SampleRow row, int column, bool ticked);
    void ClickOnOff(OnOffItem item, bool onBox, bool ticked);
    void SetText(SettingText box, std::string text);
    void SelectPulse(bool front, int listIndex);
    void SelectEngine(logger::Engine engine);

    const SettingView& View() const { return view_; }
    const SettingCommands& Commands() const { return commands_; }
    ButtonColor Color(SensorButton button) const {
        return colors_[static_cast<std::size_t>(button)];
    }
    // 0 while the watch is stopped.
    int WatchInterval() const { return watchInterval_; }
    bool Connected() const { return connected_; }
    bool MustRelease() const { return mustRelease_; }
    std::uint8_t ThrottleDone() const { return throttleDone_; }
    const logdata::LogHeader& Setting() const { return setting_; }
    const MemoryTable& Table() const { return table_; }
    std::filesystem::path SettingFile() const;

private:
    void ShowRecord();
    void DisableCommands();
    bool LoadOffline();
    bool ReadLoggerAtOpen();
    bool TakeThrottle(SensorButton button);
    bool TakeSuspension(SensorButton button);
    // The step's logger work between a readied link and its end: 0, or the result that ends it.
    std::int32_t JudgeThrottlePair();

    LoggerLink& link_;
    std::filesystem::path initDir_;
    Clock clock_;
    MemoryTable table_ = DefaultMemoryTable();
    logdata::LogHeader setting_;
    SettingView view_;
    SettingCommands commands_;
    std::array<ButtonColor, 4> colors_{ButtonColor::Grey, ButtonColor::Grey, ButtonColor::Grey,
                                       ButtonColor::Grey};
    int watchInterval_ = 0;
    bool connected_ = false;
    bool mustRelease_ = false;
    std::uint8_t throttleDone_ = 0;
};

} // namespace torvane::logger
