#pragma once
// The 82-byte header of a logging file. It is the logger's setting record as it stood when the
// run was logged, so the same class serves both: 41 little-endian 16-bit words, every one kept
// as it came, including the words this program never interprets.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace torvane::logdata {

inline constexpr std::size_t LogHeaderSize = 82;
inline constexpr int LogHeaderWords = 41;
// Sampling entries 0 to 10 (Ne .. VM4); the LAP stream has no entry of its own.
inline constexpr int SampleTimeCount = 11;

// Word numbers of the setting record.
enum class SettingWord : int {
    Sus = 0,
    NeTime = 1,
    ThTime = 2,
    VfwTime = 3,
    VrwTime = 4,
    Deto1Time = 5,
    Deto2Time = 6,
    VbTime = 7,
    Vm1Time = 8,
    Vm2Time = 9,
    Vm3Time = 10,
    Vm4Time = 11,
    PulseF = 12,
    PulseR = 13,
    CmF = 14,
    CmR = 15,
    StartTh = 16,
    StartNe = 17,
    Engine = 18,
    Shift = 19,
    ThClose = 20,
    ThOpen = 21,
    FrZero = 22,
    RrZero = 23,
    Minute = 24,
    Hour = 25,
    Day = 26,
    Month = 27,
    Year = 28,
    Program = 35,
    LapOn = 36,
    Laf = 37,
    Reserved40 = 40,
};

class LogHeader {
public:
    using Bytes = std::array<std::uint8_t, LogHeaderSize>;

    static LogHeader FromBytes(std::span<const std::uint8_t, LogHeaderSize> bytes);
    Bytes ToBytes() const;

    std::int16_t Word(int index) const { return words_.at(static_cast<std::size_t>(index)); }
    std::int16_t Word(SettingWord word) const { return Word(static_cast<int>(word)); }
    void SetWord(int index, std::int16_t value) {
        words_.at(static_cast<std::size_t>(index)) = value;
    }
    void SetWord(SettingWord word, std::int16_t value) { SetWord(static_cast<int>(word), value); }

    // The words the logging data reads, under the names it uses for them.
    int SusMode() const { return Word(SettingWord::Sus); }
    // Interval of sampling entry 0..10 in ms; 0 means not logged.
    int SampleTime(int entry) const { return Word(static_cast<int>(SettingWord::NeTime) + entry); }
    void SetSampleTime(int entry, std::int16_t ms) {
        SetWord(static_cast<int>(SettingWord::NeTime) + entry, ms);
    }
    int ThClose() const { return Word(SettingWord::ThClose); }
    int ThOpen() const { return Word(SettingWord::ThOpen); }
    int FrSusZero() const { return Word(SettingWord::FrZero); }
    int RrSusZero() const { return Word(SettingWord::RrZero); }
    int LapWord() const { return Word(SettingWord::LapOn); }
    int LafMode() const { return Word(SettingWord::Laf); }

    friend bool operator==(const LogHeader&, const LogHeader&) = default;

private:
    std::array<std::int16_t, LogHeaderWords> words_{};
};

// The record a logger holds before anyone has set it up.
LogHeader FreshSetting();

// True for the sampling intervals a logger knows: 5, 10, 25, 50, 100, 300.
bool IsSamplingInterval(int ms);

// The header check of deployment. MinSampleTime is the window's smallest interval so far and is
// lowered by every legal interval met on the way, even when a later word fails the check.
bool CheckHeader(const LogHeader& header, int& minSampleTime);

} // namespace torvane::logdata
