#include "logger/setting_send.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/logger_action.h"
#include "logger/setting_file.h"
#include "logger/wait_ready.h"
#include "shell/common.h"

#include <charconv>

namespace torvane::logger {
namespace {

std::int16_t ProgramNumber(const TlmSpecialData& special) {
    const std::string text = shell::BytesToString(special.bytProgramNo);
    std::int16_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

} // namespace

void ShowSettingError(shell::MessageSink& sink) {
    shell::ShowMessage(sink,
                       "Error! \r\nPlease check reconsideration of a setting item, and connection "
                       "of measurement equipment, and perform again.",
                       shell::buttons::Ok, shell::icons::Stop);
}

bool SendSettingToLogger(LoggerLink& link, logdata::LogHeader& setting) {
    LoggerActionFrame frame(
        link, {.TellStatusCode = true, .WaitUntilReady = false, .GiveBackAcquisition = false});
    if (!frame.Begin()) {
        return false;
    }
    std::int32_t result = WaitLoggerReady(link);
    if (result == 0) {
        TlmSpecialData special{};
        result = ReadSpecialData(link, special);
        if (result == 0) {
            setting.SetWord(logdata::SettingWord::Program, ProgramNumber(special));
            result = SendSetting(link, RecordOf(setting));
        }
    }
    if (result == 0) {
        shell::ShowMessage(link.Sink, "The setup was completed normally.", shell::buttons::Ok,
                           shell::icons::Information);
    } else {
        ShowSettingError(link.Sink);
    }
    return frame.End(result).Done;
}

bool ThrottlePointsWrong(const TlmInitData& data) {
    return data.intThClose >= data.intThOpen;
}

bool ReleaseLogger(LoggerLink& link, bool& mustRelease, bool askOnWrongThrottle) {
    link.Status = TlmStatus{};
    if (OpenLogger(link, true) != 0) {
        return true;
    }
    std::int32_t result = GetLoggerStatus(link);
    TlmInitData data{};
    if (result == 0) {
        result = ReadInitData(link, 0, data);
    }
    if (result == 0 && askOnWrongThrottle && ThrottlePointsWrong(data) &&
        shell::ShowMessage(link.Sink, "The Initialized throttle is not correct.",
                           shell::buttons::OkCancel,
                           shell::icons::Information) == shell::answers::Cancel) {
        link.Driver.Close(link.Status);
        return false;
    }
    if (result == 0 && mustRelease) {
        result = ControlLogging(link, 0);
        if (result == 0) {
            mustRelease = false;
        }
    }
    FinishLink(link, result);
    return true;
}

} // namespace torvane::logger
