#include "channel.h"

namespace torvane::link {
namespace {

constexpr std::size_t ReceiveChunk = 64 * 1024;

FrameStatus FromIo(IoStatus status) {
    switch (status) {
    case IoStatus::Ok:
        return FrameStatus::Ok;
    case IoStatus::TimedOut:
        return FrameStatus::TimedOut;
    case IoStatus::Lost:
        break;
    }
    return FrameStatus::Lost;
}

} // namespace

void Channel::Close() {
    socket_.Close();
    inbox_.clear();
}

FrameStatus Channel::Send(const Frame& frame, Deadline deadline) {
    std::vector<std::uint8_t> bytes;
    AppendFrame(frame, bytes);
    return FromIo(socket_.SendAll(bytes, deadline));
}

FrameStatus Channel::Receive(Frame& frame, Deadline deadline) {
    for (;;) {
        switch (TakeFrame(inbox_, frame)) {
        case FrameDecode::Complete:
            return FrameStatus::Ok;
        case FrameDecode::Malformed:
            return FrameStatus::Malformed;
        case FrameDecode::NeedMore:
            break;
        }
        const IoStatus status = socket_.ReceiveSome(inbox_, ReceiveChunk, deadline);
        if (status != IoStatus::Ok) {
            return FromIo(status);
        }
    }
}

} // namespace torvane::link
