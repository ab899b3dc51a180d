#include "graph/trace_builder.h"

#include "logdata/channels.h"
#include "logdata/stream_reader.h"
#include "shell/common.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>

namespace torvane::graph {
namespace {

// Beyond this many steps per column the envelope would read too much: every L-th sample only.
constexpr std::int64_t MaxStepsPerSample = 60;
// Rows far outside any picture; keeps the rasteriser's arithmetic small.
constexpr std::int64_t RowLimit = 1 << 20;

// Lowest and highest of a run of words, in one pass the compiler can vectorise.
template <typename Word> void WidenExtent(std::span<const Word> words, double& low, double& high) {
    Word lowest = std::numeric_limits<Word>::max();
    Word highest = std::numeric_limits<Word>::min();
    for (const Word word : words) {
        lowest = std::min(lowest, word);
        highest = std::max(highest, word);
    }
    if (!words.empty()) {
        low = std::min(low, static_cast<double>(lowest));
        high = std::max(high, static_cast<double>(highest));
    }
}

// Samples of a stream by number (from 1), read in place from the mapped stream, so a trace
// touches only the pages of its visible time; numbers outside the stream read as 0.
class SampleSource {
public:
    SampleSource(const std::filesystem::path& path, int wordBytes) {
        if (!reader_.Open(path)) {
            return;
        }
        if (wordBytes == 2) {
            words16_ = reader_.MappedWords16();
        } else {
            words32_ = reader_.MappedWords32();
        }
        count_ = static_cast<std::int64_t>(std::max(words16_.size(), words32_.size()));
        // A stream with a whole word that yields none could not be mapped.
        opened_ = count_ > 0 || reader_.ByteLength() < wordBytes;
    }
    bool Opened() const { return opened_; }
    std::int64_t Count() const { return count_; }

    double Get(std::int64_t k) const {
        if (k < 1 || k > count_) {
            return 0.0;
        }
        const auto index = static_cast<std::size_t>(k - 1);
        return words16_.empty() ? static_cast<double>(words32_[index])
                                : static_cast<double>(words16_[index]);
    }

