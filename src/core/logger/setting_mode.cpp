#include "logger/setting_mode.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/setting_file.h"
#include "logger/setting_send.h"

namespace torvane::logger {
namespace {

bool TakesSetting(std::uint8_t state) {
    return state == TLM_STATE_IDLE || state == TLM_STATE_ACQUIRING || state == TLM_STATE_READY;
}

void TellFileFailure(shell::MessageSink& sink, const layout::FileFailure& failure) {
    shell::ShowRunTimeError(sink, layout::DescribeFailure(failure));
}

} // namespace

std::uint32_t ButtonRgb(ButtonColor color) {
    switch (color) {
    case ButtonColor::Blue:
        return 0x0080FF;
    case ButtonColor::Red:
        return 0xFF0000;
    case ButtonColor::Grey:
        break;
    }
    return 0xC0C0C0;
}

SettingControl NextOnReturn(SettingControl from, const SettingCommands& commands) {
    if (from != SettingControl::Engine) {
        return from >= SettingControl::Engine
                   ? from
                   : static_cast<SettingControl>(static_cast<int>(from) + 1);
    }
    if (commands.Throttle0) {
        return SettingControl::Throttle0;
    }
    if (commands.Front) {
        return SettingControl::Front;
    }
    return commands.Rear ? SettingControl::Rear : SettingControl::PulseF;
}

std::optional<SettingControl> FocusOf(SettingFieldError field) {
    switch (field) {
    case SettingFieldError::CmF:
        return SettingControl::CmF;
    case SettingFieldError::CmR:
        return SettingControl::CmR;
    case SettingFieldError::StartTh:
    case SettingFieldError::NoStartCondition:
        return SettingControl::StartTh;
    case SettingFieldError::StartNe:
        return SettingControl::StartNe;
    case SettingFieldError::Shift:
        return SettingControl::Shift;
    case SettingFieldError::None:
        break;
    }
    return std::nullopt;
}

bool SettingKeyPasses(char key) {
    return (key >= '0' && key <= '9') || key == '\b';
}

SettingMode::SettingMode(LoggerLink& link, std::filesystem::path initDir, Clock clock)
    : link_(link)
    , initDir_(std::move(initDir))
    , clock_(std::move(clock)) {
}

std::filesystem::path SettingMode::SettingFile() const {
    return initDir_ / SettingFileName;
}

bool SettingMode::Open() {
    layout::FileFailure failure;
    if (!LoadMemoryTable(initDir_ / MemoryTableFileName, table_, failure)) {
        TellFileFailure(link_.Sink, failure);
        return false;
    }
    link_.Status = TlmStatus{};
    const std::int32_t opened = OpenLogger(link_, true);
    if (opened == TLM_ERR_NOT_CONNECTED) {
        if (!LoadOffline()) {
            return false;
        }
        DisableCommands();
    } else if (opened != 0 || !ReadLoggerAtOpen()) {
        return false;
    }
    view_ = ClearedSettingView();
    ShowRecord();
    watchInterval_ = WatchIntervalMs;
    return true;
}

bool SettingMode::LoadOffline() {
    layout::FileFailure failure;
    std::error_code error;
    if (std::filesystem::symlink_status(SettingFile(), error).type() !=
        std::filesystem::file_type::not_found) {
        const auto loaded = LoadSetting(SettingFile(), failure);
        if (!loaded) {
            TellFileFailure(link_.Sink, failure);
            return false;
        }
        setting_ = *loaded;
        return true;
    }
    setting_ = logdata::FreshSetting();
    if (!SaveSetting(SettingFile(), setting_, failure)) {
        TellFileFailure(link_.Sink, failure);
        return false;
    }
    return true;
}

bool SettingMode::ReadLoggerAtOpen() {
    std::int32_t result = GetLoggerStatus(link_);
    if (result == 0 && !TakesSetting(link_.Status.bytState)) {
        ShowLoggerState(link_);
        link_.Driver.Close(link_.Status);
        return false;
    }
    TlmSettingData record{};
    if (result == 0) {
        result = ReadSetting(link_, record);
    }
    FinishLink(link_, result);
    if (result != 0) {
        return false;
    }
    setting_ = HeaderOf(record);
    connected_ = true;
    return true;
}

void SettingMode::ShowRecord() {
    ShowSetting(view_, setting_, table_);
    if (connected_) {
        commands_.Front = view_.FrSus;
        commands_.Rear = view_.RrSus;
    }
}

void SettingMode::DisableCommands() {
    commands_ = SettingCommands{false, false, false, false, false, false};
}

void SettingMode::WatchTick() {
    if (watchInterval_ == 0) {
        return;
    }
    link_.Status = TlmStatus{};
    std::int32_t result = OpenLogger(link_, true);
    if (result == TLM_ERR_NOT_CONNECTED) {
        DisableCommands();
        connected_ = false;
        link_.Driver.Close(link_.Status);
        return;
    }
    if (result == 0 && connected_) {
        link_.Driver.Close(link_.Status);
        return;
    }
    if (result == 0) {
        result = GetLoggerStatus(link_);
    }
    if (result == 0 && TakesSetting(link_.Status.bytState)) {
        connected_ = true;
        const bool read = shell::ShowMessage(link_.Sink, "Do you get setting data from Logger?",
                                             shell::buttons::OkCancel,
                                             shell::icons::Information) == shell::answers::Ok;
        if (read) {
            TlmSettingData record{};
            result = ReadSetting(link_, record);
            if (result == 0) {
                setting_ = HeaderOf(record);
                view_ = ClearedSettingView();
                ShowRecord();
            }
        } else {
            commands_.Front = commands_.Front || view_.FrSus;
            commands_.Rear = commands_.Rear || view_.RrSus;
        }
        if (result == 0) {
            commands_.Send = commands_.Sus = commands_.Throttle0 = commands_.Throttle100 = true;
            link_.Driver.Close(link_.Status);
            return;
        }
    } else if (result == 0) {
        ShowLoggerState(link_);
    }
    FinishLink(link_, result);
    DisableCommands();
    watchInterval_ = 0;
}

SettingFieldError SettingMode::Send() {
    watchInterval_ = 0;
    const SettingFieldError field = CheckSetting(view_);
    if (field != SettingFieldError::None) {
        shell::ShowMessage(link_.Sink, "Inputted data are not correct.", shell::buttons::Ok,
                           shell::icons::Information);
    } else {
        setting_ = BuildSetting(view_, setting_, clock_());
        if (SendSettingToLogger(link_, setting_)) {
            mustRelease_ = true;
            layout::FileFailure failure;
            if (SaveSetting(SettingFile(), setting_, failure)) {
                ShowRecord();
            } else {
                ShowSettingError(link_.Sink);
            }
        }
    }
    watchInterval_ = WatchIntervalMs;
    return field;
}

bool SettingMode::Close() {
    watchInterval_ = 0;
    if (!connected_) {
        return true;
    }
    return ReleaseLogger(link_, mustRelease_, true);
}

void SettingMode::ToggleMenu(SensorMenu menu) {
    ToggleSensorMenu(view_, menu);
    if (menu == SensorMenu::FrSus) {
        commands_.Front = view_.FrSus && connected_;
    } else if (menu == SensorMenu::RrSus) {
        commands_.Rear = view_.RrSus && connected_;
    }
}

void SettingMode::ClickSampling(SampleRow row, int column, bool ticked) {
    logger::ClickSampling(view_, row, column, ticked, table_);
}

void SettingMode::ClickOnOff(OnOffItem item, bool onBox, bool ticked) {
    logger::ClickOnOff(view_, item, onBox, ticked, table_);
}

void SettingMode::SetText(SettingText box, std::string text) {
    std::string* const boxes[] = {&view_.CmF, &view_.CmR, &view_.StartTh, &view_.StartNe,
                                  &view_.Shift};
    *boxes[static_cast<int>(box)] = std::move(text);
}

void SettingMode::SelectPulse(bool front, int listIndex) {
    (front ? view_.PulseF : view_.PulseR) =
        listIndex >= 0 && listIndex < PulseCount ? listIndex : -1;
}

void SettingMode::SelectEngine(logger::Engine engine) {
    view_.Engine = engine;
}

} // namespace torvane::logger
