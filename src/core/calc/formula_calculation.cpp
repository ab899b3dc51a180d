#include "calc/formula_calculation.h"

#include "calc/formula_items.h"
#include "calc/formula_lanes.h"
#include "logdata/channels.h"
#include "logdata/stream_reader.h"
#include "logdata/values.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace torvane::calc {
namespace fs = std::filesystem;
namespace {

// Time steps are worked out a block at a time, entry by entry over the whole block, so that
// each entry's kind and operation is looked at once a block, not once a step.
constexpr int BlockSteps = 256;
// Blocks per Step(): a few milliseconds of work between two turns of an event loop.
constexpr int BlocksPerStep = 16;
constexpr std::size_t ScratchBufferWords = 1 << 14; // 64 KiB
constexpr std::array<double, MaxFormulaDecimals + 1> DecimalScale{1.0, 10.0, 100.0, 1000.0};

} // namespace

// One postfix entry's input. Only an item entry whose stream opens is live; every other entry
// (numbers, operators, LAP, a throttle without a span, a missing stream) counts as ended.
struct FormulaCalculation::ItemStream {
    bool Ended = true;
    int Channel = 0;
    int Sampling = 0;
    std::int64_t LastInstant = 0; // the last sampling instant whose sample is whole
    // T div Sampling and T mod Sampling of the current time step, carried forward by additions:
    // two divisions per item and step would cost more than the rest of the step.
    std::int64_t Instant = 0;
    std::int64_t Phase = 0;
    double Current = 0.0; // the sample at the last sampling instant
    double Next = 0.0;    // and the one after it
    logdata::StreamReader Reader;
    std::span<const std::int16_t> Words; // the whole samples in place; empty if unmapped

    // Sample k as the reader gives it: 0 before the first, the cut word's low byte after the
    // last whole one.
    double Sample(std::int64_t k) {
        if (k >= 1 && k <= std::ssize(Words)) {
            return Words[static_cast<std::size_t>(k - 1)];
        }
        std::array<std::int16_t, 1> word{};
        Reader.ReadWords16(k, word);
        return word[0];
    }
    // The readings of the next steps, as many as fit in `out` before the stream ends; returns
    // how many. A stream sampled every step reads its words as they stand:
    std::size_t ReadEveryInstant(std::span<double> out);
    // any stream reads one sampling instant at a time, between them interpolated (a detonation
    // counter reads 0 there).
    std::size_t ReadInterpolated(std::span<double> out);
};

// dummy.tmp, written from its start through a buffer, never truncated. The words are the
// file's little-endian words as the host holds them.
static_assert(std::endian::native == std::endian::little);
class FormulaCalculation::ScratchWriter {
public:
    ~ScratchWriter() { Close(); }

    bool Open(const fs::path& path) {
        file_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666);
        struct stat status {};
        if (file_ < 0 || ::fstat(file_, &status) != 0 || !S_ISREG(status.st_mode)) {
            Close();
            return false;
        }
        buffer_.reserve(ScratchBufferWords);
        return true;
    }

    bool Append(std::span<const std::int32_t> words) {
        buffer_.insert(buffer_.end(), words.begin(), words.end());
        return buffer_.size() + BlockSteps <= ScratchBufferWords || Flush();
    }

    bool Flush() {
        const auto bytes = std::as_bytes(std::span(buffer_));
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t written = ::write(file_, bytes.data() + done, bytes.size() - done);
            if (written <= 0) {
                return false;
            }
            done += static_cast<std::size_t>(written);
        }
        buffer_.clear();
        return true;
    }

    // Flushes and closes; false when something could not be written.
    bool Close() {
        if (file_ < 0) {
            return true;
        }
        const bool flushed = Flush();
        const bool closed = ::close(file_) == 0;
        file_ = -1;
        return flushed && closed;
    }

private:
    int file_ = -1;
    std::vector<std::int32_t> buffer_;
};

FormulaCalculation::FormulaCalculation(std::vector<FormulaToken> postfix, FormulaSource source,
                                       std::string newItemName, int decimals,
                                       shell::MessageSink& sink)
    : postfix_(std::move(postfix))
    , source_(source)
    , newItemName_(std::move(newItemName))
    , decimals_(decimals)
    , sink_(sink) {
}

FormulaCalculation::~FormulaCalculation() = default;

bool FormulaCalculation::Step() {
    if (phase_ == Phase::Start) {
        Begin();
    }
    for (int i = 0; i < BlocksPerStep && phase_ == Phase::Running; ++i) {
        Block();
    }
    return phase_ == Phase::Running;
}

