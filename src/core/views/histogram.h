#pragma once
// The figures of a histogram: how the samples of one deployed stream divide over twenty bands,
// either of throttle opening (TH) or of engine speed (Ne).

#include "shell/message_sink.h"

#include <array>
#include <cstdint>
#include <filesystem>

namespace torvane::views {

inline constexpr int BarCount = 20;

enum class HistogramKind { Th = 1, Ne = 2 };

// The engine-speed range of the Ne view in r/min (`lngDataStart`, `lngDataEnd`).
struct NeRange {
    std::int32_t Start = 0;
    std::int32_t End = 20000;
    friend bool operator==(const NeRange&, const NeRange&) = default;
};

// Raw throttle readings at closed and at full throttle, from the run's header.
struct ThCalibration {
    std::int16_t Open = 0;
    std::int16_t Close = 0;
};

struct HistogramFigures {
    std::array<std::int32_t, BarCount> Counts{};
    std::array<float, BarCount> Percent{};
    // The largest percentage as a whole number; it chooses the Y scale.
    std::int16_t Max = 0;
    // Every sample of the stream, also those that fall into no bar.
    std::int64_t Total = 0;
};

// The band width of the Ne view: the range divided by 20, rounded up. 0 for an empty range.
std::int32_t NeBandWidth(NeRange range);

// The bar a sample falls into, or -1 for none.
int ThBar(std::int16_t raw, ThCalibration calibration);
int NeBar(std::int16_t raw, NeRange range, std::int32_t width);

// Reads the stream forward in blocks, so a run of any length needs the same few kilobytes. On
// false the operator has been told through the empty-text rule and figures are unchanged.
bool MakeThHistogram(const std::filesystem::path& file, ThCalibration calibration,
                     HistogramFigures& figures, shell::MessageSink& sink);
bool MakeNeHistogram(const std::filesystem::path& file, NeRange range, HistogramFigures& figures,
                     shell::MessageSink& sink);

} // namespace torvane::views
