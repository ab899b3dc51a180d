// The link entry points of libtlm other than the transfer: each checks its arguments, finds the
// link named by the status and makes one exchange with the logger.

#include <algorithm>
#include <iterator>
#include <string>

#include "link/endpoint.h"
#include "link_call.h"

namespace op = torvane::link::op;
using torvane::tlm::CallLink;
using torvane::tlm::Link;
using torvane::tlm::Request;
using torvane::tlm::RequestPlain;

namespace {

// A plain operation whose answer records go to the caller's memory: every pointer must be given.
template <typename Operation, typename... Records>
std::int32_t Call(TlmStatus* status, const typename Operation::Request& values,
                  Records*... records) {
    return CallLink(status, ((records != nullptr) && ...), [&](Link& link) {
        return RequestPlain<Operation>(link, *status, values, *records...);
    });
}

void EndLink(Link& link) {
    std::lock_guard lock(link.Mutex);
    link.File.Finish();
    link.Client.Close();
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
            link->Client.Open(*endpoint, torvane::link::ExchangeTimeoutFromEnvironment(), *status);
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
    return Call<op::Reset>(status, {});
}

extern "C" TLM_API int32_t GetStatus(TlmStatus* status) {
    return Call<op::GetStatus>(status, {});
}

extern "C" TLM_API int32_t GetTheNumberofFiles(TlmStatus* status) {
    return Call<op::FileCount>(status, {});
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
        return Request<op::DownloadList>(link, *status, readEntries, count);
    });
}

extern "C" TLM_API int32_t InitializeLogFile(TlmStatus* status) {
    return Call<op::ClearFiles>(status, {});
}

extern "C" TLM_API int32_t GetTheDetonationMap(TlmStatus* status, TlmDetonationMap* map) {
    return Call<op::DetonationMap>(status, {}, map);
}

extern "C" TLM_API int32_t TSInitialize(TlmStatus* status, int16_t kind) {
    return Call<op::InitializeSensor>(status, {kind});
}

extern "C" TLM_API int32_t GetTheInitData(TlmStatus* status, int32_t index, TlmInitData* data) {
    return Call<op::InitData>(status, {index}, data);
}

extern "C" TLM_API int32_t SendTheSettingData(TlmStatus* status, const TlmSettingData* setting) {
    return CallLink(status, setting != nullptr, [&](Link& link) {
        return RequestPlain<op::SendSetting>(link, *status, {*setting});
    });
}

extern "C" TLM_API int32_t GetTheSettingData(TlmStatus* status, TlmSettingData* setting) {
    return Call<op::ReadSetting>(status, {}, setting);
}

extern "C" TLM_API int32_t GetTheSignalCondition(TlmStatus* status, TlmSignalCondition* signal) {
    return Call<op::SignalCondition>(status, {}, signal);
}

extern "C" TLM_API int32_t GetTheSpecialData(TlmStatus* status, TlmSpecialData* special) {
    return Call<op::SpecialData>(status, {}, special);
}

extern "C" TLM_API int32_t GetTheSpecialData_raw(TlmStatus* status, uint8_t* buffer,
                                                 int32_t length) {
    const bool valid = buffer != nullptr && length == TLM_SPECIAL_DATA_SIZE;
    return CallLink(status, valid, [&](Link& link) {
        // The same request as GetTheSpecialData; the record is laid out as bytes in the order of
        // its fields, which is the order of the wire.
        TlmSpecialData special{};
        const std::int32_t result = RequestPlain<op::SpecialData>(link, *status, {}, special);
        if (!link.Client.LastExchangeAnswered()) {
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
        return Request<op::ErrorInfo>(link, *status, readLog);
    });
}

extern "C" TLM_API int32_t LoggingControl(TlmStatus* status, int32_t value) {
    return Call<op::LoggingControl>(status, {value});
}

extern "C" TLM_API int32_t ServiceModeCtrl(TlmStatus* status, int16_t code) {
    return Call<op::ServiceMode>(status, {code});
}
