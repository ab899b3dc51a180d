#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdio>

#include <exception>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "rlg_container.h"
#include "rlg_format.h"
#include "stream_decoder.h"
#include "temp_file.h"

namespace torvane::rlg {
namespace {

namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using InputFile = std::unique_ptr<std::FILE, CloseFile>;

bool ReadExactly(std::FILE* file, std::span<std::uint8_t> bytes) {
    return std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

// Reads no more of the file than the fixed head promises and the file holds.
std::optional<format::Head> ReadHead(std::FILE* file, std::uint64_t fileSize) {
    if (fileSize < format::HeadSize(0)) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> head(format::FixedHeadSize);
    if (!ReadExactly(file, head)) {
        return std::nullopt;
    }
    const auto count = format::ReadStreamCount(head);
    if (!count || fileSize < format::HeadSize(*count)) {
        return std::nullopt;
    }
    head.resize(format::HeadSize(*count));
    if (!ReadExactly(file, std::span(head).subspan(format::FixedHeadSize))) {
        return std::nullopt;
    }
    return format::DecodeHead(head, fileSize);
}

bool HoldsNoData(const format::Head& head) {
    return std::all_of(head.Streams.begin(), head.Streams.end(),
                       [](const format::StreamEntry& stream) { return stream.SampleCount == 0; });
}

// Where each stream's frame starts: right after the head, one after the other.
std::vector<std::uint64_t> FrameOffsets(const format::Head& head) {
    std::vector<std::uint64_t> offsets;
    offsets.reserve(head.Streams.size());
    std::uint64_t offset = format::HeadSize(head.Streams.size());
    for (const auto& stream : head.Streams) {
        offsets.push_back(offset);
        offset += stream.StoredSize;
    }
    return offsets;
}

int Check(const format::Head& head, int file, StreamDecoder& decoder) {
    const StreamDecoder::Sink discard = [](std::span<const std::uint8_t>) {
        return true;
    };
    const auto offsets = FrameOffsets(head);
    for (std::size_t i = 0; i < head.Streams.size(); ++i) {
        if (decoder.Decode(file, offsets[i], head.Streams[i], discard) != DecodeResult::Ok) {
            return TLM_DECOMP_ACCESS_ERROR;
        }
    }
    return TLM_DECOMP_OK;
}

// The streams of a file, decoded each into its temporary file by a few threads that take them
// in the file's order. A thread takes no new stream once one has failed; every stream before the
// failed one has been taken by then, so the first failure in the file's order is found, as one
// thread going through them would find it.
class StreamJobs {
public:
    // More threads than this win nothing: the disk and the memory bus are shared.
    static constexpr unsigned MaxThreads = 4;

    StreamJobs(const format::Head& head, int file, std::vector<TempFile>& outputs)
        : head_(head)
        , file_(file)
        , offsets_(FrameOffsets(head))
        , outputs_(outputs)
        , results_(head.Streams.size(), TLM_DECOMP_ACCESS_ERROR) {}

    // The result of the first stream that failed, or TLM_DECOMP_OK.
    int Run() {
        const unsigned wanted =
            std::min({MaxThreads, std::max(std::thread::hardware_concurrency(), 1U),
                      static_cast<unsigned>(head_.Streams.size())});
        std::vector<std::jthread> helpers;
        try {
            for (unsigned i = 1; i < wanted; ++i) {
                helpers.emplace_back([this] { TakeStreams(); });
            }
        } catch (const std::exception&) {
            // Fewer threads, or only this one, do the same work.
        }
        TakeStreams();
        helpers.clear();
        for (const int result : results_) {
            if (result != TLM_DECOMP_OK) {
                return result;
            }
        }
        return TLM_DECOMP_OK;
    }
    std::int64_t BytesWritten() const { return bytesWritten_; }

private:
    void TakeStreams() noexcept {
        try {
            StreamDecoder decoder;
            while (!failed_) {
                const std::size_t stream = next_++;
                if (stream >= head_.Streams.size()) {
                    return;
                }
                results_[stream] = DecodeStream(decoder, stream);
                if (results_[stream] != TLM_DECOMP_OK) {
                    failed_ = true;
                }
            }
        } catch (const std::exception&) {
            // Out of memory: the streams this thread did not finish keep their failed result.
            failed_ = true;
        }
    }

    int DecodeStream(StreamDecoder& decoder, std::size_t stream) {
        if (!decoder.IsReady()) {
            return TLM_DECOMP_ACCESS_ERROR;
        }
        TempFile& output = outputs_[stream];
        std::int64_t bytes = 0;
        const auto result = decoder.Decode(file_, offsets_[stream], head_.Streams[stream],
                                           [&](std::span<const std::uint8_t> words) {
                                               bytes += static_cast<std::int64_t>(words.size());
                                               return output.Write(words);
                                           });
        if (result == DecodeResult::Damaged) {
            return TLM_DECOMP_ACCESS_ERROR;
        }
        if (result == DecodeResult::WriteFailed || !output.Close(false)) {
            return TLM_DECOMP_WRITE_FAILED;
        }
        bytesWritten_ += bytes;
        return TLM_DECOMP_OK;
    }

    const format::Head& head_;
    const int file_;
    const std::vector<std::uint64_t> offsets_;
    std::vector<TempFile>& outputs_;
    // One slot a stream, written only by the thread that took it and read after all are done.
    std::vector<int> results_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<bool> failed_ = false;
    std::atomic<std::int64_t> bytesWritten_ = 0;
};

// Two passes, so that a damaged stream late in the file costs nothing: every stream is decoded
// to a temporary file first, and only when all of them are complete and verified are they
// renamed to their real names.
int WriteStreams(const format::Head& head, int file, const fs::path& logFile,
                 const fs::path& tempDir, int fileNumber, DeployStats& stats) {
    std::vector<TempFile> written;
    std::vector<fs::path> targets;
    written.reserve(head.Streams.size());
    targets.reserve(head.Streams.size());
    for (const auto& stream : head.Streams) {
        targets.push_back(tempDir / StreamFileName(stream.Name, fileNumber));
        std::error_code ignored;
        // A logging file kept in the deploy folder under a stream's name must not be replaced.
        if (fs::equivalent(logFile, targets.back(), ignored)) {
            return TLM_DECOMP_WRITE_FAILED;
        }
        if (!written.emplace_back(tempDir, targets.back().filename().native()).IsOpen()) {
            return TLM_DECOMP_WRITE_FAILED;
        }
    }
    StreamJobs jobs(head, file, written);
    if (const int result = jobs.Run(); result != TLM_DECOMP_OK) {
        return result;
    }
    for (std::size_t i = 0; i < written.size(); ++i) {
        if (!written[i].RenameTo(targets[i])) {
            std::error_code ignored;
            for (std::size_t done = 0; done < i; ++done) {
                fs::remove(targets[done], ignored);
            }
            return TLM_DECOMP_WRITE_FAILED;
        }
    }
    stats.BytesWritten = jobs.BytesWritten();
    stats.StreamCount = static_cast<std::int32_t>(written.size());
    return TLM_DECOMP_OK;
}

int DeployChecked(const fs::path& logFile, const fs::path& tempDir, int fileNumber,
                  HeaderBytes& header, DeployStats& stats) {
    std::error_code error;
    const auto status = fs::status(logFile, error);
    if (status.type() == fs::file_type::not_found) {
        return TLM_DECOMP_NOT_FOUND;
    }
    if (error || status.type() != fs::file_type::regular) {
        return TLM_DECOMP_ACCESS_ERROR;
    }
    // Judged again by the open descriptor: the name could have become a FIFO since, and an
    // open that waits for its writer would never return.
    const int fd = ::open(logFile.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat opened {};
    if (fd < 0 || ::fstat(fd, &opened) != 0 || !S_ISREG(opened.st_mode)) {
        if (fd >= 0) {
            ::close(fd);
        }
        return TLM_DECOMP_ACCESS_ERROR;
    }
    const InputFile file(::fdopen(fd, "rb"));
    if (!file) {
        ::close(fd);
        return TLM_DECOMP_ACCESS_ERROR;
    }
    const auto fileSize = static_cast<std::uint64_t>(opened.st_size);
    if (fileSize == 0) {
        return TLM_DECOMP_NO_DATA;
    }
    const auto head = ReadHead(file.get(), fileSize);
    if (!head) {
        return TLM_DECOMP_ACCESS_ERROR;
    }
    if (HoldsNoData(*head)) {
        StreamDecoder decoder;
        const int checked = decoder.IsReady() ? Check(*head, fd, decoder) : TLM_DECOMP_ACCESS_ERROR;
        return checked == TLM_DECOMP_OK ? TLM_DECOMP_NO_DATA : checked;
    }
    if (!fs::is_directory(tempDir, error)) {
        return TLM_DECOMP_WRITE_FAILED;
    }
    const int result = WriteStreams(*head, fd, logFile, tempDir, fileNumber, stats);
    if (result == TLM_DECOMP_OK) {
        header = head->Header;
    }
    return result;
}

} // namespace

std::string StreamFileName(std::string_view streamName, int fileNumber) {
    // Like a "000" number format: at least three digits, the sign in front of them.
    const auto magnitude =
        fileNumber < 0 ? -static_cast<long long>(fileNumber) : static_cast<long long>(fileNumber);
    std::array<char, std::numeric_limits<long long>::digits10 + 2> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), magnitude).ptr;
    const std::string_view number(digits.data(), static_cast<std::size_t>(end - digits.data()));
    std::string name(streamName);
    name += '-';
    if (fileNumber < 0) {
        name += '-';
    }
    name.append(number.size() < 3 ? 3 - number.size() : 0, '0');
    name += number;
    name += ".tmp";
    return name;
}

int Deploy(const fs::path& logFile, const fs::path& tempDir, int fileNumber, HeaderBytes& header,
           DeployStats& stats) {
    stats = {};
    try {
        return DeployChecked(logFile, tempDir, fileNumber, header, stats);
    } catch (const std::exception&) {
        // Out of memory, mostly; the temporary files are gone by the time we get here.
        stats = {};
        return TLM_DECOMP_ACCESS_ERROR;
    }
}

} // namespace torvane::rlg
