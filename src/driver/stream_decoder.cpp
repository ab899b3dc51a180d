#include "stream_decoder.h"

#include <algorithm>
#include <cerrno>
#include <new>

#include <unistd.h>

#include <zstd.h>

#include "delta_coding.h"

namespace torvane::rlg {
namespace {

bool ReadAt(int file, std::uint64_t offset, std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t got = ::pread(file, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(got));
        offset += static_cast<std::uint64_t>(got);
    }
    return true;
}

} // namespace

void StreamDecoder::FreeContext::operator()(ZSTD_DCtx_s* context) const {
    ZSTD_freeDCtx(context);
}

StreamDecoder::StreamDecoder() {
    try {
        context_.reset(ZSTD_createDCtx());
        if (context_ && ZSTD_isError(ZSTD_DCtx_setParameter(context_.get(), ZSTD_d_windowLogMax,
                                                            format::ReaderMaxWindowLog))) {
            context_.reset();
        }
        input_.resize(ZSTD_DStreamInSize());
        // Even, so that a full buffer holds whole words.
        output_.resize(ZSTD_DStreamOutSize() & ~std::size_t{1});
    } catch (const std::bad_alloc&) {
        context_.reset();
    }
}

StreamDecoder::~StreamDecoder() = default;

DecodeResult StreamDecoder::Decode(int file, std::uint64_t offset, const format::StreamEntry& entry,
                                   const Sink& sink) {
    if (!IsReady() || ZSTD_isError(ZSTD_DCtx_reset(context_.get(), ZSTD_reset_session_only))) {
        return DecodeResult::Damaged;
    }
    std::uint64_t storedLeft = entry.StoredSize;
    const std::uint64_t expected = entry.DataBytes();
    std::uint64_t produced = 0;
    std::uint32_t storedCrc = 0;
    std::uint32_t dataCrc = 0;
    std::uint16_t previous = 0;
    // zstd may end a call in the middle of a word; that byte waits at the front of the buffer.
    std::size_t carry = 0;
    ZSTD_inBuffer input{input_.data(), 0, 0};
    for (bool frameEnded = false; !frameEnded;) {
        if (input.pos == input.size && storedLeft > 0) {
            const auto piece =
                static_cast<std::size_t>(std::min<std::uint64_t>(input_.size(), storedLeft));
            if (!ReadAt(file, offset, std::span(input_).first(piece))) {
                return DecodeResult::Damaged;
            }
            offset += piece;
            storedCrc = format::UpdateCrc32(storedCrc, std::span(input_).first(piece));
            storedLeft -= piece;
            input = {input_.data(), piece, 0};
        }
        ZSTD_outBuffer output{output_.data(), output_.size(), carry};
        const std::size_t hint = ZSTD_decompressStream(context_.get(), &output, &input);
        if (ZSTD_isError(hint)) {
            return DecodeResult::Damaged;
        }
        // Checked on every piece, so a frame that decodes to more than its entry says stops
        // before it can fill the disk.
        produced += output.pos - carry;
        if (produced > expected) {
            return DecodeResult::Damaged;
        }
        const std::size_t whole = output.pos & ~std::size_t{1};
        const auto words = std::span(output_).first(whole);
        DecodeDeltasInPlace(words, previous);
        dataCrc = format::UpdateCrc32(dataCrc, words);
        if (!words.empty() && !sink(words)) {
            return DecodeResult::WriteFailed;
        }
        carry = output.pos - whole;
        if (carry != 0) {
            output_[0] = output_[whole];
        }
        frameEnded = hint == 0;
        // With room left in the output, zstd has used up all its input; if there is no more,
        // the frame is cut short.
        if (!frameEnded && input.pos == input.size && storedLeft == 0 && output.pos < output.size) {
            return DecodeResult::Damaged;
        }
    }
    // One frame exactly filling the stored size, of exactly the announced length.
    if (input.pos != input.size || storedLeft != 0 || produced != expected ||
        storedCrc != entry.StoredCrc || dataCrc != entry.DataCrc) {
        return DecodeResult::Damaged;
    }
    return DecodeResult::Ok;
}

} // namespace torvane::rlg
