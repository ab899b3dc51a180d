#pragma once
// A driver that answers from a script and records every call, for tests of the logger windows
// and of the link policy. The logger's state, error and flags persist from call to call; a
// scripted reply may change them and gives the call's result and sense. An entry point with no
// reply queued answers with its default: success, a clean sense, the state unchanged (the file
// count answers with the number of files; a block read reports the file complete).

#include "logger/driver.h"

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

namespace torvane::logger {

// The entry points, named as core's driver names them.
// clang-format off
enum class Call {
    Open,
    Close,
#define TORVANE_SCRIPTED_CALL(Name, kind, Entry, ...) Entry,
    TORVANE_TLM_OPERATIONS(TORVANE_SCRIPTED_CALL, TORVANE_SCRIPTED_CALL, TORVANE_SCRIPTED_CALL)
#undef TORVANE_SCRIPTED_CALL
    GetTheSpecialData_raw,
};
// clang-format on
inline constexpr std::size_t CallCount = static_cast<std::size_t>(Call::GetTheSpecialData_raw) + 1;

std::string_view CallName(Call call);

struct Reply {
    std::int32_t Result = 0;
    std::uint8_t Sense = 0;
    // The logger moves to this state, error or flags and stays there.
    std::optional<std::uint8_t> State{};
    std::optional<std::uint8_t> Error{};
    std::optional<std::uint8_t> Flags{};
    // Transfer calls: the block's lngSize.
    std::int32_t BlockSize = 0;
    // The file count: answer with the number of files instead of `result`.
    bool AnswerFileCount = false;
};

// One call as the driver saw it; Argument is the call's small argument (the LoggingControl
// value, a TSInitialize kind, a ServiceModeCtrl code, the list's count), else 0.
struct RecordedCall {
    logger::Call Call;
    std::int64_t Argument = 0;
    bool operator==(const RecordedCall&) const = default;
};

class ScriptedDriver : public Driver {
public:
    ScriptedDriver();

    // Queues replies for the next calls of an entry point.
    void Script(Call call, std::initializer_list<Reply> replies);
    void ScriptRepeated(Call call, const Reply& reply, int times);
    // The reply once the queue of a call is empty.
    void SetDefault(Call call, const Reply& reply);

    // The calls in order, and their number by entry point.
    std::vector<Call> Sequence() const;
    int CountOf(Call call) const;
    // The LoggingControl values in order.
    std::vector<std::int64_t> LoggingControlValues() const;

    // The logger as it stands.
    std::uint8_t state = TLM_STATE_IDLE;
    std::uint8_t error = 0;
    std::uint8_t flags = 0;
    std::vector<TlmDownloadEntry> files;
    TlmSpecialData special{};
    TlmSettingData setting{};
    TlmSignalCondition signal{};
    TlmInitData initData{};
    TlmDetonationMap detonationMap{};

    std::vector<RecordedCall> calls;
    // What GetTheLogFile_start was given.
    std::optional<TlmDownloadEntry> startedEntry;
    std::filesystem::path startedFile;

    std::int32_t Open(TlmStatus& status) override;
    std::int32_t Close(TlmStatus& status) override;
    TORVANE_DRIVER_PLAIN_OVERRIDES
    std::int32_t GetTheDownloadList(TlmStatus& status,
                                    std::span<TlmDownloadEntry> entries) override;
    std::int32_t GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                     const std::filesystem::path& file,
                                     TlmTransferBlock& block) override;
    std::int32_t GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) override;
    std::int32_t GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) override;
    std::int32_t GetTheSpecialData_raw(TlmStatus& status, std::span<std::uint8_t> buffer) override;
    std::int32_t GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) override;

private:
    // Records the call, takes its reply, applies it to the logger and fills status.
    Reply Answer(Call call, TlmStatus& status, std::int64_t argument = 0);
    // A plain call: its integer is the recorded argument; then each record is exchanged.
    template <typename... Arguments>
    std::int32_t Play(Call call, TlmStatus& status, Arguments&... arguments);
    // A record the call sends becomes the logger's when the reply succeeds; a record it asks for
    // is filled from the logger.
    template <typename Argument> void Exchange(const Reply& reply, Argument& argument);
    // The logger's record of a type.
    template <typename Record> Record& Held();

    std::array<std::deque<Reply>, CallCount> queued_;
    std::array<Reply, CallCount> defaults_{};
};

} // namespace torvane::logger
