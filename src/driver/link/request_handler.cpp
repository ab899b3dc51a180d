#include "request_handler.h"

#include <tuple>
#include <vector>

#include "messages.h"

namespace torvane::link {
namespace {

void PutPrefix(PayloadWriter& answer, std::int32_t result, const TlmStatus& status) {
    PutAll(answer, result, status);
}

// A plain operation: the request's values, the device's call, its result, status and records.
template <typename Operation, typename Call>
bool AnswerPlain(DeviceCalls& device, Call call, TlmStatus& status, PayloadReader& in,
                 PayloadWriter& answer) {
    typename Operation::Request values{};
    if (!std::apply([&in](auto&... value) { return GetAll(in, value...); }, values)) {
        return false;
    }
    typename Operation::Answer records{};
    const std::int32_t result = std::apply(
        [&](auto&... value) {
            return std::apply(
                [&](auto&... record) { return (device.*call)(status, value..., record...); },
                records);
        },
        values);
    PutPrefix(answer, result, status);
    std::apply([&answer](const auto&... record) { PutAll(answer, record...); }, records);
    return true;
}

// The count asked for sizes the list; the answer repeats it before the entries.
bool AnswerDownloadList(DeviceCalls& device, TlmStatus& status, PayloadReader& in,
                        PayloadWriter& answer) {
    std::int16_t count = 0;
    if (!GetAll(in, count) || count < 0) {
        return false;
    }
    std::vector<TlmDownloadEntry> entries(static_cast<std::size_t>(count));
    PutPrefix(answer, device.DownloadList(status, entries), status);
    answer.Put(static_cast<std::uint16_t>(count));
    for (const TlmDownloadEntry& entry : entries) {
        PutAll(answer, entry);
    }
    return true;
}

bool AnswerTransferRead(DeviceCalls& device, TlmStatus& status, PayloadReader& in,
                        PayloadWriter& answer) {
    TlmTransferBlock block{};
    if (!GetAll(in, block)) {
        return false;
    }
    std::vector<std::uint8_t> bytes;
    std::int32_t result = device.TransferRead(status, block, bytes);
    if (bytes.size() > MaxTransferBlock) {
        // The device's block is its own choice, but it must fit in a frame.
        result = TLM_ERR_PROTOCOL;
        bytes.clear();
    }
    PutPrefix(answer, result, status);
    PutAll(answer, block, static_cast<std::uint32_t>(bytes.size()));
    answer.PutBytes(bytes);
    return true;
}

bool AnswerErrorInfo(DeviceCalls& device, TlmStatus& status, PayloadReader& in,
                     PayloadWriter& answer) {
    if (!GetAll(in)) {
        return false;
    }
    std::vector<std::uint8_t> buffer(TLM_ERROR_INFO_SIZE);
    PutPrefix(answer, device.ErrorInfo(status, buffer), status);
    answer.PutBytes(buffer);
    return true;
}

} // namespace

bool AnswerRequest(DeviceCalls& device, TlmStatus& status, const Frame& request,
                   PayloadWriter& answer) {
    PayloadReader in(request.Payload);
    switch (request.Kind) {
#define TORVANE_ANSWER_PLAIN(Name, ...)                                                            \
    case MessageKind::Name:                                                                        \
        return AnswerPlain<op::Name>(device, &DeviceCalls::Name, status, in, answer);
#define TORVANE_ANSWER_SPECIAL(Name, ...)                                                          \
    case MessageKind::Name:                                                                        \
        return Answer##Name(device, status, in, answer);
        TORVANE_LINK_OPERATIONS(TORVANE_ANSWER_PLAIN, TORVANE_ANSWER_SPECIAL)
#undef TORVANE_ANSWER_PLAIN
#undef TORVANE_ANSWER_SPECIAL
    case MessageKind::Hello:
    case MessageKind::Close:
        break;
    }
    return false;
}

} // namespace torvane::link
