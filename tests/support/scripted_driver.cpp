#include "support/scripted_driver.h"

#include <algorithm>
#include <cstring>

namespace torvane::logger {
namespace {

std::size_t IndexOf(Call call) {
    return static_cast<std::size_t>(call);
}

} // namespace

std::string_view CallName(Call call) {
    static constexpr std::array<std::string_view, CallCount> names{"TLM_Open",
                                                                   "TLM_Close",
                                                                   "TLM_Reset",
                                                                   "GetStatus",
                                                                   "GetTheNumberofFiles",
                                                                   "GetTheDownloadList",
                                                                   "GetTheLogFile_start",
                                                                   "GetTheLogFile_reading",
                                                                   "GetTheLogFile_end",
                                                                   "InitializeLogFile",
                                                                   "GetTheDetonationMap",
                                                                   "TSInitialize",
                                                                   "GetTheInitData",
                                                                   "SendTheSettingData",
                                                                   "GetTheSettingData",
                                                                   "GetTheSignalCondition",
                                                                   "GetTheSpecialData",
                                                                   "GetTheSpecialData_raw",
                                                                   "GetTheErrorInfo",
                                                                   "LoggingControl",
                                                                   "ServiceModeCtrl"};
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

std::int32_t ScriptedDriver::Open(TlmStatus& status) {
    return Answer(Call::Open, status).Result;
}

std::int32_t ScriptedDriver::Close(TlmStatus& status) {
    return Answer(Call::Close, status).Result;
}

std::int32_t ScriptedDriver::Reset(TlmStatus& status) {
    return Answer(Call::Reset, status).Result;
}

std::int32_t ScriptedDriver::GetStatus(TlmStatus& status) {
    return Answer(Call::GetStatus, status).Result;
}

std::int32_t ScriptedDriver::GetTheNumberofFiles(TlmStatus& status) {
    const Reply reply = Answer(Call::GetTheNumberofFiles, status);
    return reply.AnswerFileCount ? static_cast<std::int32_t>(files.size()) : reply.Result;
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

std::int32_t ScriptedDriver::InitializeLogFile(TlmStatus& status) {
    const Reply reply = Answer(Call::InitializeLogFile, status);
    if (reply.Result == 0) {
        files.clear();
    }
    return reply.Result;
}

std::int32_t ScriptedDriver::GetTheDetonationMap(TlmStatus& status, TlmDetonationMap& map) {
    map = detonationMap;
    return Answer(Call::GetTheDetonationMap, status).Result;
}

std::int32_t ScriptedDriver::TSInitialize(TlmStatus& status, std::int16_t kind) {
    return Answer(Call::TSInitialize, status, kind).Result;
}

std::int32_t ScriptedDriver::GetTheInitData(TlmStatus& status, std::int32_t index,
                                            TlmInitData& data) {
    data = initData;
    return Answer(Call::GetTheInitData, status, index).Result;
}

std::int32_t ScriptedDriver::SendTheSettingData(TlmStatus& status, const TlmSettingData& sent) {
    const Reply reply = Answer(Call::SendTheSettingData, status);
    if (reply.Result == 0) {
        setting = sent;
    }
    return reply.Result;
}

std::int32_t ScriptedDriver::GetTheSettingData(TlmStatus& status, TlmSettingData& read) {
    read = setting;
    return Answer(Call::GetTheSettingData, status).Result;
}

std::int32_t ScriptedDriver::GetTheSignalCondition(TlmStatus& status, TlmSignalCondition& read) {
    read = signal;
    return Answer(Call::GetTheSignalCondition, status).Result;
}

std::int32_t ScriptedDriver::GetTheSpecialData(TlmStatus& status, TlmSpecialData& read) {
    read = special;
    return Answer(Call::GetTheSpecialData, status).Result;
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

std::int32_t ScriptedDriver::LoggingControl(TlmStatus& status, std::int32_t value) {
    return Answer(Call::LoggingControl, status, value).Result;
}

std::int32_t ScriptedDriver::ServiceModeCtrl(TlmStatus& status, std::int16_t code) {
    return Answer(Call::ServiceModeCtrl, status, code).Result;
}

} // namespace torvane::logger
