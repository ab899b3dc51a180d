// libFuzzer target of what the live logger windows make of the logger's answers, which come
// from a device and are taken as hostile: a live reading, a setting and an identity record
// through the monitor's conversions and texts, and any block through the service dump.
//
// Input: a 24-byte live reading, an 82-byte setting and a 94-byte identity record, as the link
// carries them (little-endian words), then any number of bytes for the dump; a short input
// leaves the rest zero.
//
// Beyond the sanitizers, the harness checks what the windows promise: every limited value within
// its limits, the counters' sums within 0 to 65535, and one dump line per 16 bytes.

#include "byte_order.h"
#include "logger/hex_dump.h"
#include "logger/monitor_readings.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

namespace {

using torvane::GetLittleEndian;
using namespace torvane::logger;

constexpr std::size_t SignalBytes = 24;
constexpr std::size_t SettingBytes = 82;
constexpr std::size_t SpecialBytes = TLM_SPECIAL_DATA_SIZE;

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

template <std::size_t N> void Words(std::span<const std::uint8_t> bytes, std::int16_t (&out)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        out[i] = GetLittleEndian<std::int16_t>(bytes, 2 * i);
    }
}

bool Within(const MonitorValues& values, MonitorField field, double low, double high) {
    const double value = values[static_cast<std::size_t>(field)].Value;
    return value >= low && value <= high;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> head(SignalBytes + SettingBytes + SpecialBytes, 0);
    std::copy_n(data, std::min(size, head.size()), head.begin());
    const std::span<const std::uint8_t> bytes(head);

    std::int16_t signalWords[SignalBytes / 2];
    Words(bytes.subspan(0, SignalBytes), signalWords);
    TlmSignalCondition signal{};
    signal.intNe = signalWords[0];
    signal.intVfw = signalWords[1];
    signal.intVrw = signalWords[2];
    signal.intTh = signalWords[3];
    signal.intVb = signalWords[4];
    std::copy_n(signalWords + 5, 4, signal.intVm);
    signal.intDeto1 = signalWords[9];
    signal.intDeto2 = signalWords[10];
    signal.intLap = signalWords[11];

    std::int16_t settingWords[SettingBytes / 2];
    Words(bytes.subspan(SignalBytes, SettingBytes), settingWords);
    TlmSettingData setting{};
    setting.intStartTh = settingWords[16];
    setting.intStartNe = settingWords[17];
    setting.intThClose = settingWords[20];
    setting.intThOpen = settingWords[21];
    setting.intFrZero = settingWords[22];
    setting.intRrZero = settingWords[23];
    setting.intMinute = settingWords[24];
    setting.intHour = settingWords[25];
    setting.intDay = settingWords[26];
    setting.intMonth = settingWords[27];
    setting.intYear = settingWords[28];

    TlmSpecialData special{};
    const auto identity = bytes.subspan(SignalBytes + SettingBytes, SpecialBytes);
    std::copy_n(identity.begin() + 34, sizeof special.bytProgramName, special.bytProgramName);
    std::copy_n(identity.begin() + 62, sizeof special.bytProgramNo, special.bytProgramNo);

    LafTable laf;
    laf.SetPoints(DefaultLafPoints());
    MonitorCounters counters;
    counters.Counting = {true, true};
    counters.Deto1 = signal.intDeto1 < 0 ? 60'000 : 0;
    for (int reading = 0; reading < 3; ++reading) {
        const MonitorValues values = ConvertReading(signal, setting, laf, counters, {});
        Check(Within(values, MonitorField::Ne, 0, 30000));
        Check(Within(values, MonitorField::VB, 0, 25));
        Check(Within(values, MonitorField::FRSUS, -5, 200));
        Check(Within(values, MonitorField::VM4, -0.5, 5));
        Check(counters.Deto1 <= CounterLimit && counters.Lap <= CounterLimit);
        Check(!values[static_cast<std::size_t>(MonitorField::LAF2)].Text.empty());
    }
    static_cast<void>(ProgramText(special));
    static_cast<void>(SettingTimeText(setting));
    static_cast<void>(StartConditionText(setting));

    const std::span<const std::uint8_t> block(data, size);
    const std::string dump = HexDump(block);
    std::size_t lines = dump.empty() ? 0 : 1;
    for (std::size_t at = 0; (at = dump.find("\r\n", at)) != std::string::npos; at += 2) {
        ++lines;
    }
    Check(lines == (size + 15) / 16);
    return 0;
}