    // Lowest and highest raw value of `count` samples from number k on.
    void Extent(std::int64_t k, std::int64_t count, double& low, double& high) const {
        low = std::numeric_limits<double>::max();
        high = std::numeric_limits<double>::lowest();
        const std::int64_t end = k + count;
        if (k < 1 || end > count_ + 1) {
            // Numbers outside the stream read as 0.
            low = 0.0;
            high = 0.0;
        }
        const std::int64_t first = std::max<std::int64_t>(k, 1);
        const std::int64_t stop = std::min(end, count_ + 1);
        if (first >= stop) {
            return;
        }
        const auto offset = static_cast<std::size_t>(first - 1);
        const auto size = static_cast<std::size_t>(stop - first);
        if (words16_.empty()) {
            WidenExtent(words32_.subspan(offset, size), low, high);
        } else {
            WidenExtent(words16_.subspan(offset, size), low, high);
        }
    }

private:
    logdata::StreamReader reader_;
    std::span<const std::int16_t> words16_;
    std::span<const std::int32_t> words32_;
    std::int64_t count_ = 0;
    bool opened_ = false;
};

double Real(std::int64_t value) {
    return static_cast<double>(value);
}

void Push(TraceLists& lists, std::int64_t x, std::int32_t y) {
    const auto column = static_cast<std::int32_t>(x);
    lists.Upper.push_back({column, y - 1});
    lists.Main.push_back({column, y});
    lists.Lower.push_back({column, y + 1});
}

void CutTo(TraceLists& lists, std::size_t size) {
    for (auto* list : {&lists.Upper, &lists.Main, &lists.Lower}) {
        list->resize(std::min(list->size(), size));
    }
}

void MoveColumn(TraceLists& lists, std::size_t index, std::int32_t x) {
    lists.Upper[index].X = x;
    lists.Main[index].X = x;
    lists.Lower[index].X = x;
}

// The block arithmetic every case starts from: L is the least common multiple of step and
// sampling, so each L ms a sample and a step fall together, Block columns apart.
struct Blocks {
    std::int64_t S = 0;     // ms per step
    std::int64_t P = 0;     // columns per step
    std::int64_t s = 0;     // ms per sample
    std::int64_t L = 0;     // ms per block
    std::int64_t n = 0;     // samples per block
    std::int64_t Block = 0; // columns per block
    std::int64_t r = 0;     // start time past the last block boundary
    double A = 0.0;         // the block boundary at or before the start
    std::int64_t X0 = 0;    // column of A
    std::int64_t Right = 0; // columns to fill from X0
};

Blocks BlocksOf(const TraceParams& params, const TimeScale& scale) {
    Blocks b;
    b.S = scale.MsPerStep;
    b.P = scale.PixelsPerStep;
    b.s = params.Sampling;
    b.L = shell::LeastCommonMultiple(b.S, b.s);
    b.n = b.L / b.s;
    b.Block = shell::RoundToInt64(Real(b.L) / Real(b.S) * Real(b.P));
    b.r = shell::RoundToInt64(params.Start) % b.L;
    b.A = std::max(params.Start - static_cast<double>(b.r), 0.0);
    b.X0 = shell::RoundToInt64(params.Left - Real(b.r) / Real(b.L) * Real(b.Block));
    b.Right = b.r == 0 ? params.Width : params.Left - b.X0 + params.Width;
    return b;
}

// Where each sample of a stepping trace stands: on the first column at or after its time.
class Stepper {
public:
    explicit Stepper(const Blocks& b)
        : b_(b) {}
    std::int64_t Next(std::int64_t x) {
        for (;;) {
            a_ += b_.S;
            ++x;
            if (a_ == b_.L) {
                a_ = 0;
                c_ = 0;
                return x;
            }
            if (a_ / b_.s > c_) {
                ++c_;
                return x;
            }
        }
    }

private:
    const Blocks& b_;
    std::int64_t a_ = 0;
    std::int64_t c_ = 0;
};

class TraceWriter {
public:
    TraceWriter(const TraceParams& params, const RawConverter& convert, const SampleSource& source,
                const Blocks& blocks, TraceLists& lists)
        : params_(params)
        , convert_(convert)
        , source_(source)
        , b_(blocks)
        , lists_(lists) {}

    // Each column shows the extent of the samples that fall into it; P is 1 here.
    int Envelope(bool pulses) {
        const std::int64_t k = b_.S / b_.s;
        std::int64_t x = params_.Left + 1;
        std::int64_t capacity = 0;
        std::int64_t pos = 1;
        std::int64_t a = 0;
        std::int64_t i = 0;
        if (params_.Start == 0.0) {
            capacity = 2 * b_.Right;
            Push(lists_, x, params_.Base);
            ++x;
            i = 1;
        } else {
            capacity = 2 * b_.Right + 1;
            const std::int64_t e = shell::RoundToInt64(params_.Start - Real(b_.S));
            pos = e / b_.s + 1;
            a = e % b_.s;
        }
        while (i + 1 < capacity && pos <= source_.Count()) {
            a += b_.S;
            // Columns of a ratio that is no whole number carry the remainder to the next.
            const std::int64_t count = a / b_.s == k ? k : k + 1;
            a -= count * b_.s;
            double low = 0.0;
            double high = 0.0;
            source_.Extent(pos, count, low, high);
            pos += count;
            Push(lists_, x, pulses ? Row(0.0) : RowOfRaw(low));
            Push(lists_, x, RowOfRaw(high));
            if (pos > source_.Count()) {
                CutTo(lists_, static_cast<std::size_t>(i + 1));
                break;
            }
            i += 2;
            ++x;
        }
        return TraceEnvelope;
    }

    // Each sample on the first column at or after its time.
    int Stepping() {
        const std::int64_t capacity = b_.Right + params_.Left;
        std::int64_t x = b_.X0;
        std::int64_t pos = FirstSteppingSample();
        Stepper stepper(b_);
        while (pos <= source_.Count() && x < capacity) {
            const double raw = source_.Get(pos++);
            x = stepper.Next(x);
            Push(lists_, x, RowOfRaw(raw));
        }
        return TracePlain;
    }

