#include "views/histogram.h"

#include "logdata/stream_reader.h"
#include "shell/rounding.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace torvane::views {
namespace {

// Words read at a time: large enough that the per-read cost vanishes, small enough to stay in
// the second-level cache beside the tally.
constexpr std::int64_t BlockWords = 16384;

// VB's error numbers, which the operator's message carries.
constexpr int FileNotFoundError = 53;
constexpr int DivisionByZeroError = 11;
constexpr int OverflowError = 6;

template <typename BarOf>
bool MakeHistogram(const std::filesystem::path& file, BarOf barOf, HistogramFigures& figures,
                   shell::MessageSink& sink) {
    logdata::StreamReader reader;
    if (!reader.Open(file)) {
        shell::ShowRunTimeError(sink, {FileNotFoundError, "File not found"});
        return false;
    }
    const std::int64_t total = reader.ByteLength() / 2;
    if (total == 0) {
        // Every share is a division by the number of samples.
        shell::ShowRunTimeError(sink, {DivisionByZeroError, "Division by zero"});
        return false;
    }
    if (total > std::numeric_limits<std::int32_t>::max()) {
        // Far beyond any run the logger holds; a bar's 32-bit count could not say it.
        shell::ShowRunTimeError(sink, {OverflowError, "Overflow"});
        return false;
    }
    HistogramFigures made;
    made.Total = total;
    // A sample's bar depends on its word alone, so the words are tallied first and each of the
    // 65536 possible words is put into its bar once: a plain increment per sample, whatever the
    // cost of the bar's arithmetic.
    // Runs of equal words are common (a throttle held open), and each increment would wait for
    // the one before; samples go to four tallies in turn so that four chains run side by side.
    constexpr std::size_t Words = std::size_t{1} << 16;
    constexpr std::size_t Tallies = 4;
    std::vector<std::uint32_t> tally(Tallies * Words);
    const auto tallyWords = [&tally](std::span<const std::int16_t> words) {
        std::size_t i = 0;
        for (; i + Tallies <= words.size(); i += Tallies) {
            for (std::size_t t = 0; t < Tallies; ++t) {
                ++tally[t * Words + static_cast<std::uint16_t>(words[i + t])];
            }
        }
        for (; i < words.size(); ++i) {
            ++tally[static_cast<std::uint16_t>(words[i])];
        }
    };
    // The stream's words in place where it can be mapped, else read a block at a time.
    const std::span<const std::int16_t> mapped = reader.MappedWords16();
    if (static_cast<std::int64_t>(mapped.size()) == total) {
        tallyWords(mapped);
    } else {
        std::vector<std::int16_t> block(static_cast<std::size_t>(std::min(BlockWords, total)));
        for (std::int64_t first = 1; first <= total; first += BlockWords) {
            const auto count = static_cast<std::size_t>(std::min(BlockWords, total - first + 1));
            const std::span<std::int16_t> words(block.data(), count);
            reader.ReadWords16(first, words);
            tallyWords(words);
        }
    }
    for (std::size_t word = 0; word < Words; ++word) {
        std::uint32_t samples = 0;
        for (std::size_t t = 0; t < Tallies; ++t) {
            samples += tally[t * Words + word];
        }
        const int bar = samples == 0 ? -1 : barOf(static_cast<std::int16_t>(word));
        if (bar >= 0) {
            made.Counts[static_cast<std::size_t>(bar)] += static_cast<std::int32_t>(samples);
        }
    }
    for (std::size_t i = 0; i < made.Counts.size(); ++i) {
        made.Percent[i] = static_cast<float>(static_cast<double>(made.Counts[i]) /
                                             static_cast<double>(total) * 100.0);
        const auto whole = static_cast<std::int16_t>(shell::RoundHalfEven(made.Percent[i]));
        made.Max = std::max(made.Max, whole);
    }
    figures = made;
    return true;
}

} // namespace

std::int32_t NeBandWidth(NeRange range) {
    const std::int64_t span = static_cast<std::int64_t>(range.End) - range.Start;
    if (span <= 0) {
        return 0;
    }
    return static_cast<std::int32_t>((span + BarCount - 1) / BarCount);
}

int ThBar(std::int16_t raw, ThCalibration calibration) {
    // The throttle's word is 8-bit while the calibration points are 10-bit readings.
    const std::int32_t fromClosed = raw * 4 - calibration.Close;
    const std::int32_t span = calibration.Open - calibration.Close;
    // An uncalibrated throttle (no span) is measured by its raw distance from the closed point.
    const float v = span == 0 ? static_cast<float>(fromClosed)
                              : static_cast<float>(static_cast<double>(fromClosed) / span);
    if (v <= 0.0F) {
        return 0;
    }
    if (v >= 1.0F) {
        return BarCount - 1;
    }
    // Openings from 99.5 % to just under 100 % round to bar 20, which does not exist: they are
    // counted in the total only.
    const int bar = static_cast<int>(shell::RoundHalfEven(v * 100.0F)) / 5;
    return bar < BarCount ? bar : -1;
}

int NeBar(std::int16_t raw, NeRange range, std::int32_t width) {
    const std::int32_t speed = raw * 20;
    if (width <= 0 || speed < range.Start || speed > range.End) {
        return -1;
    }
    // With a range that divides by 20, a speed of exactly End is bar 20: in no bar.
    const std::int32_t bar = (speed - range.Start) / width;
    return bar < BarCount ? bar : -1;
}

bool MakeThHistogram(const std::filesystem::path& file, ThCalibration calibration,
                     HistogramFigures& figures, shell::MessageSink& sink) {
    return MakeHistogram(
        file, [calibration](std::int16_t raw) { return ThBar(raw, calibration); }, figures, sink);
}

bool MakeNeHistogram(const std::filesystem::path& file, NeRange range, HistogramFigures& figures,
                     shell::MessageSink& sink) {
    const std::int32_t width = NeBandWidth(range);
    if (width <= 0) {
        shell::ShowRunTimeError(sink, {DivisionByZeroError, "Division by zero"});
        return false;
    }
    return MakeHistogram(
        file, [range, width](std::int16_t raw) { return NeBar(raw, range, width); }, figures, sink);
}

} // namespace torvane::views
