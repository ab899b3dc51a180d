#include "calc/formula_lanes.h"

#include "calc/formula_syntax.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>

namespace torvane::calc {
namespace {

// Degrees in a radian, as the formula language has always used it in both directions.
constexpr double DegreesPerRadian = 57.2957795130823;

enum class Applied { Done, Incorrect, Failed };

constexpr std::array<std::pair<std::string_view, FormulaOperation>, 12> OperationNames{{
    {"(", FormulaOperation::Skip},
    {"+", FormulaOperation::Add},
    {"-", FormulaOperation::Subtract},
    {"*", FormulaOperation::Multiply},
    {"/", FormulaOperation::Divide},
    {"sin", FormulaOperation::Sin},
    {"cos", FormulaOperation::Cos},
    {"tan", FormulaOperation::Tan},
    {"asin", FormulaOperation::Asin},
    {"acos", FormulaOperation::Acos},
    {"atan", FormulaOperation::Atan},
    {"sqrt", FormulaOperation::Sqrt},
}};

// A function of the formula on the value of one step.
Applied Apply(FormulaOperation operation, double x, double& result, shell::RunTimeError& failure) {
    using enum FormulaOperation;
    switch (operation) {
    case Sin:
        result = std::sin(x / DegreesPerRadian);
        break;
    case Cos:
        result = std::cos(x / DegreesPerRadian);
        break;
    case Tan: {
        const double whole = std::round(x);
        if (whole == 90.0 || whole == 270.0) {
            return Applied::Incorrect;
        }
        result = std::tan(x / DegreesPerRadian);
        break;
    }
    case Atan:
        result = std::atan(x) * DegreesPerRadian;
        break;
    case Asin:
    case Acos: {
        if (x < -1.0 || x > 1.0) {
            return Applied::Incorrect;
        }
        const double root = std::sqrt(1.0 - x * x);
        if (root == 0.0) {
            failure = DivisionByZeroError();
            return Applied::Failed;
        }
        // The "asin" row has always taken the cosine here, and its results are kept so.
        result = operation == Asin
                     ? std::cos(x / root) * DegreesPerRadian
                     : (std::atan(-x / root) + 2.0 * std::atan(1.0)) * DegreesPerRadian;
        break;
    }
    default:
        failure = StackError();
        return Applied::Failed;
    }
    if (!std::isfinite(result)) {
        failure = OverflowError();
        return Applied::Failed;
    }
    return Applied::Done;
}

// a[lane] = operation(lane) over every lane, in one pass with the test of the results; returns
// the first lane whose result is not finite, or the lane count.
template <typename Operation> std::size_t ApplyEach(std::span<double> a, Operation operation) {
    std::uint64_t marks = 0;
    for (std::size_t lane = 0; lane < a.size(); ++lane) {
        a[lane] = operation(lane);
        marks |= lanes::Mark(!std::isfinite(a[lane]));
    }
    return marks == 0 ? a.size() : FirstLane(a, [](double value) { return !std::isfinite(value); });
}

} // namespace

FormulaOperation OperationOf(std::string_view text) {
    const auto found = std::ranges::find(OperationNames, text,
                                         &std::pair<std::string_view, FormulaOperation>::first);
    return found == OperationNames.end() ? FormulaOperation::Unknown : found->second;
}

bool IsBinary(FormulaOperation operation) {
    using enum FormulaOperation;
    return operation == Add || operation == Subtract || operation == Multiply ||
           operation == Divide;
}

// The largest of the values and `start`. Four running maxima side by side break the chain of
// dependent comparisons; as no value is NaN and `start` is never below +0 (so -0 never wins),
// the order in which they meet changes nothing.
double Largest(std::span<const double> values, double start) {
    std::array<double, 4> largest{start, start, start, start};
    std::size_t i = 0;
    for (; i + largest.size() <= values.size(); i += largest.size()) {
        for (std::size_t j = 0; j < largest.size(); ++j) {
            largest[j] = std::max(largest[j], values[i + j]);
        }
    }
    for (; i < values.size(); ++i) {
        largest[0] = std::max(largest[0], values[i]);
    }
    return std::max({largest[0], largest[1], largest[2], largest[3]});
}

// An operation over a block's lanes. The common ones run over every lane as plain loops that
// the compiler vectorises; the first lane that has no result (a division by 0, the root of a
// negative value) or leaves the finite numbers ends the block there.
LaneStop ApplyToLanes(FormulaOperation operation, std::span<double> a, std::span<const double> x) {
    using enum FormulaOperation;
    std::size_t lane = a.size();
    switch (operation) {
    case Add:
        lane = ApplyEach(a, [a, x](std::size_t i) { return a[i] + x[i]; });
        break;
    case Subtract:
        lane = ApplyEach(a, [a, x](std::size_t i) { return a[i] - x[i]; });
        break;
    case Multiply:
        lane = ApplyEach(a, [a, x](std::size_t i) { return a[i] * x[i]; });
        break;
    case Divide:
        lane = ApplyEach(a, [a, x](std::size_t i) { return a[i] / x[i]; });
        break;
    case Sqrt:
        lane = ApplyEach(a, [a](std::size_t i) { return std::sqrt(a[i]); });
        break;
    default: {
        shell::RunTimeError failure;
        for (std::size_t step = 0; step < a.size(); ++step) {
            const Applied applied = Apply(operation, x[step], a[step], failure);
            if (applied != Applied::Done) {
                return {step,
                        applied == Applied::Incorrect ? LaneStop::Reason::Incorrect
                                                      : LaneStop::Reason::Failed,
                        failure};
            }
        }
        return {a.size()};
    }
    }
    // The operands are finite (or an infinite number from the formula's text), so a result that
    // is not comes from x / 0 or the root of a negative value, which have none (NaN or infinite),
    // or else from an overflow.
    if (lane == a.size()) {
        return {lane};
    }
    const bool noResult =
        operation == Divide ? x[lane] == 0.0 : operation == Sqrt && std::isnan(a[lane]);
    return noResult ? LaneStop{lane, LaneStop::Reason::Incorrect}
                    : LaneStop{lane, LaneStop::Reason::Failed, OverflowError()};
}

} // namespace torvane::calc
