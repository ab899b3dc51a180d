#pragma once
// The one rounding rule of the program: to the nearest, ties to even. It does not depend on
// the floating-point environment's rounding mode.

#include <cmath>
#include <cstdint>

namespace torvane::shell {

inline double RoundHalfEven(double value) {
    const double floorValue = std::floor(value);
    const double fraction = value - floorValue;
    // A selection, not a branch: which way a value goes is as good as random, and a mispredicted
    // branch would cost more than the rounding. Ties are rare, their branch predictable.
    double rounded = fraction > 0.5 ? floorValue + 1.0 : floorValue;
    if (fraction == 0.5 && std::fmod(floorValue, 2.0) != 0.0) {
        rounded = floorValue + 1.0;
    }
    return rounded;
}

inline std::int64_t RoundToInt64(double value) {
    return static_cast<std::int64_t>(RoundHalfEven(value));
}

} // namespace torvane::shell
