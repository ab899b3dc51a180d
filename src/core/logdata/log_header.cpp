#include "logdata/log_header.h"

#include "byte_order.h"

#include <algorithm>

namespace torvane::logdata {

LogHeader LogHeader::FromBytes(std::span<const std::uint8_t, LogHeaderSize> bytes) {
    LogHeader header;
    for (std::size_t i = 0; i < header.words_.size(); ++i) {
        header.words_[i] = GetLittleEndian<std::int16_t>(bytes, 2 * i);
    }
    return header;
}

LogHeader::Bytes LogHeader::ToBytes() const {
    Bytes bytes{};
    for (std::size_t i = 0; i < words_.size(); ++i) {
        PutLittleEndian(bytes, 2 * i, words_[i]);
    }
    return bytes;
}

LogHeader FreshSetting() {
    LogHeader setting;
    setting.SetWord(SettingWord::NeTime, 25);
    setting.SetWord(SettingWord::ThTime, 25);
    setting.SetWord(SettingWord::VfwTime, 25);
    setting.SetWord(SettingWord::Deto1Time, 300);
    setting.SetWord(SettingWord::VbTime, 25);
    setting.SetWord(SettingWord::PulseF, 20);
    setting.SetWord(SettingWord::PulseR, 20);
    setting.SetWord(SettingWord::CmF, 182);
    setting.SetWord(SettingWord::CmR, 190);
    setting.SetWord(SettingWord::StartTh, 80);
    setting.SetWord(SettingWord::StartNe, 160);
    setting.SetWord(SettingWord::Shift, 256);
    setting.SetWord(SettingWord::ThClose, 102);
    setting.SetWord(SettingWord::ThOpen, 758);
    setting.SetWord(SettingWord::Reserved40, 10);
    return setting;
}

bool IsSamplingInterval(int ms) {
    constexpr std::array intervals{5, 10, 25, 50, 100, 300};
    return std::find(intervals.begin(), intervals.end(), ms) != intervals.end();
}

bool CheckHeader(const LogHeader& header, int& minSampleTime) {
    if (header.SusMode() < 0 || header.SusMode() > 3) {
        return false;
    }
    for (int i = 0; i <= SampleTimeCount; ++i) {
        const bool isLapWord = i == SampleTimeCount;
        const int value = isLapWord ? header.LapWord() : header.SampleTime(i);
        if (IsSamplingInterval(value)) {
            if (minSampleTime == 0 || minSampleTime > value) {
                minSampleTime = value;
            }
        } else if (value != 0 && !isLapWord) {
            // The lap word is an on/off switch that may hold any value; only the
            // sampling entries must be intervals.
            return false;
        }
    }
    const auto isSensorReading = [](int reading) {
        return reading >= 0 && reading <= 1023;
    };
    return isSensorReading(header.ThOpen()) && isSensorReading(header.ThClose()) &&
           isSensorReading(header.FrSusZero()) && isSensorReading(header.RrSusZero());
}

} // namespace torvane::logdata
