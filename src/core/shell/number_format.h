#pragma once
// The display formats of the program, in one place. Numeric formats are small pictures:
// optional literal text, integer placeholders ('0' a digit always shown, '#' a digit shown only
// when significant, ',' thousands grouping), then optionally '.' and decimal placeholders.
// Text formats ("@@", "@@@", ...) right-align a text in as many places as there are '@'.

#include <string>
#include <string_view>

namespace torvane::shell {

// Formats that the program uses, named so that call sites say what they show.
namespace formats {
inline constexpr std::string_view Integer = "0";
inline constexpr std::string_view OneDecimal = "0.0";
inline constexpr std::string_view TwoDecimals = "0.00";
inline constexpr std::string_view ThreeDecimals = "0.000";
inline constexpr std::string_view TwoDigits = "00";
inline constexpr std::string_view ThreeDigits = "000";
inline constexpr std::string_view FourDigits = "0000";
inline constexpr std::string_view Thousands = "#,##0";
inline constexpr std::string_view Ratio = "##0.#0";
inline constexpr std::string_view BareTwoDecimals = "#.00";
inline constexpr std::string_view PaddedCode = " 0000";
inline constexpr std::string_view TwoPlaces = "@@";
inline constexpr std::string_view ThreePlaces = "@@@";
inline constexpr std::string_view FivePlaces = "@@@@@";
} // namespace formats

// Rounds half to even at the last shown decimal.
std::string FormatNumber(double value, std::string_view format);

// A numeric format read once, for code that writes many numbers alike (an export writes
// millions): the same text as FormatNumber, appended to a line without building strings.
class NumberFormat {
public:
    explicit NumberFormat(std::string_view format);
    void AppendTo(std::string& out, double value) const;
    // Writes the text at out and returns its end; out must have room for WriteRoom characters.
    char* WriteTo(char* out, double value) const;
    static constexpr std::size_t WriteRoom = 512;

private:
    // Pictures like "0.00": digits, a point and up to four fixed decimals, nothing else. An
    // export formats tens of millions of values with them, so they take a faster road.
    char* WritePlainFixed(char* out, double value) const;

    struct Picture {
        std::string Prefix;
        int MinIntegerDigits = 0;
        bool Grouping = false;
        int Decimals = 0;
        // Trailing decimal places written '#', which drop their zeros.
        int OptionalTrailingDecimals = 0;
        bool HasPoint = false;
        std::string Suffix;
    };
    static Picture Parse(std::string_view format);

    Picture picture_;
    bool plainFixed_ = false;
};

// Right-aligns text in a field of as many places as the format has '@'; a longer text is
// shown whole.
std::string FormatText(std::string_view text, std::string_view format);

// "00h00m00s000" of a time in milliseconds; hours may pass 99.
std::string FormatTime(double milliseconds);

// The shortest decimal text that reads back as the same double ("0.28", "12000", "9.5").
std::string ShortestText(double value);

} // namespace torvane::shell
