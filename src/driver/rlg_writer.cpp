#include <algorithm>
#include <array>
#include <new>

#include <zstd.h>

#include "delta_coding.h"
#include "rlg_container.h"
#include "rlg_format.h"

namespace torvane::rlg {
namespace {

constexpr int MinLevel = 1;
constexpr int MaxLevel = 9;
// Samples coded per compression call; the chunk lives on the stack.
constexpr std::size_t ChunkSamples = 8192;

struct FreeCompressionContext {
    void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
};
using CompressionContext = std::unique_ptr<ZSTD_CCtx, FreeCompressionContext>;

CompressionContext CreateContext(int level) {
    CompressionContext context(ZSTD_createCCtx());
    if (!context ||
        ZSTD_isError(ZSTD_CCtx_setParameter(context.get(), ZSTD_c_compressionLevel, level)) ||
        ZSTD_isError(
            ZSTD_CCtx_setParameter(context.get(), ZSTD_c_windowLog, format::WriterWindowLog))) {
        return nullptr;
    }
    return context;
}

} // namespace

struct RlgWriter::Stream {
    std::string Name;
    CompressionContext Context; // created on the first Append, freed when the frame is ended
    std::vector<std::uint8_t> Stored;
    std::uint64_t SampleCount = 0;
    std::uint16_t Previous = 0;
    std::uint32_t DataCrc = 0;
};

RlgWriter::RlgWriter(std::span<const std::uint8_t, HeaderSize> header,
                     std::vector<std::string> streamNames, int level)
    : level_(std::clamp(level, MinLevel, MaxLevel)) {
    std::copy(header.begin(), header.end(), header_.begin());
    try {
        failed_ =
            streamNames.size() > format::MaxStreams ||
            !std::all_of(streamNames.begin(), streamNames.end(),
                         [](const std::string& name) { return format::IsValidStreamName(name); }) ||
            format::HasDuplicateNames(streamNames);
        for (auto& name : streamNames) {
            streams_.push_back(std::make_unique<Stream>());
            streams_.back()->Name = std::move(name);
        }
        scratch_.resize(ZSTD_CStreamOutSize());
    } catch (const std::bad_alloc&) {
        failed_ = true;
    }
}

RlgWriter::~RlgWriter() = default;

bool RlgWriter::Compress(Stream& stream, std::span<const std::uint8_t> bytes, bool end) {
    if (!stream.Context && !(stream.Context = CreateContext(level_))) {
        return false;
    }
    ZSTD_inBuffer input{bytes.data(), bytes.size(), 0};
    for (;;) {
        ZSTD_outBuffer output{scratch_.data(), scratch_.size(), 0};
        const std::size_t left = ZSTD_compressStream2(stream.Context.get(), &output, &input,
                                                      end ? ZSTD_e_end : ZSTD_e_continue);
        if (ZSTD_isError(left)) {
            return false;
        }
        stream.Stored.insert(stream.Stored.end(), scratch_.begin(),
                             scratch_.begin() + static_cast<std::ptrdiff_t>(output.pos));
        if (end ? left == 0 : input.pos == input.size) {
            return true;
        }
    }
}

void RlgWriter::Append(std::size_t stream, std::span<const std::int16_t> samples) {
    if (failed_ || finished_) {
        return;
    }
    if (stream >= streams_.size() || samples.size() > format::MaxStreamBytes / format::WordSize16 -
                                                          streams_[stream]->SampleCount) {
        failed_ = true;
        return;
    }
    Stream& target = *streams_[stream];
    try {
        std::array<std::uint8_t, ChunkSamples * format::WordSize16> chunk;
        while (!samples.empty()) {
            const auto part = samples.first(std::min(samples.size(), ChunkSamples));
            const auto bytes = std::span(chunk).first(part.size() * format::WordSize16);
            SamplesToLittleEndian(part, bytes);
            target.DataCrc = format::UpdateCrc32(target.DataCrc, bytes);
            EncodeDeltasInPlace(bytes, target.Previous);
            if (!Compress(target, bytes, false)) {
                failed_ = true;
                return;
            }
            target.SampleCount += part.size();
            samples = samples.subspan(part.size());
        }
    } catch (const std::bad_alloc&) {
        failed_ = true;
    }
}

std::vector<std::uint8_t> RlgWriter::Finish() {
    const bool usable = !failed_ && !finished_;
    finished_ = true;
    if (!usable) {
        return {};
    }
    try {
        std::vector<format::StreamEntry> entries;
        std::uint64_t totalBytes = 0;
        for (auto& stream : streams_) {
            if (!Compress(*stream, {}, true)) {
                return {};
            }
            stream->Context.reset();
            format::StreamEntry entry;
            entry.Name = stream->Name;
            entry.SampleCount = stream->SampleCount;
            entry.StoredSize = stream->Stored.size();
            entry.StoredCrc = format::UpdateCrc32(0, stream->Stored);
            entry.DataCrc = stream->DataCrc;
            totalBytes += entry.DataBytes();
            entries.push_back(std::move(entry));
        }
        if (totalBytes > format::MaxTotalBytes) {
            return {};
        }
        auto file = format::EncodeHead(header_, entries);
        for (auto& stream : streams_) {
            file.insert(file.end(), stream->Stored.begin(), stream->Stored.end());
            std::vector<std::uint8_t>().swap(stream->Stored);
        }
        return file;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

} // namespace torvane::rlg
