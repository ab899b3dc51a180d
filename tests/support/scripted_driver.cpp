#include "support/scripted_driver.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace torvane::logger {
namespace {

std::size_t IndexOf(Call call) {
    return static_cast<std::size_t>(call);
}

template <typename Argument> std::int64_t SmallArgument(const Argument& argument) {
    if constexpr (std::is_integral_v<Argument>) {
        return argument;
    } else {
        return 0;
    }
}

} // namespace

std::string_view CallName(Call call) {
    // clang-format off
    static constexpr std::array<std::string_view, CallCount> names{
        "TLM_Open",
        "TLM_Close",
#define TORVANE_SCRIPTED_NAME(Name, kind, Entry, ...) #Entry,
        TORVANE_TLM_OPERATIONS(TORVANE_SCRIPTED_NAME, TORVANE_SCRIPTED_NAME, TORVANE_SCRIPTED_NAME)
#undef TORVANE_SCRIPTED_NAME
        "GetTheSpecialData_raw",
    };
    // clang-format on
    return names[IndexOf(call)];
}

ScriptedDriver::ScriptedDriver() {
    defaults_[IndexOf(Call::GetTheNumberofFiles)].AnswerFileCount = true;
    defaults_[IndexOf(Call::GetTheLogFile_reading)].Result = 1;
}

void ScriptedDriver::Script(Call call, std::initializer_list<Reply> replies) {
    auto& queue = queued_[IndexOf(call)];
    queue.insert(queue.end(), replies.begin(), replies.end());
}

void ScriptedDriver::ScriptRepeated(Call call, const Reply& reply, int times) {
    for (int i = 0; i < times; ++i) {
        queued_[IndexOf(call)].push_back(reply);
    }
}

void ScriptedDriver::SetDefault(Call call, const Reply& reply) {
    defaults_[IndexOf(call)] = reply;
}

std::vector<Call> ScriptedDriver::Sequence() const {
    std::vector<Call> sequence;
    for (const RecordedCall& recorded : calls) {
        sequence.push_back(recorded.Call);
    }
    return sequence;
}

int ScriptedDriver::CountOf(Call call) const {
    return static_cast<int>(std::count_if(calls.begin(), calls.end(), [call](const auto& recorded) {
        return recorded.Call == call;
    }));
}

std::vector<std::int64_t> ScriptedDriver::LoggingControlValues() const {
    std::vector<std::int64_t> values;
    for (const RecordedCall& recorded : calls) {
        if (recorded.Call == Call::LoggingControl) {
            values.push_back(recorded.Argument);
        }
    }
    return values;
}

Reply ScriptedDriver::Answer(Call call, TlmStatus& status, std::int64_t argument) {
    calls.push_back({call, argument});
    auto& queue = queued_[IndexOf(call)];
    Reply reply = defaults_[IndexOf(call)];
    if (!queue.empty()) {
        reply = queue.front();
        queue.pop_front();
    }
    state = reply.State.value_or(state);
    error = reply.Error.value_or(error);
    flags = reply.Flags.value_or(flags);
    status.bytSense = reply.Sense;
    status.bytState = state;
    status.bytError = error;
    status.bytFlags = flags;
    return reply;
}

template <typename Record> Record& ScriptedDriver::Held() {
    if constexpr (std::is_same_v<Record, TlmSettingData>) {
        return setting;
    } else if constexpr (std::is_same_v<Record, TlmSignalCondition>) {
        return signal;
    } else if constexpr (std::is_same_v<Record, TlmSpecialData>) {
        return special;
    } else if constexpr (std::is_same_v<Record, TlmInitData>) {
        return initData;
    } else {
        static_assert(std::is_same_v<Record, TlmDetonationMap>, "a record the logger holds");
        return detonationMap;
    }
}

template <typename Argument> void ScriptedDriver::Exchange(const Reply& reply, Argument& argument) {
    if constexpr (std::is_const_v<Argument>) {
        if (reply.Result == 0) {
            Held<std::remove_const_t<Argument>>() = argument;
        }
    } else if constexpr (!std::is_integral_v<Argument>) {
        argument = Held<Argument>();
    }
}

template <typename... Arguments>
std::int32_t ScriptedDriver::Play(Call call, TlmStatus& status, Arguments&... arguments) {
    // A plain call has at most one integer.
    const Reply reply = Answer(call, status, (std::int64_t{0} + ... + SmallArgument(arguments)));
    (Exchange(reply, arguments), ...);
    if (call == Call::InitializeLogFile && reply.Result == 0) {
        files.clear();
    }
    return reply.AnswerFileCount ? static_cast<std::int32_t>(files.size()) : reply.Result;
}

#define TORVANE_SCRIPTED_PLAY(Name, kind, Entry, Values, Records)                                  \
    std::int32_t ScriptedDriver::Entry(TORVANE_DRIVER_PARAMETERS(Values, Records)) {               \
        return Play(Call::Entry, TORVANE_DRIVER_ARGUMENTS(Values, Records));                       \
    }
TORVANE_TLM_OPERATIONS(TORVANE_SCRIPTED_PLAY, TORVANE_DRIVER_NOTHING, TORVANE_DRIVER_NOTHING)
#undef TORVANE_SCRIPTED_PLAY

std::int32_t ScriptedDriver::Open(TlmStatus& status) {
    return Answer(Call::Open, status).Result;
}

std::int32_t ScriptedDriver::Close(TlmStatus& status) {
    return Answer(Call::Close, status).Result;
}

std::int32_t ScriptedDriver::GetTheDownloadList(TlmStatus& status,
                                                std::span<TlmDownloadEntry> entries) {
    const Reply reply =
        Answer(Call::GetTheDownloadList, status, static_cast<std::int64_t>(entries.size()));
    std::copy_n(files.begin(), std::min(files.size(), entries.size()), entries.begin());
    return reply.Result;
}

std::int32_t ScriptedDriver::GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                                 const std::filesystem::path& file,
                                                 TlmTransferBlock& block) {
    const Reply reply = Answer(Call::GetTheLogFile_start, status, entry.intNumber);
    startedEntry = entry;
    startedFile = file;
    block = entry;
    block.lngSize = reply.BlockSize;
    return reply.Result;
}

std::int32_t ScriptedDriver::GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) {
    const Reply reply = Answer(Call::GetTheLogFile_reading, status);
    block.lngSize = reply.BlockSize;
    return reply.Result;
}

std::int32_t ScriptedDriver::GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) {
    const Reply reply = Answer(Call::GetTheLogFile_end, status);
    block.lngSize = reply.BlockSize;
    return reply.Result;
}

std::int32_t ScriptedDriver::GetTheSpecialData_raw(TlmStatus& status,
                                                   std::span<std::uint8_t> buffer) {
    std::memcpy(buffer.data(), &special, std::min(buffer.size(), sizeof special));
    return Answer(Call::GetTheSpecialData_raw, status, static_cast<std::int64_t>(buffer.size()))
        .Result;
}

std::int32_t ScriptedDriver::GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) {
    std::fill(buffer.begin(), buffer.end(), std::uint8_t{0});
    return Answer(Call::GetTheErrorInfo, status, static_cast<std::int64_t>(buffer.size())).Result;
}

} // namespace torvane::logger
