#include "shell/common.h"
#include "shell/number_format.h"
#include "shell/rounding.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

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

TEST(RoundHalfEven, IntoWordsAsOneValueAtATimeUpToTheEndsOfTheWordRange) {
    const std::vector<double> values{
        0.5,       1.5,        -0.5, -1.5,         -2.5,          -0.4,          2.4999,       -3.7,
        1e9 + 0.5, -1e9 - 0.5, -0.0, 2147483646.5, 2147483647.49, -2147483648.5, -2147483647.5};
    std::vector<std::int32_t> words(values.size());
    RoundHalfEvenToWords(values, words);
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_TRUE(RoundsIntoWord(values[i])) << values[i];
        EXPECT_EQ(words[i], RoundToInt64(values[i])) << values[i];
    }
    for (const double outside : {2147483647.5, -2147483648.51, 1e300, std::nan("")}) {
        EXPECT_FALSE(RoundsIntoWord(outside)) << outside;
    }
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

// The fast road of plain fixed pictures gives the digits of the exact binary value, rounded
// with ties to even, as the general road does: the decimal text std::to_chars makes.
TEST(FormatNumber, PlainFixedPicturesMatchTheExactlyRoundedDigits) {
    std::vector<double> values{0.0,    -0.0,      0.125,  0.375, 1.005,        2.675,  -0.005,
                               -0.004, 0.0049999, 1e-9,   -1e-9, 99999999.5,   1e8,    1e300,
                               -12.5,  1234.5678, -0.125, 0.995, 4.9999999999, 15000.0};
    std::uint64_t seed = 12345;
    for (int i = 0; i < 20000; ++i) {
        seed = seed * 6364136223846793005ULL + 1442695040888963407ULL;
        const double unit = static_cast<double>(seed >> 11) / 9007199254740992.0;
        values.push_back((unit - 0.5) * (i % 2 == 0 ? 200.0 : 2e6));
        values.push_back(std::round(unit * 2e5) / 200.0 + (i % 3 - 1) * 1e-12); // near ties
    }
    for (const int decimals : {1, 2, 3, 4}) {
        const std::string picture = "0." + std::string(static_cast<std::size_t>(decimals), '0');
        const NumberFormat format(picture);
        for (const double value : values) {
            std::array<char, 400> buffer;
            const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                           std::fabs(value), std::chars_format::fixed, decimals)
                                 .ptr;
            std::string expected(buffer.data(), end);
            if (value < 0 && expected.find_first_not_of("0.") != std::string::npos) {
                expected.insert(0, 1, '-');
            }
            std::string written;
            format.AppendTo(written, value);
            ASSERT_EQ(written, expected) << picture << " of " << value;
        }
    }
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
