#pragma once
// The formula's operations over a block of time steps side by side ("lanes"): what an operator
// entry does, decided once from its text, and each operation applied to every lane of a block,
// with the first lane that has no result or leaves the finite numbers.

#include "shell/message_sink.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace torvane::calc {

enum class FormulaOperation : std::uint8_t {
    None, // not an operator entry
    Skip, // a "(" that the conversion left behind
    Add,
    Subtract,
    Multiply,
    Divide,
    Sin,
    Cos,
    Tan,
    Asin,
    Acos,
    Atan,
    Sqrt,
    Unknown,
};

FormulaOperation OperationOf(std::string_view text);
bool IsBinary(FormulaOperation operation);

// Where an operation over a block's lanes stopped: the lane count when every lane has a result.
struct LaneStop {
    enum class Reason { None, Incorrect, Failed };
    std::size_t Lane = 0;
    Reason Why = Reason::None;
    shell::RunTimeError Error = {};
};

// a = a op x for the four arithmetic operators, a = sqrt(a), and a = f(x) for the functions;
// lanes beyond a stop keep whatever they were given.
LaneStop ApplyToLanes(FormulaOperation operation, std::span<double> a, std::span<const double> x);

namespace lanes {
// 1 or 0 as the bits of a double: or-ed into a word, marks make a test of every lane that the
// compiler vectorises (a bool or-ed into a flag it does not).
inline std::uint64_t Mark(bool holds) {
    return std::bit_cast<std::uint64_t>(holds ? 1.0 : 0.0);
}
} // namespace lanes

// The first lane where the test holds; the lane count when none does. The whole block is tested
// without stopping; the lanes are searched only when some lane holds.
template <typename Test> std::size_t FirstLane(std::span<const double> values, Test test) {
    std::uint64_t marks = 0;
    for (const double value : values) {
        marks |= lanes::Mark(test(value));
    }
    return marks == 0
               ? values.size()
               : static_cast<std::size_t>(std::ranges::find_if(values, test) - values.begin());
}

// The largest of the values and `start`, which is never below +0; no value is NaN.
double Largest(std::span<const double> values, double start);

} // namespace torvane::calc
