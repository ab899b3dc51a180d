// The link entry points of libtlm other than the transfer: each checks its arguments, finds the
// link named by the status and makes one exchange with the logger.

#include <algorithm>
#include <iterator>
#include <string>

#include "link/endpoint.h"
#include "link_call.h"

using torvane::link::MessageKind;
using torvane::tlm::CallLink;
using torvane::tlm::Into;
using torvane::tlm::Link;
using torvane::tlm::Request;

namespace {

// A request with no inputs and no outputs.
std::int32_t Command(TlmStatus* status, MessageKind kind) {
    return CallLink(status, true, [&](Link& link) { return Request(link, *status, kind, {}); });
}

// A request with no inputs that fills one record.
template <typename Record> std::int32_t Fetch(TlmStatus* status, MessageKind kind, Record* record) {
    return CallLink(status, record != nullptr,
                    [&](Link& link) { return Request(link, *status, kind, Into(*record)); });
}

// A request with inputs and no outputs.
template <typename... Inputs>
std::int32_t Send(TlmStatus* status, MessageKind kind, const Inputs&... inputs) {
    return CallLink(status, true,
                    [&](Link& link) { return Request(link, *status, kind, {}, inputs...); });
}

void EndLink(Link& link) {
    std::lock_guard lock(link.mutex);
    link.file.Finish();
    link.client.Close();
}

} // namespace

extern "C" TLM_API int32_t TLM_Open(TlmStatus* status) {
    if (status == nullptr) {
        return TLM_ERR_ARGUMENT;
    }
    try {
        // A status that still holds a link gives it up: the logger serves one link at a time,
        // and a forgotten one would keep it busy.
        if (const auto previous = torvane::tlm::RemoveLink(*status)) {
            EndLink(*previous);
        }
        std::fill(std::begin(status->bytDriver), std::end(status->bytDriver), std::uint8_t{0});
        std::string error;
        const auto endpoint = torvane::link::EndpointFromEnvironment(error);
        if (!endpoint) {
            return TLM_ERR_NOT_CONNECTED;
        }
        auto link = std::make_shared<Link>();
        const std::int32_t result =
            link->client.Open(*endpoint, torvane::link::ExchangeTimeoutFromEnvironment(), *status);
        if (result != TLM_OK) {
            return result;
        }
        if (!torvane::tlm::RegisterLink(link, *status)) {
            EndLink(*link);
            return TLM_ERR_OPEN_FAILED;
        }
        return TLM_OK;
    } catch (const std::exception&) {
        return TLM_ERR_OPEN_FAILED;
    }
}

extern "C" TLM_API int32_t TLM_Close(TlmStatus* status) {
    if (status == nullptr) {
        return TLM_ERR_ARGUMENT;
    }
    try {
        const auto link = torvane::tlm::RemoveLink(*status);
        if (link == nullptr) {
            return TLM_ERR_NOT_OPEN;
        }
        EndLink(*link);
        return TLM_OK;
    } catch (const std::exception&) {
        return TLM_ERR_PROTOCOL; // a lock that could not be taken; nothing else throws here
    }
}

extern "C" TLM_API int32_t TLM_Reset(TlmStatus* status) {
    return Command(status, MessageKind::Reset);
}

extern "C" TLM_API int32_t GetStatus(TlmStatus* status) {
    return Command(status, MessageKind::GetStatus);
}

extern "C" TLM_API int32_t GetTheNumberofFiles(TlmStatus* status) {
    return Command(status, MessageKind::FileCount);
}

extern "C" TLM_API int32_t GetTheDownloadList(TlmStatus* status, int16_t count,
                                              TlmDownloadEntry* entries) {
    const bool valid = count >= 0 && (count == 0 || entries != nullptr);
    return CallLink(status, valid, [&](Link& link) {
        const auto readEntries = [&](torvane::link::PayloadReader& reader) {
            std::uint16_t sent = 0;
            if (!reader.Get(sent) || sent != static_cast<std::uint16_t>(count)) {
                return false;
            }
            for (int16_t i = 0; i < count; ++i) {
                torvane::link::GetRecord(reader, entries[i]);
            }
            return reader.Finished();
        };
        return Request(link, *status, MessageKind::DownloadList, readEntries, count);
    });
}

extern "C" TLM_API int32_t InitializeLogFile(TlmStatus* status) {
    return Command(status, MessageKind::ClearFiles);
}

extern "C" TLM_API int32_t GetTheDetonationMap(TlmStatus* status, TlmDetonationMap* map) {
    return Fetch(status, MessageKind::DetonationMap, map);
}

extern "C" TLM_API int32_t TSInitialize(TlmStatus* status, int16_t kind) {
    return Send(status, MessageKind::InitializeSensor, kind);
}

extern "C" TLM_API int32_t GetTheInitData(TlmStatus* status, int32_t index, TlmInitData* data) {
    return CallLink(status, data != nullptr, [&](Link& link) {
        return Request(link, *status, MessageKind::InitData, Into(*data), index);
    });
}

extern "C" TLM_API int32_t SendTheSettingData(TlmStatus* status, const TlmSettingData* setting) {
    return CallLink(status, setting != nullptr, [&](Link& link) {
        return Request(link, *status, MessageKind::SendSetting, {}, *setting);
    });
}

extern "C" TLM_API int32_t GetTheSettingData(TlmStatus* status, TlmSettingData* setting) {
    return Fetch(status, MessageKind::ReadSetting, setting);
}

extern "C" TLM_API int32_t GetTheSignalCondition(TlmStatus* status, TlmSignalCondition* signal) {
    return Fetch(status, MessageKind::SignalCondition, signal);
}

extern "C" TLM_API int32_t GetTheSpecialData(TlmStatus* status, TlmSpecialData* special) {
    return Fetch(status, MessageKind::SpecialData, special);
}

extern "C" TLM_API int32_t GetTheSpecialData_raw(TlmStatus* status, uint8_t* buffer,
                                                 int32_t length) {
    const bool valid = buffer != nullptr && length == TLM_SPECIAL_DATA_SIZE;
    return CallLink(status, valid, [&](Link& link) {
        // The same request as GetTheSpecialData; the record is laid out as bytes in the order of
        // its fields, which is the order of the wire.
        TlmSpecialData special{};
        const std::int32_t result = Request(link, *status, MessageKind::SpecialData, Into(special));
        if (!link.client.LastExchangeAnswered()) {
            return result;
        }
        torvane::link::PayloadWriter bytes;
        torvane::link::PutRecord(bytes, special);
        std::copy(bytes.Bytes().begin(), bytes.Bytes().end(), buffer);
        return result;
    });
}

extern "C" TLM_API int32_t GetTheErrorInfo(TlmStatus* status, uint8_t* buffer, int32_t length) {
    const bool valid = buffer != nullptr && length == TLM_ERROR_INFO_SIZE;
    return CallLink(status, valid, [&](Link& link) {
        const auto readLog = [&](torvane::link::PayloadReader& reader) {
            const auto bytes = reader.GetBytes(TLM_ERROR_INFO_SIZE);
            if (!reader.Finished()) {
                return false;
            }
            std::copy(bytes.begin(), bytes.end(), buffer);
            return true;
        };
        return Request(link, *status, MessageKind::ErrorInfo, readLog);
    });
}

extern "C" TLM_API int32_t LoggingControl(TlmStatus* status, int32_t value) {
    return Send(status, MessageKind::LoggingControl, value);
}

extern "C" TLM_API int32_t ServiceModeCtrl(TlmStatus* status, int16_t code) {
    return Send(status, MessageKind::ServiceMode, code);
}
