#pragma once
// Decodes one stream of a logging file: its zstd frame read in fixed-size pieces, the deltas
// undone, both CRCs and the length checked as the words go by. Memory is the same for a stream
// of ten words and one of ten million. The frame is read at its offset without moving the file's
// position, so decoders on threads of their own can share one open file.

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "rlg_format.h"

struct ZSTD_DCtx_s;

namespace torvane::rlg {

enum class DecodeResult { Ok, Damaged, WriteFailed };

class StreamDecoder {
public:
    // Receives the decoded little-endian words, an even number of bytes each time; false stops
    // the decoding with WriteFailed.
    using Sink = std::function<bool(std::span<const std::uint8_t>)>;

    StreamDecoder();
    ~StreamDecoder();
    StreamDecoder(const StreamDecoder&) = delete;
    StreamDecoder& operator=(const StreamDecoder&) = delete;

    bool IsReady() const { return context_ != nullptr && !input_.empty() && !output_.empty(); }
    // Reads exactly entry.StoredSize bytes of the file descriptor from `offset`. The sink may
    // have been given words before a Damaged result: whatever it wrote must be thrown away.
    DecodeResult Decode(int file, std::uint64_t offset, const format::StreamEntry& entry,
                        const Sink& sink);

private:
    struct FreeContext {
        void operator()(ZSTD_DCtx_s* context) const;
    };

    std::unique_ptr<ZSTD_DCtx_s, FreeContext> context_;
    std::vector<std::uint8_t> input_;
    std::vector<std::uint8_t> output_;
};

} // namespace torvane::rlg
