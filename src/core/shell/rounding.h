#pragma once
// The one rounding rule of the program: to the nearest, ties to even. It does not depend on
// the floating-point environment's rounding mode.

#include <cmath>
#include <cstdint>
#include <span>

namespace torvane::shell {

inline double RoundHalfEven(double value) {
    const double floorValue = std::floor(value);
    const double fraction = value - floorValue;
    if (fraction < 0.5) {
        return floorValue;
    }
    if (fraction > 0.5) {
        return floorValue + 1.0;
    }
    return std::fmod(floorValue, 2.0) == 0.0 ? floorValue : floorValue + 1.0;
}

inline std::int64_t RoundToInt64(double value) {
    return static_cast<std::int64_t>(RoundHalfEven(value));
}

// Whether RoundHalfEven(value) is a signed 32-bit word: a value in [-2^31 - 0.5, 2^31 - 0.5),
// the ends being ties that go to the even -2^31 and 2^31.
inline bool RoundsIntoWord(double value) {
    return value >= -2147483648.5 && value < 2147483647.5;
}

// RoundHalfEven of values that round into words, for long runs of them: the same rule without
// branches or calls, so that the compiler can work on several values at once. In that range
// the truncation to 32 bits is exact, and gives the floor as floor() does.
inline void RoundHalfEvenToWords(std::span<const double> values, std::span<std::int32_t> words) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double value = values[i];
        const double truncated = static_cast<double>(static_cast<std::int32_t>(value));
        const double floorValue = truncated > value ? truncated - 1.0 : truncated;
        const double fraction = value - floorValue;
        const double half = static_cast<double>(static_cast<std::int32_t>(floorValue * 0.5));
        const bool odd = half * 2.0 != floorValue;
        const bool up = (fraction > 0.5) | ((fraction == 0.5) & odd);
        words[i] = static_cast<std::int32_t>(up ? floorValue + 1.0 : floorValue);
    }
}

} // namespace torvane::shell