void FormulaCalculation::Begin() {
    phase_ = Phase::Running;
    if (decimals_ < 0 || decimals_ > MaxFormulaDecimals || source_.Layers == nullptr ||
        source_.Laf == nullptr) {
        Fail(StackError());
        return;
    }
    const logdata::LayerSet& layers = *source_.Layers;
    const logdata::LogHeader& header =
        layers.Layer.at(static_cast<std::size_t>(source_.Layer)).Header;
    streams_.resize(postfix_.size());
    operations_.resize(postfix_.size(), FormulaOperation::None);
    for (std::size_t i = 0; i < postfix_.size(); ++i) {
        const FormulaToken& token = postfix_[i];
        if (token.Kind == TokenKind::Operator) {
            operations_[i] = OperationOf(token.Operator);
        }
        if (token.Kind != TokenKind::Item || token.Index < 0 || token.Index >= FormulaLapIndex) {
            continue;
        }
        const bool noThrottleSpan =
            token.Index == logdata::TH && header.ThOpen() - header.ThClose() < 1;
        if (noThrottleSpan) {
            continue;
        }
        ItemStream& stream = streams_[i];
        stream.Channel = token.Index;
        if (!stream.Reader.Open(
                layers.StreamPath(source_.Layer, logdata::ChannelFile(token.Index)))) {
            continue;
        }
        stream.Words = stream.Reader.MappedWords16();
        stream.Sampling = logdata::ChannelSampleTime(header, token.Index);
        // Instant k reads the bytes 2k - 1 and 2k (from 1); the stream ends at the first
        // instant whose first byte is missing.
        stream.LastInstant = stream.Reader.ByteLength() / 2;
        stream.Next = stream.Sample(1);
        if (stream.Sampling > 0) {
            stream.Instant = time_ / stream.Sampling;
            stream.Phase = time_ % stream.Sampling;
        }
        // A stream without a whole sample has ended before the first step.
        stream.Ended = stream.LastInstant < 1;
        liveStreams_ += stream.Ended ? 0 : 1;
    }
    values_.assign(postfix_.size() + 1, std::vector<double>(BlockSteps));
    scaled_.resize(BlockSteps);
    words_.resize(BlockSteps);
    scratch_ = std::make_unique<ScratchWriter>();
    if (!scratch_->Open(layers.TempDir / ScratchFileName)) {
        Fail(FileAccessError());
    }
}

// Where a block of time steps stops: the first step at which the calculation ends, and why.
// Within a step, the entry met first in postfix order decides, as it would one step at a time.
struct FormulaCalculation::BlockEnd {
    enum class Reason { None, Finished, Incorrect, Failed };
    int Lane = 0;
    Reason Why = Reason::None;
    shell::RunTimeError Error;

    void At(int lane, Reason why, shell::RunTimeError error = {}) {
        if (lane < Lane) {
            Lane = lane;
            Why = why;
            Error = std::move(error);
        }
    }
};

std::size_t FormulaCalculation::ItemStream::ReadEveryInstant(std::span<double> out) {
    const std::int64_t left = std::max<std::int64_t>(LastInstant - Instant + 1, 0);
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(left, std::ssize(out)));
    std::copy_n(Words.begin() + (Instant - 1), count, out.begin());
    Instant += static_cast<std::int64_t>(count);
    return count;
}

std::size_t FormulaCalculation::ItemStream::ReadInterpolated(std::span<double> out) {
    const bool counter = logdata::IsDetonationChannel(Channel);
    for (std::size_t lane = 0; lane < out.size(); ++lane) {
        if (Phase == 0) {
            if (Instant > LastInstant) {
                return lane;
            }
            Current = Sample(Instant);
            Next = Sample(Instant + 1);
            out[lane] = Current;
        } else if (counter) {
            out[lane] = 0.0;
        } else {
            out[lane] = Current + (Next - Current) * static_cast<double>(Phase) / Sampling;
        }
        for (Phase += FormulaStepMs; Phase >= Sampling; Phase -= Sampling) {
            ++Instant;
        }
    }
    return out.size();
}

// The values of an item entry for the steps of a block.
void FormulaCalculation::ReadItem(ItemStream& stream, std::span<double> out, BlockEnd& end) {
    out = out.first(std::min(static_cast<std::size_t>(end.Lane), out.size()));
    if (stream.Ended) {
        std::ranges::fill(out, 0.0);
        return;
    }
    if (stream.Sampling <= 0) {
        end.At(0, BlockEnd::Reason::Failed, DivisionByZeroError());
        return;
    }
    // Stepped on by 5 ms from a multiple of 5 ms, a stream sampled every 5 ms is always at an
    // instant.
    const bool everyStep = stream.Sampling == FormulaStepMs && !stream.Words.empty();
    const std::size_t read =
        everyStep ? stream.ReadEveryInstant(out) : stream.ReadInterpolated(out);
    if (read < out.size()) {
        end.At(static_cast<int>(read), BlockEnd::Reason::Finished);
    }
    const std::span<double> values = out.first(read);
    logdata::ConvertReadings(source_.Layers->Layer[static_cast<std::size_t>(source_.Layer)].Header,
                             stream.Channel, values, *source_.Laf);
    for (double& value : values) {
        value = value < 0.0 ? 0.0 : value;
    }
}

