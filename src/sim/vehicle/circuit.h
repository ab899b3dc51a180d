#pragma once
// A circuit: a closed loop of straights and corners. The timing line is at the start of the
// first segment, and positions are metres from it along the racing line.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace torvane::sim {

struct Segment {
    double LengthM = 0.0;
    // The apex speed a committed rider holds through the corner; 0 marks a straight.
    double CornerSpeedKmh = 0.0;

    bool IsCorner() const { return CornerSpeedKmh > 0.0; }
};

class Circuit {
public:
    // Segments of no length are dropped; a loop left with none becomes one 1 km straight, so
    // a circuit always has somewhere to ride.
    explicit Circuit(std::vector<Segment> segments);

    std::span<const Segment> Segments() const { return segments_; }
    double LengthM() const { return length_; }
    // Distance from the timing line to the start of segment `index`.
    double StartOf(std::size_t index) const { return starts_[index]; }
    // The index of the segment after `index`, round the loop.
    std::size_t Next(std::size_t index) const {
        return index + 1 == segments_.size() ? 0 : index + 1;
    }

    // The height of the track surface at a position, in -1..1: the same bumps every lap.
    double SurfaceAt(double positionM) const;

private:
    std::vector<Segment> segments_;
    std::vector<double> starts_;
    double length_ = 0.0;
};

// About 4.9 km: a long start-finish straight, ten corners from a 70 km/h hairpin to a 185 km/h
// sweeper; a lap takes just under two minutes.
Circuit DefaultCircuit();

} // namespace torvane::sim
