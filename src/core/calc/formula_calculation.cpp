#include "calc/formula_calculation.h"

#include "calc/formula_items.h"
#include "logdata/channels.h"
#include "logdata/values.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>
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

// Degrees in a radian, as the formula language has always used it in both directions.
constexpr double DegreesPerRadian = 57.2957795130823;
// Time steps per Step(): a few milliseconds of work between two turns of an event loop.
constexpr int TimeStepsPerStep = 4096;
constexpr std::size_t ScratchBufferBytes = 1 << 16;
constexpr std::array<double, MaxFormulaDecimals + 1> DecimalScale{1.0, 10.0, 100.0, 1000.0};

enum class Applied { Done, Incorrect, Failed };

} // namespace

enum class FormulaOperation : std::uint8_t {
    None, // not an operator entry
    Skip, // a "(" that the conversion left behind
    Add,
    Subtract,
    Multiply,
    Divide,
    Sin,
    Cos,
    Tan,
    Asin,
    Acos,
    Atan,
    Sqrt,
    Unknown,
};

namespace {

constexpr std::array<std::pair<std::string_view, FormulaOperation>, 12> OperationNames{{
    {"(", FormulaOperation::Skip},
    {"+", FormulaOperation::Add},
    {"-", FormulaOperation::Subtract},
    {"*", FormulaOperation::Multiply},
    {"/", FormulaOperation::Divide},
    {"sin", FormulaOperation::Sin},
    {"cos", FormulaOperation::Cos},
    {"tan", FormulaOperation::Tan},
    {"asin", FormulaOperation::Asin},
    {"acos", FormulaOperation::Acos},
    {"atan", FormulaOperation::Atan},
    {"sqrt", FormulaOperation::Sqrt},
}};

FormulaOperation OperationOf(std::string_view text) {
    const auto found = std::ranges::find(OperationNames, text,
                                         &std::pair<std::string_view, FormulaOperation>::first);
    return found == OperationNames.end() ? FormulaOperation::Unknown : found->second;
}

// Applies an operator or function to the stack. A "(" that the conversion left behind is
// passed over.
Applied ApplyOperator(FormulaOperation operation, std::vector<double>& stack,
                      shell::RunTimeError& failure) {
    using enum FormulaOperation;
    if (operation == Skip) {
        return Applied::Done;
    }
    const bool binary =
        operation == Add || operation == Subtract || operation == Multiply || operation == Divide;
    if (stack.size() < (binary ? 2u : 1u) || operation == Unknown || operation == None) {
        failure = StackError();
        return Applied::Failed;
    }
    const double x = stack.back();
    if (binary) {
        stack.pop_back();
    }
    const double a = stack.back();
    double result = 0.0;
    switch (operation) {
    case Add:
        result = a + x;
        break;
    case Subtract:
        result = a - x;
        break;
    case Multiply:
        result = a * x;
        break;
    case Divide:
        if (x == 0.0) {
            return Applied::Incorrect;
        }
        result = a / x;
        break;
    case Sin:
        result = std::sin(x / DegreesPerRadian);
        break;
    case Cos:
        result = std::cos(x / DegreesPerRadian);
        break;
    case Tan: {
        const double whole = std::round(x);
        if (whole == 90.0 || whole == 270.0) {
            return Applied::Incorrect;
        }
        result = std::tan(x / DegreesPerRadian);
        break;
    }
    case Atan:
        result = std::atan(x) * DegreesPerRadian;
        break;
    case Sqrt:
        if (x < 0.0) {
            return Applied::Incorrect;
        }
        result = std::sqrt(x);
        break;
    case Asin:
    case Acos: {
        if (x < -1.0 || x > 1.0) {
            return Applied::Incorrect;
        }
        const double root = std::sqrt(1.0 - x * x);
        if (root == 0.0) {
            failure = DivisionByZeroError();
            return Applied::Failed;
        }
        // The "asin" row has always taken the cosine here, and its results are kept so.
        result = operation == Asin
                     ? std::cos(x / root) * DegreesPerRadian
                     : (std::atan(-x / root) + 2.0 * std::atan(1.0)) * DegreesPerRadian;
        break;
    }
    default:
        break;
    }
    if (!std::isfinite(result)) {
        failure = OverflowError();
        return Applied::Failed;
    }
    stack.back() = result;
    return Applied::Done;
}

} // namespace

// One postfix entry's input. Only an item entry whose stream opens is live; every other entry
// (numbers, operators, LAP, a throttle without a span, a missing stream) counts as ended.
struct FormulaCalculation::ItemStream {
    bool Ended = true;
    int Channel = 0;
    int Sampling = 0;
    std::int64_t Length = 0;
    std::int64_t Position = 1; // 1-based byte position of the last pair read
    // T div Sampling and T mod Sampling of the current time step, carried forward by additions:
    // two divisions per item and step would cost more than the rest of the step.
    std::int64_t Instant = 0;
    std::int64_t Phase = 0;
    double Current = 0.0; // the sample at the last sampling instant
    double Next = 0.0;    // and the one after it
    std::unique_ptr<logdata::ForwardSamples> Samples;
};

