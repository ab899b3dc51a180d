#include "client.h"

#include "messages.h"

namespace torvane::link {
namespace {

// Copies the logger's status bytes of an answer; bytDriver stays as the caller holds it.
bool GetStatusBytes(PayloadReader& reader, TlmStatus& status) {
    TlmStatus received = status;
    if (!GetRecord(reader, received)) {
        return false;
    }
    status = received;
    return true;
}

} // namespace

std::int32_t Client::Open(const Endpoint& endpoint, std::chrono::milliseconds timeout,
                          TlmStatus& status) {
    timeout_ = timeout;
    const Deadline deadline = Clock::now() + timeout_;
    std::string error;
    Socket socket = Connect(endpoint, deadline, error);
    if (!socket.IsOpen()) {
        return TLM_ERR_NOT_CONNECTED;
    }
    channel_ = Channel(std::move(socket));
    PayloadWriter hello;
    PutAll(hello, ProtocolMagic, ProtocolVersion);
    const Frame request{MessageKind::Hello, false, ++lastId_, std::move(hello.Bytes())};
    Frame answer;
    const FrameStatus sent = channel_.Send(request, deadline);
    const FrameStatus received =
        sent == FrameStatus::Ok ? channel_.Receive(answer, deadline) : sent;
    if (received == FrameStatus::TimedOut) {
        return Break(TLM_ERR_TIMEOUT);
    }
    if (received != FrameStatus::Ok || !answer.Answer || answer.Kind != MessageKind::Hello ||
        answer.Id != request.Id) {
        return Break(TLM_ERR_OPEN_FAILED);
    }
    PayloadReader in(answer.Payload);
    std::uint8_t admission = 0;
    std::uint16_t serverVersion = 0;
    std::int32_t result = 0;
    TlmStatus receivedStatus = status;
    if (!in.Get(admission) || !in.Get(serverVersion) || !in.Get(result) ||
        !GetRecord(in, receivedStatus) || !in.Finished() ||
        admission != static_cast<std::uint8_t>(Admission::Accepted)) {
        return Break(TLM_ERR_OPEN_FAILED);
    }
    status = receivedStatus;
    return result == TLM_OK ? TLM_OK : Break(result);
}

std::int32_t Client::Exchange(MessageKind kind, PayloadWriter& request, TlmStatus& status,
                              const OutputReader& readOutputs) {
    answered_ = false;
    if (broken_ || !channel_.IsOpen()) {
        return TLM_ERR_LINK_LOST;
    }
    const Deadline deadline = Clock::now() + timeout_;
    const std::uint32_t id = ++lastId_;
    switch (channel_.Send(Frame{kind, false, id, std::move(request.Bytes())}, deadline)) {
    case FrameStatus::Ok:
        break;
    case FrameStatus::TimedOut:
        return TLM_ERR_TIMEOUT; // nothing of it went out
    case FrameStatus::Lost:
    case FrameStatus::Malformed:
        return Break(TLM_ERR_LINK_LOST);
    }
    for (;;) {
        Frame answer;
        switch (channel_.Receive(answer, deadline)) {
        case FrameStatus::Ok:
            break;
        case FrameStatus::TimedOut:
            return TLM_ERR_TIMEOUT;
        case FrameStatus::Lost:
            return Break(TLM_ERR_LINK_LOST);
        case FrameStatus::Malformed:
            return Break(TLM_ERR_PROTOCOL);
        }
        if (!answer.Answer) {
            return Break(TLM_ERR_PROTOCOL);
        }
        if (answer.Id != id) {
            continue; // the late answer of a request that timed out
        }
        if (answer.Kind != kind) {
            return Break(TLM_ERR_PROTOCOL);
        }
        PayloadReader in(answer.Payload);
        std::int32_t result = 0;
        TlmStatus received = status;
        if (!in.Get(result) || !GetStatusBytes(in, received)) {
            return Break(TLM_ERR_PROTOCOL);
        }
        if (readOutputs ? !readOutputs(in) : !in.Finished()) {
            return Break(TLM_ERR_PROTOCOL);
        }
        status = received;
        answered_ = true;
        return result;
    }
}

void Client::Close() {
    if (!broken_ && channel_.IsOpen()) {
        // Waiting for the answer means the logger has ended this link before the next one can
        // knock; otherwise a quick reopen could find it still busy with this one.
        PayloadWriter request;
        TlmStatus ignored{};
        Exchange(MessageKind::Close, request, ignored);
    }
    channel_.Close();
}

std::int32_t Client::Break(std::int32_t result) {
    broken_ = true;
    channel_.Close();
    return result;
}

} // namespace torvane::link
