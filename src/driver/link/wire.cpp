#include "wire.h"

namespace torvane::link {

void AppendFrame(const Frame& frame, std::vector<std::uint8_t>& out) {
    PayloadWriter header;
    header.Put(static_cast<std::uint32_t>(frame.Payload.size()));
    header.Put(static_cast<std::uint16_t>(static_cast<std::uint16_t>(frame.Kind) |
                                          (frame.Answer ? AnswerBit : 0)));
    header.Put(frame.Id);
    out.insert(out.end(), header.Bytes().begin(), header.Bytes().end());
    out.insert(out.end(), frame.Payload.begin(), frame.Payload.end());
}

FrameDecode TakeFrame(std::vector<std::uint8_t>& buffer, Frame& frame) {
    if (buffer.size() < FrameHeaderSize) {
        return FrameDecode::NeedMore;
    }
    PayloadReader header(buffer);
    std::uint32_t length = 0;
    std::uint16_t kind = 0;
    std::uint32_t id = 0;
    header.Get(length);
    header.Get(kind);
    header.Get(id);
    const auto bareKind = static_cast<std::uint16_t>(kind & ~AnswerBit);
    if (length > MaxPayload || bareKind == 0 || bareKind > LastMessageKind) {
        return FrameDecode::Malformed;
    }
    if (buffer.size() - FrameHeaderSize < length) {
        return FrameDecode::NeedMore;
    }
    frame.Kind = static_cast<MessageKind>(bareKind);
    frame.Answer = (kind & AnswerBit) != 0;
    frame.Id = id;
    const auto payloadBegin = buffer.begin() + FrameHeaderSize;
    frame.Payload.assign(payloadBegin, payloadBegin + length);
    buffer.erase(buffer.begin(), payloadBegin + length);
    return FrameDecode::Complete;
}

void PayloadWriter::PutBytes(std::span<const std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

std::span<const std::uint8_t> PayloadReader::GetBytes(std::size_t count) {
    if (!Has(count)) {
        return {};
    }
    const auto bytes = bytes_.subspan(offset_, count);
    offset_ += count;
    return bytes;
}

} // namespace torvane::link
