#include "logdata/csv_export.h"

#include "layout/file_image.h"
#include "logdata/forward_samples.h"
#include "logdata/laps.h"
#include "logdata/stream_reader.h"
#include "logdata/values.h"
#include "shell/number_format.h"
#include "shell/replacing_file.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace torvane::logdata {
namespace fs = std::filesystem;
namespace {

// The LAP column has no stream of its own: it counts lap marks, which are resolved to 5 ms.
constexpr int LapColumnSampleTime = 5;
// Rows are formatted straight into this and written in large pieces: per-row strings and small
// writes would cost more than the digits.
constexpr std::size_t OutputBufferBytes = std::size_t{1} << 20;

enum class ColumnKind { Lap, Ordinary, Detonation, Computed };

struct CsvColumn {
    ColumnKind Kind = ColumnKind::Ordinary;
    int Channel = 0;
    std::string Name;
    bool Done = false;
    int SampleTime = 0;
    // Time in ms from the left sample of the pair to the row being written.
    std::int64_t Phase = 0;
    int Decimals = 0;
    // Number of the left sample of the pair; 0 while the channel ramps up to its first sample.
    std::int64_t Sample = 0;
    std::array<double, 2> Pair{};
    std::unique_ptr<ForwardSamples> Stream;
    std::size_t LapIndex = 0;

    // Byte position, from 1, of the left sample in its stream.
    std::int64_t Position() const {
        const std::int64_t width = Stream->WordBytes();
        return width * Sample - (width - 1);
    }
};

// The non-negative remainder of a time, in whole ms, by an interval.
std::int64_t PhaseOf(std::int64_t time, int interval) {
    const std::int64_t rest = time % interval;
    return rest < 0 ? rest + interval : rest;
}

CsvColumn MakeColumn(const LayerSet& layers, int item) {
    const LayerRecord& record = layers.Layer[0];
    CsvColumn column;
    if (item >= SlotCount) {
        const FormulaItem& formula =
            record.FormulaItems.at(static_cast<std::size_t>(item - SlotCount));
        column.Kind = ColumnKind::Computed;
        column.Channel = ComputedChannel;
        column.Name = formula.Name;
        column.SampleTime = formula.Sampling;
        column.Decimals = formula.Decimal;
        column.Stream = std::make_unique<ForwardSamples>(layers.StreamPath(0, formula.Name), 4);
        return column;
    }
    column.Channel = record.ItemChannel.at(static_cast<std::size_t>(item));
    column.Name = ChannelName(column.Channel);
    if (column.Channel == LAP) {
        column.Kind = ColumnKind::Lap;
        column.SampleTime = LapColumnSampleTime;
        return column;
    }
    column.Kind =
        IsDetonationChannel(column.Channel) ? ColumnKind::Detonation : ColumnKind::Ordinary;
    column.SampleTime = ChannelSampleTime(record.Header, column.Channel);
    column.Stream =
        std::make_unique<ForwardSamples>(layers.StreamPath(0, ChannelFile(column.Channel)), 2);
    return column;
}

// Places a stream column on the pair of samples around the first row.
void StartColumn(CsvColumn& column, std::int64_t start) {
    column.Phase = PhaseOf(start, column.SampleTime);
    const std::int64_t before = start - column.Phase;
    column.Sample = before <= 0 ? 0 : before / column.SampleTime;
    column.Pair = column.Stream->Pair(column.Sample);
}

class CsvWriter {
public:
    CsvWriter(const LayerSet& layers, const logger::LafTable& laf)
        : layers_(layers)
        , laf_(laf) {}

    double Value(CsvColumn& column, std::int64_t time, int step) {
        if (column.Kind == ColumnKind::Lap) {
            return LapValue(column, static_cast<double>(time));
        }
        if (!column.Done && column.Stream->ByteLength() <= column.Position()) {
            column.Done = true;
        }
        if (column.Done) {
            return 0.0;
        }
        // The row step is the smallest interval, so a row passes at most one sample.
        if (column.Phase >= column.SampleTime) {
            ++column.Sample;
            column.Pair = column.Stream->Pair(column.Sample);
            column.Phase += step - column.SampleTime;
        } else {
            column.Phase += step;
        }
        const std::int64_t m = PhaseOf(time, column.SampleTime);
        const auto [left, right] = column.Pair;
        double reading = left;
        if (m != 0) {
            // A counter counts within its interval: between samples it shows nothing.
            reading = column.Kind == ColumnKind::Detonation
                          ? 0.0
                          : left + (right - left) * static_cast<double>(m) / column.SampleTime;
        }
        return std::max(Convert(column, reading), 0.0);
    }

private:
    double LapValue(CsvColumn& column, double time) const {
        const LapInfo& lap = layers_.Lap[0];
        const std::size_t marks = LapMarkCount(lap);
        while (column.LapIndex < marks && lap.LapTime[column.LapIndex] <= time) {
            ++column.LapIndex;
        }
        if (column.LapIndex + 1 >= marks) {
            column.Done = true;
        }
        return static_cast<double>(column.LapIndex);
    }

