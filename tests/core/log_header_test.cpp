#include "logdata/deployment.h"
#include "logdata/log_header.h"

#include <gtest/gtest.h>

#include <numeric>

namespace torvane::logdata {
namespace {

TEST(LogHeader, EveryByteSurvivesTheRoundTrip) {
    LogHeader::Bytes bytes{};
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0x80});
    const LogHeader header = LogHeader::FromBytes(bytes);
    EXPECT_EQ(header.ToBytes(), bytes);
    EXPECT_EQ(header.Word(0), static_cast<std::int16_t>(0x8180));
}

// The first and last named words and a sample time between them: a shifted table shows.
TEST(LogHeader, NamedWordsSitAtTheirOffsets) {
    LogHeader::Bytes bytes{};
    const auto put = [&](std::size_t offset, std::int16_t value) {
        bytes[offset] = static_cast<std::uint8_t>(value & 0xFF);
        bytes[offset + 1] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
    };
    put(0, 3);
    put(2, 10);
    put(22, 300);
    put(74, 2);
    const LogHeader header = LogHeader::FromBytes(bytes);
    EXPECT_EQ(header.SusMode(), 3);
    EXPECT_EQ(header.SampleTime(0), 10);
    EXPECT_EQ(header.SampleTime(10), 300);
    EXPECT_EQ(header.LafMode(), 2);
}

LogHeader ValidHeader() {
    LogHeader header;
    header.SetSampleTime(0, 25);
    header.SetSampleTime(1, 10);
    header.SetWord(SettingWord::ThClose, 102);
    header.SetWord(SettingWord::ThOpen, 758);
    return header;
}

TEST(CheckHeader, AcceptsLegalWordsTracksTheSmallestIntervalAndRefusesOutOfRangeOnes) {
    int minSampleTime = 0;
    EXPECT_TRUE(CheckHeader(ValidHeader(), minSampleTime));
    EXPECT_EQ(minSampleTime, 10);

    LogHeader coarse;
    coarse.SetSampleTime(4, 300);
    EXPECT_TRUE(CheckHeader(coarse, minSampleTime));
    EXPECT_EQ(minSampleTime, 10); // never raised by a later file

    // The LAP word may hold any value and does not set the interval; LafMode is not checked.
    LogHeader lapOnly;
    lapOnly.SetSampleTime(0, 50);
    lapOnly.SetWord(SettingWord::LapOn, 20);
    lapOnly.SetWord(SettingWord::Laf, 4);
    minSampleTime = 0;
    EXPECT_TRUE(CheckHeader(lapOnly, minSampleTime));
    EXPECT_EQ(minSampleTime, 50);

    // Out-of-range words are refused: a mode, calibration points, a sampling interval.
    for (const auto& [word, value] : {std::pair{SettingWord::Sus, 4},
                                      {SettingWord::ThClose, 1024},
                                      {SettingWord::RrZero, -1}}) {
        LogHeader header = ValidHeader();
        header.SetWord(word, static_cast<std::int16_t>(value));
        EXPECT_FALSE(CheckHeader(header, minSampleTime)) << static_cast<int>(word);
    }
    LogHeader header = ValidHeader();
    header.SetSampleTime(3, 20);
    EXPECT_FALSE(CheckHeader(header, minSampleTime));
}

TEST(SlotChannels, SuspensionAndAirFuelModesChooseTheSpareSlots) {
    LogHeader header;
    const auto slots = [&](int sus, int laf) {
        header.SetWord(SettingWord::Sus, static_cast<std::int16_t>(sus));
        header.SetWord(SettingWord::Laf, static_cast<std::int16_t>(laf));
        const auto channels = SlotChannels(header);
        return std::vector<std::int32_t>(channels.begin() + 7, channels.begin() + 11);
    };
    EXPECT_EQ(slots(0, 0), (std::vector<std::int32_t>{VM1, VM2, VM3, VM4}));
    EXPECT_EQ(slots(1, 1), (std::vector<std::int32_t>{FRSUS, VM2, LAF1, VM4}));
    EXPECT_EQ(slots(2, 2), (std::vector<std::int32_t>{VM1, RRSUS, VM3, LAF2}));
    EXPECT_EQ(slots(3, 3), (std::vector<std::int32_t>{FRSUS, RRSUS, LAF1, LAF2}));
    EXPECT_EQ(slots(0, 4), (std::vector<std::int32_t>{VM1, VM2, VM3, VM4}));
}

} // namespace
} // namespace torvane::logdata
