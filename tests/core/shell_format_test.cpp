#include "shell/common.h"
#include "shell/number_format.h"
#include "shell/rounding.h"

#include <gtest/gtest.h>

#include <array>

namespace torvane::shell {
namespace {

TEST(RoundHalfEven, TiesGoToTheEvenNeighbour) {
    EXPECT_EQ(RoundHalfEven(0.5), 0.0);
    EXPECT_EQ(RoundHalfEven(1.5), 2.0);
    EXPECT_EQ(RoundHalfEven(2.5), 2.0);
    EXPECT_EQ(RoundHalfEven(-2.5), -2.0);
    EXPECT_EQ(RoundHalfEven(2.4999), 2.0);
    EXPECT_EQ(RoundHalfEven(2.5001), 3.0);
    EXPECT_EQ(RoundToInt64(3000.5), 3000);
}

TEST(FormatNumber, PicturesRoundPadAndGroupAndTextsAlignInPlaces) {
    EXPECT_EQ(FormatNumber(12000, formats::Integer), "12000");
    EXPECT_EQ(FormatNumber(2.5, formats::Integer), "2");
    EXPECT_EQ(FormatNumber(3.5, formats::Integer), "4");
    EXPECT_EQ(FormatNumber(50.06, formats::OneDecimal), "50.1");
    EXPECT_EQ(FormatNumber(3.2149, formats::TwoDecimals), "3.21");
    EXPECT_EQ(FormatNumber(0.125, formats::TwoDecimals), "0.12"); // an exact tie: to even
    EXPECT_EQ(FormatNumber(12000, formats::TwoDecimals), "12000.00");
    EXPECT_EQ(FormatNumber(0, formats::ThreeDecimals), "0.000");
    EXPECT_EQ(FormatNumber(-1.25, formats::OneDecimal), "-1.2");
    EXPECT_EQ(FormatNumber(-0.001, formats::TwoDecimals), "0.00");
    // Digit pictures pad with zeros.
    EXPECT_EQ(FormatNumber(7, formats::TwoDigits), "07");
    EXPECT_EQ(FormatNumber(123, formats::TwoDigits), "123");
    EXPECT_EQ(FormatNumber(3, formats::FourDigits), "0003");
    EXPECT_EQ(FormatNumber(12, formats::PaddedCode), " 0012");
    // Grouping and optional digits.
    EXPECT_EQ(FormatNumber(0, formats::Thousands), "0");
    EXPECT_EQ(FormatNumber(1234567, formats::Thousands), "1,234,567");
    EXPECT_EQ(FormatNumber(1000, formats::Thousands), "1,000");
    EXPECT_EQ(FormatNumber(123.456, formats::Ratio), "123.46");
    EXPECT_EQ(FormatNumber(0.2777, formats::BareTwoDecimals), ".28");
    EXPECT_EQ(FormatNumber(1.5, "0.##"), "1.5");
    EXPECT_EQ(FormatNumber(2.0, "0.##"), "2.");
    // Texts right-align in places.
    EXPECT_EQ(FormatText("1", formats::TwoPlaces), " 1");
    EXPECT_EQ(FormatText("30", formats::TwoPlaces), "30");
    EXPECT_EQ(FormatText("100", formats::FivePlaces), "  100");
    EXPECT_EQ(FormatText("123456", formats::FivePlaces), "123456");
}

TEST(FormatTime, HoursMinutesSecondsMilliseconds) {
    EXPECT_EQ(FormatTime(0), "00h00m00s000");
    EXPECT_EQ(FormatTime(90500), "00h01m30s500");
    EXPECT_EQ(FormatTime(3723004), "01h02m03s004");
    EXPECT_EQ(FormatTime(100.0 * 3600000 + 1), "100h00m00s001");
    EXPECT_EQ(FormatTime(2.5), "00h00m00s002");
    EXPECT_EQ(FormatTime(-1500), "-00h00m01s500");
}

TEST(ShortestText, RoundTripsWithoutNoise) {
    EXPECT_EQ(ShortestText(0.28), "0.28");
    EXPECT_EQ(ShortestText(9.0), "9");
    EXPECT_EQ(ShortestText(12000), "12000");
    EXPECT_EQ(ShortestText(300000), "300000");
    EXPECT_EQ(ShortestText(-0.0005), "-0.0005");
    EXPECT_EQ(ShortestText(1e20), "1e+20");
    EXPECT_EQ(ShortestText(0.1 + 0.2), "0.30000000000000004");
}

TEST(CommonHelpers, LeastCommonMultipleAlignsIntervalsAndDigitKeyFilters) {
    EXPECT_EQ(LeastCommonMultiple(25, 10), 50);
    EXPECT_EQ(LeastCommonMultiple(300, 25), 300);
    EXPECT_EQ(LeastCommonMultiple(5, 5), 5);
    EXPECT_EQ(LeastCommonMultiple(0, 10), 0);
    EXPECT_EQ(LeastCommonMultiple(2147483647, 10), 21474836470); // past 32 bits

    // DigitKey keeps digits and backspace only.
    for (const auto& [key, kept] : std::initializer_list<std::pair<int, int>>{
             {8, 8}, {48, 48}, {57, 57}, {97, 0}, {46, 0}, {13, 0}, {47, 0}, {58, 0}}) {
        int filtered = key;
        DigitKey(filtered);
        EXPECT_EQ(filtered, kept) << key;
    }
}

TEST(CommonHelpers, BytesToHexAndBackAreBigEndianAndBytesToStringStopsAtNul) {
    const std::array<std::uint8_t, 4> bytes{0x12, 0x34, 0x56, 0x78};
    EXPECT_EQ(BytesToHex(bytes), 0x12345678);
    EXPECT_EQ(BytesToHex(std::array<std::uint8_t, 4>{0xFF, 0xFF, 0xFF, 0xFF}), -1);
    EXPECT_EQ(BytesToHex(std::array<std::uint8_t, 2>{0x01, 0x00}), 256);

    std::array<std::uint8_t, 4> back{};
    LongToBytes(0x12345678, back);
    EXPECT_EQ(back, bytes);
    std::array<std::uint8_t, 3> padded{0xAA, 0xAA, 0xAA};
    LongToBytes(0x0102, padded);
    EXPECT_EQ(padded, (std::array<std::uint8_t, 3>{0x00, 0x01, 0x02}));

    // BytesToString stops at a NUL.
    const std::array<std::uint8_t, 8> named{'T', 'L', '-', '1', 0, 'x', 'y', 'z'};
    EXPECT_EQ(BytesToString(named), "TL-1");
    const std::array<std::uint8_t, 3> full{'a', 'b', 'c'};
    EXPECT_EQ(BytesToString(full), "abc");
    EXPECT_EQ(BytesToString(std::span<const std::uint8_t>{}), "");
}

} // namespace
} // namespace torvane::shell
