#pragma once
// Random draws of the vehicle model. The std:: distributions give different numbers on different
// standard libraries, so every draw here is plain arithmetic on the engine's raw bits: a seed
// makes the same run on every platform.

#include <cstdint>
#include <random>

namespace torvane::sim {

// A 64-bit finaliser: spreads neighbouring inputs (seeds, track cells) over the whole range.
constexpr std::uint64_t MixBits(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15ULL;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9ULL;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBULL;
    return value ^ (value >> 31);
}

// Each part of the model draws from its own engine, so that a change in how often one part
// draws leaves the others' sequences as they were.
constexpr std::uint64_t DeriveSeed(std::uint64_t seed, std::uint64_t part) {
    return MixBits(seed ^ MixBits(part));
}

// A value in [0, 1) made from the top 53 bits; exact in a double.
constexpr double UnitFromBits(std::uint64_t bits) {
    return static_cast<double>(bits >> 11) * 0x1.0p-53;
}

class NoiseSource {
public:
    explicit NoiseSource(std::uint64_t seed)
        : engine_(seed) {}

    double Uniform() { return UnitFromBits(engine_()); }
    // In (-1, 1), densest at 0: the sum of two uniforms.
    double Symmetric() { return Uniform() - Uniform(); }
    // Near-normal with unit deviation: four uniforms (Irwin-Hall) scaled, free of log and sqrt.
    double Normal() {
        const double sum = Uniform() + Uniform() + Uniform() + Uniform();
        return (sum - 2.0) * 1.7320508075688772;
    }
    bool Chance(double probability) { return Uniform() < probability; }

private:
    std::mt19937_64 engine_;
};

} // namespace torvane::sim
