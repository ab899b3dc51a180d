#include "shell/number_format.h"

#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace torvane::shell {
namespace {

bool IsPlaceholder(char c) {
    return c == '0' || c == '#';
}

std::string GroupThousands(std::string_view digits) {
    std::string grouped;
    const std::size_t firstGroup = digits.size() % 3 == 0 ? 3 : digits.size() % 3;
    grouped.append(digits.substr(0, firstGroup));
    for (std::size_t i = firstGroup; i < digits.size(); i += 3) {
        grouped += ',';
        grouped.append(digits.substr(i, 3));
    }
    return grouped;
}

} // namespace

NumberFormat::Picture NumberFormat::Parse(std::string_view format) {
    Picture picture;
    std::size_t i = 0;
    while (i < format.size() && !IsPlaceholder(format[i]) && format[i] != '.') {
        picture.Prefix += format[i++];
    }
    for (; i < format.size() && (IsPlaceholder(format[i]) || format[i] == ','); ++i) {
        if (format[i] == '0') {
            ++picture.MinIntegerDigits;
        } else if (format[i] == ',') {
            picture.Grouping = true;
        }
    }
    if (i < format.size() && format[i] == '.') {
        picture.HasPoint = true;
        ++i;
        int trailingHashes = 0;
        for (; i < format.size() && IsPlaceholder(format[i]); ++i) {
            ++picture.Decimals;
            trailingHashes = format[i] == '#' ? trailingHashes + 1 : 0;
        }
        picture.OptionalTrailingDecimals = trailingHashes;
    }
    picture.Suffix = std::string(format.substr(i));
    return picture;
}

NumberFormat::NumberFormat(std::string_view format)
    : picture_(Parse(format)) {
    const Picture& p = picture_;
    plainFixed_ = p.Prefix.empty() && p.Suffix.empty() && p.MinIntegerDigits == 1 && !p.Grouping &&
                  p.HasPoint && p.Decimals >= 1 && p.Decimals <= 4 &&
                  p.OptionalTrailingDecimals == 0;
}

// The value times 10^Decimals rounded to a whole number, written with its point put back: the
// same digits as the general road, which rounds the exact binary value. The product carries an
// error of at most 2^-53 of itself, under 2e-8 below 1e8, so away from a tie both round alike.
// Near a tie the error itself decides, which fma gives exactly; a true tie goes to even. A value
// too large takes the general road.
namespace {

// The magnitude as digits, a point and Decimals digits; a divisor known here costs a multiply.
// The magnitude is below 1e8 + 1, so 32-bit arithmetic holds it and is the cheaper.
template <int Decimals> char* WriteScaled(char* out, std::uint32_t magnitude) {
    constexpr std::uint32_t Divisor = Decimals == 1   ? 10
                                      : Decimals == 2 ? 100
                                      : Decimals == 3 ? 1000
                                                      : 10000;
    out = std::to_chars(out, out + 24, magnitude / Divisor).ptr;
    *out++ = '.';
    std::uint32_t rest = magnitude % Divisor;
    for (int i = Decimals; i > 0; --i) {
        out[i - 1] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    }
    return out + Decimals;
}

} // namespace

char* NumberFormat::WritePlainFixed(char* out, double value) const {
    static constexpr std::array<double, 5> Scales{1.0, 10.0, 100.0, 1000.0, 10000.0};
    const int decimals = picture_.Decimals;
    const double scale = Scales[static_cast<std::size_t>(decimals)];
    // The general road rounds the magnitude and puts the sign before it.
    const double magnitude = std::fabs(value);
    const double scaled = magnitude * scale;
    if (!(scaled < 1e8)) {
        return nullptr;
    }
    const auto whole = static_cast<std::uint32_t>(scaled);
    const double fraction = scaled - static_cast<double>(whole);
    bool up = fraction > 0.5;
    if (std::fabs(fraction - 0.5) < 1e-7) {
        // magnitude * scale is exactly scaled + error; fraction - 0.5 is exact this near a half.
        const double error = std::fma(magnitude, scale, -scaled);
        const double aboveHalf = fraction - 0.5;
        up = aboveHalf != -error ? aboveHalf > -error : (whole & 1U) != 0;
    }
    const std::uint32_t rounded = whole + (up ? 1U : 0U);
    if (value < 0 && rounded != 0) {
        *out++ = '-';
    }
    switch (decimals) {
    case 1:
        return WriteScaled<1>(out, rounded);
    case 2:
        return WriteScaled<2>(out, rounded);
    case 3:
        return WriteScaled<3>(out, rounded);
    default:
        return WriteScaled<4>(out, rounded);
    }
}

