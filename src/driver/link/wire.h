#pragma once
// The frames of the link. Every frame is a 10-byte header and a payload:
//
//   offset 0  u32  payload length (at most MaxPayload)
//   offset 4  u16  message kind; answers carry AnswerBit
//   offset 6  u32  request id; an answer repeats the id of its request
//
// all little-endian. Payload fields are written one at a time by PayloadWriter and read back by
// PayloadReader, so nothing on the wire depends on how a compiler lays out a struct.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "byte_order.h"
#include "operations.h"

namespace torvane::link {

inline constexpr std::uint32_t ProtocolMagic = 0x4b4c5654; // "TVLK" on the wire
inline constexpr std::uint16_t ProtocolVersion = 1;
inline constexpr std::size_t FrameHeaderSize = 10;
// Large enough for any record and a generous transfer block; a length above it ends the link
// before anything is allocated.
inline constexpr std::uint32_t MaxPayload = 1u << 20;

inline constexpr std::uint16_t AnswerBit = 0x8000;

// What the server says to a hello, before the device's own result.
enum class Admission : std::uint8_t {
    Accepted = 0,
    Busy = 1,           // another client holds the link
    VersionRefused = 2, // the client speaks a protocol version the server does not
};

struct Frame {
    MessageKind Kind = MessageKind::Hello;
    bool Answer = false;
    std::uint32_t Id = 0;
    std::vector<std::uint8_t> Payload;
};

// Appends the frame's bytes to out. The payload must not exceed MaxPayload.
void AppendFrame(const Frame& frame, std::vector<std::uint8_t>& out);

enum class FrameDecode { Complete, NeedMore, Malformed };
// Takes the first frame off the front of buffer if it is all there. Malformed: a length over
// MaxPayload or an unknown kind, found from the header alone.
FrameDecode TakeFrame(std::vector<std::uint8_t>& buffer, Frame& frame);

class PayloadWriter {
public:
    template <std::integral Value> void Put(Value value) {
        const std::size_t offset = bytes_.size();
        bytes_.resize(offset + sizeof(Value));
        PutLittleEndian(bytes_, offset, value);
    }
    template <std::integral Value, std::size_t N> void Put(const Value (&values)[N]) {
        for (const Value value : values) {
            Put(value);
        }
    }
    void PutBytes(std::span<const std::uint8_t> bytes);

    std::vector<std::uint8_t>& Bytes() { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

// Reads fields in order; a read past the end fails and every later one fails too, so a caller
// can read a whole record and check Ok() once.
class PayloadReader {
public:
    explicit PayloadReader(std::span<const std::uint8_t> bytes)
        : bytes_(bytes) {}

    template <std::integral Value> bool Get(Value& value) {
        if (!Has(sizeof(Value))) {
            return false;
        }
        value = GetLittleEndian<Value>(bytes_, offset_);
        offset_ += sizeof(Value);
        return true;
    }
    template <std::integral Value, std::size_t N> bool Get(Value (&values)[N]) {
        for (Value& value : values) {
            Get(value);
        }
        return ok_;
    }
    // The next count bytes, or an empty span (and failure) if fewer are left.
    std::span<const std::uint8_t> GetBytes(std::size_t count);

    bool Ok() const { return ok_; }
    // True when every byte was read and nothing failed: payloads have no optional tails.
    bool Finished() const { return ok_ && offset_ == bytes_.size(); }

private:
    bool Has(std::size_t count) {
        ok_ = ok_ && bytes_.size() - offset_ >= count;
        return ok_;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t offset_ = 0;
    bool ok_ = true;
};

} // namespace torvane::link