    // One sample per block, the others skipped when a block holds more than one.
    int Plain() {
        const std::int64_t capacity = b_.Right / b_.Block + 2;
        std::int64_t i = 0;
        std::int64_t pos = FirstPlainSample(i);
        for (; i < capacity && pos <= source_.Count(); ++i, pos += b_.n) {
            Push(lists_, i * b_.Block + b_.X0, RowOfRaw(source_.Get(pos)));
        }
        return Thinning() ? TraceThinned : TracePlain;
    }

    // Detonation counts as pulses: three points a sample, the count on the middle one.
    int Pulses() {
        // The stream reads one word past its end, so the last pulse comes down again.
        const std::int64_t count = source_.Count() + 1;
        if (PlainSampling()) {
            const std::int64_t capacity = b_.Right / b_.Block + 2;
            std::int64_t j = 0;
            std::int64_t pos = FirstPlainSample(j);
            for (; j < capacity && pos <= count; ++j, pos += b_.n) {
                PlainPulse(j * b_.Block + b_.X0, source_.Get(pos));
            }
            return b_.s >= b_.S ? TracePlain : TraceThinned;
        }
        const std::int64_t capacity = b_.Right + params_.Left;
        std::int64_t x = b_.X0;
        std::int64_t pos = FirstSteppingSample();
        Stepper stepper(b_);
        while (pos <= count && x < capacity) {
            const double raw = source_.Get(pos++);
            x = stepper.Next(x);
            Pulse(x, raw, 3, x - 1);
        }
        return TracePlain;
    }

    bool PlainSampling() const { return b_.s % b_.S == 0 || Thinning(); }
    bool Thinning() const { return b_.S > MaxStepsPerSample * b_.s; }

private:
    std::int32_t Row(double value) const { return RowOfValue(params_, value); }

    // The row of a raw reading. Neighbouring columns mostly repeat a few readings, so rows are
    // kept by reading and the conversion and rounding run once for each.
    std::int32_t RowOfRaw(double raw) {
        RowMemo& memo =
            rowMemo_[static_cast<std::size_t>(static_cast<std::int64_t>(raw)) % rowMemo_.size()];
        if (memo.Raw != raw) {
            memo.Raw = raw;
            memo.Row = Row(convert_(raw));
        }
        return memo.Row;
    }

    std::int64_t FirstSteppingSample() {
        if (b_.A == 0.0) {
            Push(lists_, b_.X0, params_.Base);
            return 1;
        }
        return shell::RoundToInt64(b_.A) / b_.s + 1;
    }

    // The first sample of a plain trace and the block index it stands at.
    std::int64_t FirstPlainSample(std::int64_t& index) {
        if (b_.A == 0.0) {
            Push(lists_, b_.X0, params_.Base);
            index = 1;
            return 1;
        }
        index = 0;
        return std::max<std::int64_t>(shell::RoundToInt64(b_.A) / b_.s, 1);
    }

    void PlainPulse(std::int64_t x, double raw) {
        const std::int64_t w = b_.P == 1 ? 3 : b_.P;
        if (b_.Block == 1) {
            Pulse(x, raw, 0, x);
        } else if (b_.Block >= 6) {
            AddPulse(x - w, x, x + w, raw);
        } else {
            Pulse(x, raw, w, x - b_.Block / 2);
        }
    }

    // A pulse of half width w; a zero count keeps its three points on x. A pulse right after
    // another shares its foot with it at joinX, so neighbouring pulses join.
    void Pulse(std::int64_t x, double raw, std::int64_t w, std::int64_t joinX) {
        if (raw == 0.0 || w == 0) {
            AddPulse(x, x, x, raw);
            return;
        }
        const std::size_t size = lists_.Main.size();
        const bool afterPulse = size >= 3 && lists_.Main[size - 2].Y < params_.Base;
        std::int64_t left = x - w;
        if (afterPulse) {
            left = joinX;
            MoveColumn(lists_, size - 1, static_cast<std::int32_t>(joinX));
        }
        AddPulse(left, x, x + w, raw);
    }

