#pragma once
// The one rounding rule of the program: to the nearest, ties to even. It does not depend on
// the floating-point environment's rounding mode.

#include <cmath>
#include <cstdint>

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

} // namespace torvane::shell
