#include "logdata/values.h"

#include "logdata/stream_reader.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace torvane::logdata {
namespace {

struct SamplePair {
    double Current = 0.0;
    double Next = 0.0;
};

// Sample k and k + 1 of a stream, read in one go; k counts from 1.
template <typename Word> SamplePair ReadPair(StreamReader& reader, std::int64_t k) {
    std::array<Word, 2> words{};
    if constexpr (sizeof(Word) == 2) {
        reader.ReadWords16(k, words);
    } else {
        reader.ReadWords32(k, words);
    }
    return {static_cast<double>(words[0]), static_cast<double>(words[1])};
}

// The reading of an interpolated stream at time t with interval T: a ramp from 0 to the first
// sample, then straight lines between samples. The upper bound compares t with T times the
// stream's length in bytes, not samples; past the last sample the reads just meet the end of
// the stream and give 0.
template <typename Word>
double InterpolatedReading(const std::filesystem::path& path, double t, int interval) {
    if (t == 0.0) {
        return 0.0;
    }
    StreamReader reader(path);
    if (t < interval) {
        return ReadPair<Word>(reader, 1).Current * t / interval;
    }
    if (t > interval * static_cast<double>(reader.ByteLength())) {
        return 0.0;
    }
    const std::int64_t whole = shell::RoundToInt64(t);
    const std::int64_t k = whole / interval;
    const std::int64_t m = whole % interval;
    const SamplePair samples = ReadPair<Word>(reader, k);
    if (m == 0) {
        return samples.Current;
    }
    return samples.Current + (samples.Next - samples.Current) * static_cast<double>(m) / interval;
}

// Hands `use` the conversion of a channel, so that a block of readings chooses it once.
template <typename Use>
auto WithConversion(const LogHeader& header, int channel, const logger::LafTable& laf, Use use) {
    switch (channel) {
    case Ne:
        return use([](double raw) { return raw * 20.0; });
    case TH: {
        const int close = header.ThClose();
        const int span = header.ThOpen() - close;
        // A throttle without a calibrated span is no item; never divide by it.
        if (span == 0) {
            return use([](double) { return 0.0; });
        }
        return use([close, span](double raw) { return (raw * 4.0 - close) / span * 100.0; });
    }
    case VB:
        return use([](double raw) { return raw / 255.0 * 25.0 + 0.28; });
    case VM1:
    case VM2:
    case VM3:
    case VM4:
        return use([](double raw) { return raw / 1023.0 * 5.0; });
    case FRSUS:
        return use(
            [zero = header.FrSusZero()](double raw) { return (zero - raw) / 1023.0 * 187.5; });
    case RRSUS:
        return use(
            [zero = header.RrSusZero()](double raw) { return (zero - raw) / 1023.0 * 125.0; });
    case LAF1:
    case LAF2:
        return use([&laf](double raw) { return laf.ConvertLaf(raw / 1023.0 * 5.0); });
    default:
        return use([](double raw) { return raw; });
    }
}

} // namespace

double ConvertReading(const LogHeader& header, int channel, double raw,
                      const logger::LafTable& laf) {
    return WithConversion(header, channel, laf, [raw](auto convert) { return convert(raw); });
}

void ConvertReadings(const LogHeader& header, int channel, std::span<double> readings,
                     const logger::LafTable& laf) {
    WithConversion(header, channel, laf, [readings](auto convert) {
        for (double& reading : readings) {
            reading = convert(reading);
        }
    });
}

double RawToValue(const LogHeader& header, int channel, double raw, const logger::LafTable& laf) {
    if (!(raw > 0.0)) {
        return raw;
    }
    const double value = ConvertReading(header, channel, raw, laf);
    return value < 0.0 ? 0.0 : value;
}

int ChannelSampleTime(const LogHeader& header, int channel) {
    const int stream = ChannelStream(channel);
    if (stream == LapSlot) {
        return LapStepMs;
    }
    return stream < 0 ? 0 : header.SampleTime(stream);
}

double ValueReader::ValueAt(int layer, int slot, double time, TimeScale scale) const {
    const LayerRecord& record = layers_.Layer.at(static_cast<std::size_t>(layer));
    if (slot < 0 || static_cast<std::size_t>(slot) >= record.ItemChannel.size()) {
        return 0.0;
    }
    const int channel = record.ItemChannel[static_cast<std::size_t>(slot)];
    if (channel == ComputedChannel) {
        const auto index = static_cast<std::size_t>(slot - SlotCount);
        return index < record.FormulaItems.size()
                   ? ComputedValue(layer, record.FormulaItems[index], time)
                   : 0.0;
    }
    if (channel == LAP) {
        return LapValue(layer, time);
    }
    if (IsDetonationChannel(channel)) {
        return DetonationValue(layer, channel, time, scale);
    }
    return OrdinaryValue(layer, channel, time);
}

double ValueReader::OrdinaryValue(int layer, int channel, double time) const {
    const LogHeader& header = layers_.Layer[static_cast<std::size_t>(layer)].Header;
    const int interval = ChannelSampleTime(header, channel);
    const auto path = layers_.StreamPath(layer, ChannelFile(channel));
    if (interval <= 0) {
        return 0.0;
    }
    return RawToValue(header, channel, InterpolatedReading<std::int16_t>(path, time, interval),
                      laf_);
}

// Detonation counters are events: never interpolated. Between two samples a count shows only
// near a sample, within a tolerance of three time steps, so that a zoomed-out cursor does not
// step over it; zoomed in (more than one pixel a step) only an exact hit shows.
double ValueReader::DetonationValue(int layer, int channel, double time, TimeScale scale) const {
    const LogHeader& header = layers_.Layer[static_cast<std::size_t>(layer)].Header;
    const int interval = ChannelSampleTime(header, channel);
    const auto path = layers_.StreamPath(layer, ChannelFile(channel));
    if (interval <= 0 || time == 0.0 || time < interval) {
        return 0.0;
    }
    StreamReader reader(path);
    if (time > static_cast<double>(interval) * static_cast<double>(reader.ByteLength())) {
        return 0.0;
    }
    const double tolerance = 3.0 * scale.MsPerStep;
    const std::int64_t whole = shell::RoundToInt64(time);
    const std::int64_t k = whole / interval;
    const auto m = static_cast<double>(whole % interval);
    const auto [current, next] = ReadPair<std::int16_t>(reader, k);

    double raw = 0.0;
    if (m == 0.0) {
        raw = current;
    } else if (scale.PixelsPerStep > 1) {
        raw = 0.0;
    } else if (m <= tolerance) {
        if (tolerance <= interval) {
            raw = current;
        } else if (current != 0.0 && next != 0.0) {
            raw = next;
        } else {
            raw = current != 0.0 ? current : next;
        }
    } else if (m < interval - tolerance) {
        raw = 0.0;
    } else {
        raw = next;
    }
    return RawToValue(header, channel, raw, laf_);
}

double ValueReader::LapValue(int layer, double time) const {
    const std::vector<double>& marks = layers_.Lap[static_cast<std::size_t>(layer)].LapTime;
    if (marks.size() <= 1) {
        return 0.0;
    }
    const auto later = std::find_if(marks.begin(), marks.end(), [&](double t) { return t > time; });
    return static_cast<double>(later - marks.begin());
}

double ValueReader::ComputedValue(int layer, const FormulaItem& item, double time) const {
    const auto path = layers_.StreamPath(layer, item.Name);
    if (item.Sampling <= 0) {
        return 0.0;
    }
    return InterpolatedReading<std::int32_t>(path, time, item.Sampling) /
           std::pow(10.0, item.Decimal);
}

} // namespace torvane::logdata
