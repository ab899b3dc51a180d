#pragma once
// The evaluation of a formula's postfix form over the deployed streams of a layer: one result
// every 5 ms, written as a signed 32-bit word scaled by 10 to the power of the decimals, until
// the shortest input ends. The words go to TMP/dummy.tmp first, which is neither truncated nor
// removed (a shorter run after a longer one keeps its old tail, and the copy takes it along),
// and then to the item's own stream file. Every input is read forward in blocks, so memory
// stays the same whatever the run's length.

#include "calc/formula_syntax.h"
#include "logdata/layer.h"
#include "logger/laf_table.h"
#include "shell/message_sink.h"
#include "shell/stepped_activity.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace torvane::calc {

inline constexpr int FormulaStepMs = 5;
inline constexpr int MaxFormulaDecimals = 3;
inline constexpr const char* ScratchFileName = "dummy.tmp";

enum class FormulaResult {
    Success = 0,
    Incorrect = 1, // the formula cannot be evaluated for the data (x/0, sqrt of a negative...)
    Failed = 2,    // a run-time failure, already reported to the operator
};

struct FormulaOutcome {
    FormulaResult Result = FormulaResult::Success;
    int Sampling = FormulaStepMs;
    double Max = 0.0;         // the largest result, never below 0
    std::int64_t Entries = 0; // words written by this calculation
};

// The layer whose streams a formula reads, and where its result goes.
struct FormulaSource {
    const logdata::LayerSet* Layers = nullptr;
    int Layer = 0;
    const logger::LafTable* Laf = nullptr;
};

// What an operator entry does, decided once when the calculation begins.
enum class FormulaOperation : std::uint8_t;

// One calculation cut into steps of many time steps each; Outcome() holds the result once
// Step() has returned false.
class FormulaCalculation : public shell::SteppedActivity {
public:
    FormulaCalculation(std::vector<FormulaToken> postfix, FormulaSource source,
                       std::string newItemName, int decimals, shell::MessageSink& sink);
    ~FormulaCalculation() override;
    FormulaCalculation(const FormulaCalculation&) = delete;
    FormulaCalculation& operator=(const FormulaCalculation&) = delete;

    bool Step() override;
    const FormulaOutcome& Outcome() const { return outcome_; }

private:
    struct ItemStream;
    class ScratchWriter;
    enum class Phase { Start, Running, Done };
    // One block of time steps: false when the calculation has ended, its result stored.
    bool Block();
    struct BlockEnd;
    void ReadItem(ItemStream& stream, std::span<double> out, BlockEnd& end);
    void Begin();
    void Finish();
    void Fail(const shell::RunTimeError& error);
    void Refuse();

    std::vector<FormulaToken> postfix_;
    FormulaSource source_;
    std::string newItemName_;
    int decimals_;
    shell::MessageSink& sink_;

    Phase phase_ = Phase::Start;
    std::vector<ItemStream> streams_;
    std::vector<FormulaOperation> operations_; // one per postfix entry
    int liveStreams_ = 0;
    std::unique_ptr<ScratchWriter> scratch_;
    // The stack of the postfix walk, each entry the values of a block's steps.
    std::vector<std::vector<double>> values_;
    std::vector<double> scaled_;      // a block's results, scaled to their decimals
    std::vector<std::int32_t> words_; // and rounded
    std::int64_t time_ = FormulaStepMs;
    FormulaOutcome outcome_;
};

// Runs the whole calculation in one go.
FormulaOutcome CalculateFormula(const std::vector<FormulaToken>& postfix, FormulaSource source,
                                const std::string& newItemName, int decimals,
                                shell::MessageSink& sink);

// The scale maximum of a computed item from its largest value: 100000, 10000 ... down to 0.1.
double ScaleMaximum(double maxValue);

} // namespace torvane::calc
