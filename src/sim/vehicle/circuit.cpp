#include "vehicle/circuit.h"

#include "vehicle/noise.h"

#include <cmath>

namespace torvane::sim {
namespace {

// The surface changes character every few metres: shorter than a wheelbase would blur into noise,
// longer would be invisible at racing speed.
constexpr double SurfaceCellM = 3.0;
constexpr std::uint64_t SurfaceSalt = 0x5EA7'0F'A5'7A1CULL;

double CellHeight(std::int64_t cell) {
    return 2.0 * UnitFromBits(MixBits(static_cast<std::uint64_t>(cell) ^ SurfaceSalt)) - 1.0;
}

} // namespace

Circuit::Circuit(std::vector<Segment> segments) {
    for (const Segment& segment : segments) {
        if (segment.LengthM > 0.0) {
            segments_.push_back(segment);
        }
    }
    if (segments_.empty()) {
        segments_.push_back(Segment{1000.0, 0.0});
    }
    starts_.reserve(segments_.size());
    for (const Segment& segment : segments_) {
        starts_.push_back(length_);
        length_ += segment.LengthM;
    }
}

double Circuit::SurfaceAt(double positionM) const {
    const double cells = positionM / SurfaceCellM;
    const double first = std::floor(cells);
    const double along = cells - first;
    const auto cell = static_cast<std::int64_t>(first);
    return CellHeight(cell) + (CellHeight(cell + 1) - CellHeight(cell)) * along;
}

Circuit DefaultCircuit() {
    return Circuit({
        {600.0, 0.0},  // timing line, second half of the main straight
        {120.0, 95.0}, // turn 1, the heavy stop at the end of the straight
        {250.0, 0.0},  {90.0, 130.0},  {420.0, 0.0},   {150.0, 160.0}, // fast sweeper
        {180.0, 0.0},  {70.0, 70.0},                                   // hairpin
        {550.0, 0.0},  {110.0, 115.0}, {200.0, 0.0},   {160.0, 185.0}, {300.0, 0.0},
        {90.0, 85.0},  {380.0, 0.0},   {100.0, 140.0}, {150.0, 0.0},   {80.0, 100.0},
        {450.0, 0.0},  {130.0, 120.0}, // last corner onto the main straight
        {350.0, 0.0},                  // first half of the main straight
    });
}

} // namespace torvane::sim
