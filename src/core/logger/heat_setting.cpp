#include "logger/heat_setting.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <tuple>

namespace torvane::logger {
namespace {

// "below limit: plus 1; otherwise reset".
void StepOrWrap(std::int16_t& word, int limit, std::int16_t reset) {
    word = word < limit ? static_cast<std::int16_t>(word + 1) : reset;
}

} // namespace

TlmSettingData HeatRunFirstSetting() {
    TlmSettingData setting{};
    setting.intNeTime = setting.intThTime = setting.intVfwTime = setting.intVrwTime = 10;
    setting.intVbTime = 10;
    std::fill(std::begin(setting.intVmTime), std::end(setting.intVmTime), std::int16_t{10});
    setting.intDeto1Time = setting.intDeto2Time = 300;
    setting.intPulseF = setting.intPulseR = 1;
    setting.intCmF = setting.intCmR = 50;
    setting.intYear = setting.intMonth = setting.intDay = 1;
    setting.intHour = 0;
    setting.intMinute = 1;
    return setting;
}

void HeatNextSetting(TlmSettingData& setting) {
    StepOrWrap(setting.intSus, 3, 0);
    switch (setting.intNeTime) {
    case 5:
        setting.intNeTime = 10;
        break;
    case 25:
    case 50:
    case 100:
        break;
    default:
        setting.intNeTime = 5;
        break;
    }
    const std::int16_t period = setting.intNeTime;
    setting.intThTime = setting.intVfwTime = setting.intVrwTime = period;
    setting.intVbTime = period;
    std::fill(std::begin(setting.intVmTime), std::end(setting.intVmTime), period);
    const std::int16_t deto = setting.intDeto1Time == 0 ? 300 : 0;
    setting.intDeto1Time = setting.intDeto2Time = deto;
    const std::int16_t pulses = setting.intPulseF >= 20 ? 1 : setting.intPulseF + 1;
    setting.intPulseF = setting.intPulseR = pulses;
    const std::int16_t cm = setting.intCmF >= 300 ? 50 : setting.intCmF + 1;
    setting.intCmF = setting.intCmR = cm;
    StepOrWrap(setting.intStartTh, 100, 0);
    StepOrWrap(setting.intStartNe, 400, 0);
    StepOrWrap(setting.intEngine, 2, 0);
    StepOrWrap(setting.intShift, 400, 0);
    StepOrWrap(setting.intYear, 9999, 1);
    StepOrWrap(setting.intMonth, 12, 1);
    StepOrWrap(setting.intDay, 31, 1);
    StepOrWrap(setting.intHour, 23, 0);
    StepOrWrap(setting.intMinute, 59, 0);
    StepOrWrap(setting.intShift, 400, 0);
}

bool SameHeatSetting(const TlmSettingData& sent, const TlmSettingData& read) {
    auto words = [](const TlmSettingData& s) {
        return std::tuple(s.intSus, s.intNeTime, s.intThTime, s.intVfwTime, s.intVrwTime,
                          s.intDeto1Time, s.intDeto2Time, s.intVbTime, s.intVmTime[0],
                          s.intVmTime[1], s.intVmTime[2], s.intVmTime[3], s.intPulseF, s.intPulseR,
                          s.intCmF, s.intCmR, s.intStartTh, s.intStartNe, s.intEngine, s.intShift,
                          s.intMinute, s.intHour, s.intDay, s.intMonth, s.intYear);
    };
    return words(sent) == words(read);
}

} // namespace torvane::logger