char* NumberFormat::WriteTo(char* out, double value) const {
    if (plainFixed_) {
        if (char* end = WritePlainFixed(out, value)) {
            return end;
        }
    }
    std::string text;
    AppendTo(text, value);
    const std::size_t size = std::min(text.size(), WriteRoom);
    return std::copy_n(text.data(), size, out);
}

void NumberFormat::AppendTo(std::string& out, double value) const {
    if (plainFixed_) {
        std::array<char, 32> text;
        if (char* end = WritePlainFixed(text.data(), value)) {
            out.append(text.data(), static_cast<std::size_t>(end - text.data()));
            return;
        }
    }
    const Picture& picture = picture_;
    out += picture.Prefix;
    if (!std::isfinite(value)) {
        out += '0';
        out += picture.Suffix;
        return;
    }

    // to_chars rounds the exact binary value correctly; an exact tie goes to even.
    std::array<char, 400> buffer; // to_chars writes it; the rest is never read
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                      std::fabs(value), std::chars_format::fixed, picture.Decimals);
    const std::string_view text(buffer.data(),
                                static_cast<std::size_t>(result.ptr - buffer.data()));

    const auto point = text.find('.');
    std::string_view integerDigits = text.substr(0, point);
    std::string_view decimalDigits =
        point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
    for (int i = 0; i < picture.OptionalTrailingDecimals && !decimalDigits.empty() &&
                    decimalDigits.back() == '0';
         ++i) {
        decimalDigits.remove_suffix(1);
    }
    integerDigits.remove_prefix(
        std::min(integerDigits.find_first_not_of('0'), integerDigits.size()));

    const bool allZero =
        std::all_of(text.begin(), text.end(), [](char c) { return c == '0' || c == '.'; });
    if (value < 0 && !allZero) {
        out += '-';
    }
    const auto padding = static_cast<std::size_t>(
        std::max(picture.MinIntegerDigits - static_cast<int>(integerDigits.size()), 0));
    if (picture.Grouping) {
        std::string padded(padding, '0');
        padded += integerDigits;
        out += GroupThousands(padded);
    } else {
        out.append(padding, '0');
        out += integerDigits;
    }
    if (picture.HasPoint) {
        out += '.';
        out += decimalDigits;
    }
    out += picture.Suffix;
}

std::string FormatNumber(double value, std::string_view format) {
    std::string formatted;
    NumberFormat(format).AppendTo(formatted, value);
    return formatted;
}

std::string FormatText(std::string_view text, std::string_view format) {
    const auto places = static_cast<std::size_t>(std::count(format.begin(), format.end(), '@'));
    std::string aligned;
    if (text.size() < places) {
        aligned.assign(places - text.size(), ' ');
    }
    aligned += text;
    return aligned;
}

std::string FormatTime(double milliseconds) {
    const std::int64_t signedTotal = RoundToInt64(milliseconds);
    const std::int64_t total = signedTotal < 0 ? -signedTotal : signedTotal;
    const std::int64_t ms = total % 1000;
    const std::int64_t seconds = total / 1000 % 60;
    const std::int64_t minutes = total / 60000 % 60;
    const std::int64_t hours = total / 3600000;
    const auto twoDigits = [](std::int64_t v) {
        return FormatNumber(static_cast<double>(v), formats::TwoDigits);
    };
    return std::string(signedTotal < 0 ? "-" : "") + twoDigits(hours) + "h" + twoDigits(minutes) +
           "m" + twoDigits(seconds) + "s" +
           FormatNumber(static_cast<double>(ms), formats::ThreeDigits);
}

std::string ShortestText(double value) {
    // Plain digits for the magnitudes people read (300000, not 3e+05); an exponent only where
    // plain digits would run long.
    const double magnitude = std::fabs(value);
    const bool plain = magnitude == 0.0 || (magnitude >= 1e-4 && magnitude < 1e15);
    std::array<char, 64> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                      plain ? std::chars_format::fixed : std::chars_format::general);
    return std::string(buffer.data(), result.ptr);
}

} // namespace torvane::shell