    void AddPulse(std::int64_t left, std::int64_t x, std::int64_t right, double raw) {
        Push(lists_, left, params_.Base);
        Push(lists_, x, RowOfRaw(raw));
        Push(lists_, right, params_.Base);
    }

    struct RowMemo {
        double Raw = std::numeric_limits<double>::quiet_NaN(); // equal to no reading
        std::int32_t Row = 0;
    };

    const TraceParams& params_;
    const RawConverter& convert_;
    const SampleSource& source_;
    const Blocks& b_;
    TraceLists& lists_;
    std::array<RowMemo, 1024> rowMemo_{};
};

int BuildSampledTrace(const TraceParams& params, const TimeScale& scale, int wordBytes, bool pulses,
                      const RawConverter& convert, TraceLists& lists) {
    lists.Clear();
    if (params.Sampling <= 0 || scale.MsPerStep <= 0 || scale.PixelsPerStep <= 0) {
        return TraceNone;
    }
    const Blocks blocks = BlocksOf(params, scale);
    const bool envelope = blocks.s < blocks.S && !(blocks.S > MaxStepsPerSample * blocks.s);
    const SampleSource source(params.File, wordBytes);
    if (!source.Opened()) {
        return TraceFailed;
    }
    TraceWriter writer(params, convert, source, blocks, lists);
    if (envelope) {
        return writer.Envelope(pulses);
    }
    if (pulses) {
        return writer.Pulses();
    }
    return writer.PlainSampling() ? writer.Plain() : writer.Stepping();
}

} // namespace

void TraceLists::Clear() {
    Upper.clear();
    Main.clear();
    Lower.clear();
}

std::int32_t RowOfValue(const TraceParams& params, double value) {
    const double rows = shell::RoundHalfEven(std::max(value, 0.0) / params.Unit);
    const auto clamped = static_cast<std::int64_t>(
        std::clamp(rows, static_cast<double>(-RowLimit), static_cast<double>(RowLimit)));
    return static_cast<std::int32_t>(params.Base - clamped);
}

int BuildTrace(const TraceParams& params, const TimeScale& scale, const RawConverter& convert,
               TraceLists& lists) {
    return BuildSampledTrace(params, scale, 2, logdata::IsDetonationChannel(params.Channel),
                             convert, lists);
}

int BuildFormulaTrace(const TraceParams& params, const TimeScale& scale, int decimalPoint,
                      TraceLists& lists) {
    const double divisor = std::pow(10.0, decimalPoint);
    const RawConverter convert = [divisor](double word) {
        return word / divisor;
    };
    return BuildSampledTrace(params, scale, 4, false, convert, lists);
}

int BuildLapTrace(const logdata::LapInfo& laps, const TraceParams& params, const TimeScale& scale,
                  TraceLists& lists) {
    lists.Clear();
    const std::vector<double>& marks = laps.LapTime;
    if (marks.size() <= 1) {
        return TraceNone;
    }
    const auto rowOfCount = [&params](std::size_t count) {
        return RowOfValue(params, static_cast<double>(count));
    };
    std::int32_t lastRow = rowOfCount(marks.size());
    bool started = false;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (!(marks[i] > params.Start)) {
            continue;
        }
        if (!started) {
            Push(lists, params.Left, rowOfCount(i));
            started = true;
        }
        lastRow = rowOfCount(i);
        const std::int64_t x =
            shell::RoundToInt64((marks[i] - params.Start) / scale.MsPerStep * scale.PixelsPerStep);
        if (x >= params.Width) {
            break;
        }
        Push(lists, x + params.Left, rowOfCount(i));
        lastRow = rowOfCount(i + 1);
        Push(lists, x + params.Left, lastRow);
    }
    if (!started) {
        Push(lists, params.Left, lastRow);
    }
    Push(lists, params.Left + params.Width, lastRow);
    return TracePlain;
}

} // namespace torvane::graph