// dummy.tmp, written from its start through a buffer, never truncated.
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
        buffer_.reserve(ScratchBufferBytes);
        return true;
    }

    bool Put(std::int32_t word) {
        const auto bits = static_cast<std::uint32_t>(word);
        const std::array<char, 4> bytes{
            static_cast<char>(bits & 0xFFu), static_cast<char>((bits >> 8) & 0xFFu),
            static_cast<char>((bits >> 16) & 0xFFu), static_cast<char>(bits >> 24)};
        buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
        return buffer_.size() < ScratchBufferBytes || Flush();
    }

    bool Flush() {
        std::size_t done = 0;
        while (done < buffer_.size()) {
            const ssize_t written = ::write(file_, buffer_.data() + done, buffer_.size() - done);
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
    std::vector<char> buffer_;
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
    for (int i = 0; i < TimeStepsPerStep && phase_ == Phase::Running; ++i) {
        TimeStep();
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
        stream.Samples = std::make_unique<logdata::ForwardSamples>(
            layers.StreamPath(source_.Layer, logdata::ChannelFile(token.Index)), 2);
        if (!stream.Samples->IsOpen()) {
            stream.Samples.reset();
            continue;
        }
        stream.Sampling = logdata::ChannelSampleTime(header, token.Index);
        stream.Length = stream.Samples->ByteLength();
        stream.Next = stream.Samples->Pair(0)[1];
        if (stream.Sampling > 0) {
            stream.Instant = time_ / stream.Sampling;
            stream.Phase = time_ % stream.Sampling;
        }
        stream.Ended = false;
        ++liveStreams_;
    }
    stack_.reserve(postfix_.size());
    scratch_ = std::make_unique<ScratchWriter>();
    if (!scratch_->Open(layers.TempDir / ScratchFileName)) {
        Fail(FileAccessError());
    }
}

bool FormulaCalculation::TimeStep() {
    const logdata::LogHeader& header =
        source_.Layers->Layer[static_cast<std::size_t>(source_.Layer)].Header;
    stack_.clear();
    for (std::size_t i = 0; i < postfix_.size(); ++i) {
        const FormulaToken& token = postfix_[i];
        if (token.Kind == TokenKind::Number) {
            stack_.push_back(token.Value);
            continue;
        }
        if (token.Kind == TokenKind::Operator) {
            shell::RunTimeError failure;
            const Applied applied = ApplyOperator(operations_[i], stack_, failure);
            if (applied == Applied::Incorrect) {
                Refuse();
                return false;
            }
            if (applied == Applied::Failed) {
                Fail(failure);
                return false;
            }
            continue;
        }
        ItemStream& stream = streams_[i];
        double value = 0.0;
        if (!stream.Ended && stream.Length <= stream.Position) {
            stream.Ended = true;
            --liveStreams_;
        }
        if (!stream.Ended) {
            if (stream.Sampling <= 0) {
                Fail(DivisionByZeroError());
                return false;
            }
            const std::int64_t q = stream.Phase;
            double reading = 0.0;
            if (q == 0) {
                const std::int64_t k = stream.Instant;
                stream.Position = k * 2 - 1;
                if (stream.Length <= stream.Position) {
                    Finish();
                    return false;
                }
                const auto pair = stream.Samples->Pair(k);
                stream.Current = pair[0];
                stream.Next = pair[1];
                reading = stream.Current;
            } else if (!logdata::IsDetonationChannel(stream.Channel)) {
                reading = stream.Current +
                          (stream.Next - stream.Current) * static_cast<double>(q) / stream.Sampling;
            }
            value = logdata::ConvertReading(header, stream.Channel, reading, *source_.Laf);
            if (value < 0.0) {
                value = 0.0;
            }
        }
        stack_.push_back(value);
    }
    if (stack_.empty()) {
        Fail(StackError());
        return false;
    }
    const double result = stack_.front();
    if (result > outcome_.Max) {
        outcome_.Max = result;
    }
    const double scaled =
        shell::RoundHalfEven(result * DecimalScale[static_cast<std::size_t>(decimals_)]);
    if (!(scaled >= std::numeric_limits<std::int32_t>::min() &&
          scaled <= std::numeric_limits<std::int32_t>::max())) {
        Fail(OverflowError());
        return false;
    }
    if (!scratch_->Put(static_cast<std::int32_t>(scaled))) {
        Fail(FileAccessError());
        return false;
    }
    ++outcome_.Entries;
    if (liveStreams_ == 0) {
        Finish();
        return false;
    }
    time_ += FormulaStepMs;
    for (ItemStream& stream : streams_) {
        if (!stream.Ended && stream.Sampling > 0) {
            for (stream.Phase += FormulaStepMs; stream.Phase >= stream.Sampling;
                 stream.Phase -= stream.Sampling) {
                ++stream.Instant;
            }
        }
    }
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
