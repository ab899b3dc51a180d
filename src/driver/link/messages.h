#pragma once
// The payloads of the link's messages, shared by both ends. A request carries only its inputs;
// every answer but the hello's starts with the common prefix (i32 result, then the logger's eight
// status bytes) and goes on with the outputs of its kind. docs/logger-protocol.md has the table.

#include <concepts>
#include <cstdint>

#include "records.h"
#include "wire.h"

namespace torvane::link {

// The first transfer block that does not fit in a frame with its prefix and records.
inline constexpr std::uint32_t MaxTransferBlock = MaxPayload - 64;

// Hello request: u32 ProtocolMagic, u16 ProtocolVersion. Hello answer: u8 Admission, u16 the
// server's version, then the common prefix with the device's result of Open.

// Writes each value (an integer or a record of tlm.h) in order.
template <typename... Values> void PutAll(PayloadWriter& writer, const Values&... values) {
    [[maybe_unused]] const auto put = [&writer](const auto& value) {
        if constexpr (std::integral<std::remove_cvref_t<decltype(value)>>) {
            writer.Put(value);
        } else {
            PutRecord(writer, value);
        }
    };
    (put(values), ...);
}

// Reads each value in order; true only if they were all there and nothing follows them.
template <typename... Values> bool GetAll(PayloadReader& reader, Values&... values) {
    [[maybe_unused]] const auto get = [&reader](auto& value) {
        if constexpr (std::integral<std::remove_cvref_t<decltype(value)>>) {
            reader.Get(value);
        } else {
            GetRecord(reader, value);
        }
    };
    (get(values), ...);
    return reader.Finished();
}

} // namespace torvane::link