    double Convert(const CsvColumn& column, double reading) const {
        if (column.Kind == ColumnKind::Computed) {
            return reading / std::pow(10.0, column.Decimals);
        }
        switch (column.Channel) {
        case VB:
        case FRSUS:
        case RRSUS:
            // No reading, or the ramp before the first sample, would convert to a voltage or a
            // full stroke that was never measured.
            if (!(reading > 0.0) || column.Sample < 1) {
                return 0.0;
            }
            break;
        default:
            break;
        }
        return ConvertReading(layers_.Layer[0].Header, column.Channel, reading, laf_);
    }

    const LayerSet& layers_;
    const logger::LafTable& laf_;
};

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OutputFile = std::unique_ptr<std::FILE, FileCloser>;

bool ReportFailure(shell::MessageSink& sink, const fs::path& file,
                   std::error_code error = std::error_code(errno, std::generic_category())) {
    const layout::FileFailure failure{error, file};
    shell::ShowRunTimeError(sink, layout::DescribeFailure(failure));
    return false;
}

class OutputBuffer {
public:
    explicit OutputBuffer(std::FILE* file)
        : file_(file)
        , bytes_(OutputBufferBytes) {}

    // Makes room for a value or a separator; false when a write failed.
    bool Room() { return bytes_.size() - used_ >= shell::NumberFormat::WriteRoom + 2 || Flush(); }
    void Put(char c) { bytes_[used_++] = c; }
    void Put(std::string_view text) {
        for (const char c : text) {
            if (!Room()) {
                return;
            }
            Put(c);
        }
    }
    void Put(const shell::NumberFormat& format, double value) {
        used_ =
            static_cast<std::size_t>(format.WriteTo(bytes_.data() + used_, value) - bytes_.data());
    }
    bool Flush() {
        const bool written = std::fwrite(bytes_.data(), 1, used_, file_) == used_;
        used_ = 0;
        failed_ = failed_ || !written;
        return !failed_;
    }
    bool Failed() const { return failed_; }

private:
    std::FILE* file_;
    std::vector<char> bytes_;
    std::size_t used_ = 0;
    bool failed_ = false;
};

} // namespace

bool WriteCsv(const fs::path& file, const LayerSet& layers, std::span<const int> items,
              std::optional<CsvRange> range, const logger::LafTable& laf,
              shell::MessageSink& sink) {
    const double start = range ? range->Start : 0.0;
    const std::int64_t startMs = shell::RoundToInt64(start);

    std::vector<CsvColumn> columns;
    for (const int item : items) {
        columns.push_back(MakeColumn(layers, item));
    }
    // A column that was not logged has no interval to step by.
    std::erase_if(columns, [](const CsvColumn& column) { return column.SampleTime <= 0; });
    if (columns.empty()) {
        return true;
    }
    int step = columns.front().SampleTime;
    for (CsvColumn& column : columns) {
        step = std::min(step, column.SampleTime);
        if (column.Stream) {
            StartColumn(column, startMs);
        }
    }

    // Written beside the target and renamed over it when whole: a full disk or a failed read
    // leaves the old file as it was.
    shell::ReplacingFile replacing(file);
    if (!replacing.Created()) {
        return ReportFailure(sink, file, replacing.Error());
    }
    errno = 0;
    OutputFile out(std::fopen(replacing.Path().c_str(), "wb"));
    if (!out) {
        return ReportFailure(sink, file);
    }
    // The buffer below does the buffering; the library's own would only copy again.
    std::setvbuf(out.get(), nullptr, _IONBF, 0);
    OutputBuffer buffer(out.get());

    buffer.Put("Time(s)");
    for (const CsvColumn& column : columns) {
        buffer.Put(",");
        buffer.Put(column.Name);
    }
    buffer.Put("\r\n");

    CsvWriter writer(layers, laf);
    const shell::NumberFormat seconds(shell::formats::ThreeDecimals);
    const shell::NumberFormat values(shell::formats::TwoDecimals);
    for (double time = start;; time += step) {
        if (range && time > range->End) {
            break;
        }
        const std::int64_t whole = shell::RoundToInt64(time);
        if (!buffer.Room()) {
            return ReportFailure(sink, file);
        }
        buffer.Put(seconds, time / 1000.0);
        bool allDone = true;
        for (CsvColumn& column : columns) {
            if (!buffer.Room()) {
                return ReportFailure(sink, file);
            }
            buffer.Put(',');
            buffer.Put(values, writer.Value(column, whole, step));
            allDone = allDone && column.Done;
        }
        buffer.Put('\r');
        buffer.Put('\n');
        if (allDone) {
            break;
        }
    }
    if (!buffer.Flush()) {
        return ReportFailure(sink, file);
    }
    if (std::fclose(out.release()) != 0) {
        return ReportFailure(sink, file);
    }
    if (!replacing.Commit()) {
        return ReportFailure(sink, file, replacing.Error());
    }
    return true;
}

} // namespace torvane::logdata
