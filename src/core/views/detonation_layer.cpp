#include "views/detonation_layer.h"

#include "logdata/channels.h"
#include "logdata/stream_reader.h"
#include "shell/rounding.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace torvane::views {
namespace {

constexpr int LowestNe = 5000;
constexpr int HighestNe = 15000;
constexpr int RowNe = 500;
constexpr int ColumnPercent = 5;
constexpr int FullThrottle = 100;

std::int64_t SamplesOf(const logdata::StreamReader& reader) {
    return reader.ByteLength() / 2;
}

// One stream read forward a block at a time. The blocks are taken in place from the mapped
// stream, so a walk over a long run copies nothing; only a block that runs past the end (or a
// stream that cannot be mapped) is read into a buffer, where the missing samples read as 0.
class BlockReader {
public:
    explicit BlockReader(const std::filesystem::path& path) {
        if (!path.empty() && reader_.Open(path)) {
            mapped_ = reader_.MappedWords16();
        }
    }
    std::int64_t Samples() const { return SamplesOf(reader_); }
    // The next `count` samples.
    std::span<const std::int16_t> Next(std::int64_t count) {
        const std::int64_t first = next_;
        next_ += count;
        if (first + count <= std::ssize(mapped_)) {
            return mapped_.subspan(static_cast<std::size_t>(first),
                                   static_cast<std::size_t>(count));
        }
        block_.resize(static_cast<std::size_t>(count));
        reader_.ReadWords16(first + 1, block_);
        return block_;
    }

private:
    logdata::StreamReader reader_;
    std::span<const std::int16_t> mapped_;
    std::vector<std::int16_t> block_;
    std::int64_t next_ = 0;
};

// The throttle opening of a raw reading in whole percent, 0 to 100.
int ThrottlePercent(std::int16_t raw, int thClose, int thOpen) {
    const double percent = (raw * 4.0 - thClose) / (thOpen - thClose) * 100.0;
    return static_cast<int>(std::clamp(std::floor(percent), 0.0, double{FullThrottle}));
}

void AddCount(MapCounts& map, int cell, std::int16_t count) {
    auto& byte = map[static_cast<std::size_t>(cell)];
    byte = static_cast<std::uint8_t>(std::clamp(byte + int{count}, 0, MaxCellCount));
}

} // namespace

DetonationContent ComputeDetonationMap(const DetonationStreams& streams,
                                       const logdata::LogHeader& header, std::int64_t runDistance,
                                       std::int64_t runTime) {
    DetonationContent content;
    content.RunTime = runTime;
    content.RunDistance = runDistance;
    BlockReader ne(streams.Ne);
    BlockReader th(streams.Th);
    BlockReader deto1(streams.Deto1);
    BlockReader deto2(streams.Deto2);
    content.Present = {deto1.Samples() > 0, deto2.Samples() > 0};

    const int neTime = header.SampleTime(logdata::Ne);
    const int thTime = header.SampleTime(logdata::TH);
    // A header that a deployment accepted never holds these, but a map is no reason to divide
    // by a bad one.
    if (neTime <= 0 || neTime > DetonationPeriodMs) {
        return content;
    }
    const int nePerPeriod = DetonationPeriodMs / neTime;
    // A throttle without a calibrated span is no item: its periods count at 0 %.
    const bool thLogged =
        thTime > 0 && thTime <= DetonationPeriodMs && header.ThOpen() != header.ThClose();
    const int thPerPeriod = thLogged ? DetonationPeriodMs / thTime : 0;

    std::int64_t periods = ne.Samples() / nePerPeriod;
    const std::int64_t thPeriods = thLogged ? th.Samples() / thPerPeriod : 0;
    // An empty stream does not limit the walk.
    for (const std::int64_t limit : {thPeriods, deto1.Samples(), deto2.Samples()}) {
        if (limit != 0 && limit < periods) {
            periods = limit;
        }
    }
    const bool countMap2 = !streams.Deto2.empty() && deto2.Samples() != 0;

    for (std::int64_t done = 0; done < periods; done += PeriodsPerBlock) {
        const std::int64_t count = std::min(PeriodsPerBlock, periods - done);
        const auto neBlock = ne.Next(count * nePerPeriod);
        const auto thBlock =
            thLogged ? th.Next(count * thPerPeriod) : std::span<const std::int16_t>{};
        const auto deto1Block = deto1.Next(count);
        const auto deto2Block = deto2.Next(count);
        for (std::size_t j = 0; j < deto1Block.size(); ++j) {
            const auto last = [j](int perPeriod) {
                return j * static_cast<std::size_t>(perPeriod) +
                       static_cast<std::size_t>(perPeriod - 1);
            };
            const int engine = static_cast<int>(std::floor(neBlock[last(nePerPeriod)] * 20.0));
            if (engine < LowestNe || engine > HighestNe) {
                continue;
            }
            const int throttle = thLogged ? ThrottlePercent(thBlock[last(thPerPeriod)],
                                                            header.ThClose(), header.ThOpen())
                                          : 0;
            const int row = engine == HighestNe ? MapRows - 1 : (engine - LowestNe) / RowNe;
            const int column = throttle == FullThrottle ? MapColumns - 1 : throttle / ColumnPercent;
            const int cell = row * MapColumns + column;
            AddCount(content.Maps[0], cell, deto1Block[j]);
            if (countMap2) {
                AddCount(content.Maps[1], cell, deto2Block[j]);
            }
        }
    }
    return content;
}