bool FormulaCalculation::Block() {
    // Without a live input there is exactly one step.
    const int lanes = liveStreams_ == 0 ? 1 : BlockSteps;
    BlockEnd end{lanes, BlockEnd::Reason::None, {}};
    std::size_t depth = 0;
    for (std::size_t i = 0; i < postfix_.size() && end.Lane > 0; ++i) {
        const FormulaToken& token = postfix_[i];
        const auto limit = static_cast<std::size_t>(end.Lane);
        if (token.Kind == TokenKind::Number) {
            std::fill_n(values_[depth++].begin(), limit, token.Value);
            continue;
        }
        if (token.Kind == TokenKind::Item) {
            ReadItem(streams_[i], std::span(values_[depth++]).first(limit), end);
            continue;
        }
        const FormulaOperation operation = operations_[i];
        if (operation == FormulaOperation::Skip) {
            continue;
        }
        const bool binary = IsBinary(operation);
        if (depth < (binary ? 2u : 1u)) {
            end.At(0, BlockEnd::Reason::Failed, StackError());
            break;
        }
        const std::vector<double>& x = values_[depth - 1];
        std::vector<double>& a = values_[binary ? depth - 2 : depth - 1];
        const LaneStop stop =
            ApplyToLanes(operation, std::span(a).first(limit), std::span(x).first(limit));
        if (stop.Why != LaneStop::Reason::None) {
            end.At(static_cast<int>(stop.Lane),
                   stop.Why == LaneStop::Reason::Incorrect ? BlockEnd::Reason::Incorrect
                                                           : BlockEnd::Reason::Failed,
                   stop.Error);
        }
        depth -= binary ? 1 : 0;
    }
    if (depth == 0) {
        end.At(0, BlockEnd::Reason::Failed, StackError());
    }
    // A result that does not round into a word ends the block there; it still counts towards
    // the largest value, as the results before it do.
    const auto steps = static_cast<std::size_t>(end.Lane);
    const std::span<const double> results = std::span(values_[0]).first(steps);
    const double scale = DecimalScale[static_cast<std::size_t>(decimals_)];
    std::ranges::transform(results, scaled_.begin(),
                           [scale](double result) { return result * scale; });
    const std::span<const double> scaled = std::span(scaled_).first(steps);
    const std::size_t words =
        FirstLane(scaled, [](double value) { return !shell::RoundsIntoWord(value); });
    shell::RoundHalfEvenToWords(scaled.first(words), words_);
    if (words < steps) {
        end.At(static_cast<int>(words), BlockEnd::Reason::Failed, OverflowError());
    }
    outcome_.Max = Largest(results.first(std::min(words + 1, steps)), outcome_.Max);
    outcome_.Entries += static_cast<std::int64_t>(words);
    if (!scratch_->Append(std::span(words_).first(words))) {
        Fail(FileAccessError());
        return false;
    }
    switch (end.Why) {
    case BlockEnd::Reason::Finished:
        Finish();
        return false;
    case BlockEnd::Reason::Incorrect:
        Refuse();
        return false;
    case BlockEnd::Reason::Failed:
        Fail(end.Error);
        return false;
    case BlockEnd::Reason::None:
        break;
    }
    if (liveStreams_ == 0) {
        Finish();
        return false;
    }
    time_ += FormulaStepMs * static_cast<std::int64_t>(lanes);
    return true;
}

void FormulaCalculation::Finish() {
    streams_.clear();
    const bool written = scratch_->Close();
    scratch_.reset();
    const logdata::LayerSet& layers = *source_.Layers;
    const fs::path result = layers.StreamPath(source_.Layer, newItemName_);
    fs::path part = result;
    part += ".part";
    std::error_code error;
    const bool copied = written &&
                        fs::copy_file(layers.TempDir / ScratchFileName, part,
                                      fs::copy_options::overwrite_existing, error) &&
                        (fs::rename(part, result, error), !error);
    if (!copied) {
        fs::remove(part, error);
        Fail(FileAccessError());
        return;
    }
    outcome_.Result = FormulaResult::Success;
    phase_ = Phase::Done;
}

void FormulaCalculation::Fail(const shell::RunTimeError& error) {
    streams_.clear();
    scratch_.reset();
    outcome_.Result = FormulaResult::Failed;
    phase_ = Phase::Done;
    if (error.Number == OverflowError().Number) {
        shell::ShowMessage(sink_, error.Description, shell::buttons::Ok, shell::icons::Warning);
    } else {
        shell::ShowRunTimeError(sink_, error);
    }
}

void FormulaCalculation::Refuse() {
    streams_.clear();
    scratch_.reset();
    outcome_.Result = FormulaResult::Incorrect;
    phase_ = Phase::Done;
}

FormulaOutcome CalculateFormula(const std::vector<FormulaToken>& postfix, FormulaSource source,
                                const std::string& newItemName, int decimals,
                                shell::MessageSink& sink) {
    FormulaCalculation calculation(postfix, source, newItemName, decimals, sink);
    shell::RunToEnd(calculation);
    return calculation.Outcome();
}

double ScaleMaximum(double maxValue) {
    constexpr std::array<double, 6> Limits{10000.0, 1000.0, 100.0, 10.0, 1.0, 0.1};
    for (const double limit : Limits) {
        if (maxValue > limit) {
            return limit * 10.0;
        }
    }
    return 0.1;
}

} // namespace torvane::calc