std::filesystem::path GetDetonationFromLayer(const DetonationStreams& streams,
                                             const logdata::LogHeader& header,
                                             std::int64_t runDistance, std::int64_t runTime,
                                             const std::filesystem::path& tempDir,
                                             shell::MessageSink& sink) {
    return WriteDetonationWorkFile(
        tempDir, EncodeDetonation(ComputeDetonationMap(streams, header, runDistance, runTime)),
        sink);
}

std::int64_t LayerRunDistance(const logdata::LayerSet& layers, int layer) {
    const logdata::LogHeader& header = layers.Layer.at(static_cast<std::size_t>(layer)).Header;
    for (const int channel : {logdata::VFW, logdata::VRW}) {
        const int interval = header.SampleTime(channel);
        if (interval <= 0) {
            continue;
        }
        BlockReader speed(
            layers.StreamPath(layer, logdata::StreamNames[static_cast<std::size_t>(channel)]));
        std::int64_t kmhSum = 0;
        constexpr std::int64_t BlockSamples = 32768;
        for (std::int64_t left = speed.Samples(); left > 0; left -= BlockSamples) {
            for (const std::int16_t kmh : speed.Next(std::min(BlockSamples, left))) {
                kmhSum += std::max<std::int16_t>(kmh, 0);
            }
        }
        constexpr double MsPerHour = 3'600'000.0;
        return static_cast<std::int64_t>(static_cast<double>(kmhSum) * interval / MsPerHour);
    }
    return 0;
}

std::int64_t LayerRunTime(const logdata::LayerRecord& record) {
    return shell::RoundToInt64(record.MeasureTime) / 1000;
}

std::filesystem::path GetDetonationOfLayer(const logdata::LayerSet& layers, int layer,
                                           shell::MessageSink& sink) {
    const auto stream = [&](int channel) {
        return layers.StreamPath(layer, logdata::StreamNames[static_cast<std::size_t>(channel)]);
    };
    const logdata::LayerRecord& record = layers.Layer.at(static_cast<std::size_t>(layer));
    return GetDetonationFromLayer(
        {stream(logdata::Ne), stream(logdata::TH), stream(logdata::DETO1), stream(logdata::DETO2)},
        record.Header, LayerRunDistance(layers, layer), LayerRunTime(record), layers.TempDir, sink);
}

} // namespace torvane::views
