#include <algorithm>
#include <charconv>
#include <cstdio>

#include <exception>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <optional>
#include <sys/stat.h>
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

int Check(const format::Head& head, std::FILE* file, StreamDecoder& decoder) {
    const StreamDecoder::Sink discard = [](std::span<const std::uint8_t>) {
        return true;
    };
    for (const auto& stream : head.Streams) {
        if (decoder.Decode(file, stream, discard) != DecodeResult::Ok) {
            return TLM_DECOMP_ACCESS_ERROR;
        }
    }
    return TLM_DECOMP_OK;
}

// Two passes, so that a damaged stream late in the file costs nothing: every stream is decoded
// to a temporary file first, and only when all of them are complete and verified are they
// renamed to their real names.
int WriteStreams(const format::Head& head, std::FILE* file, StreamDecoder& decoder,
                 const fs::path& logFile, const fs::path& tempDir, int fileNumber,
                 DeployStats& stats) {
    std::vector<TempFile> written;
    std::vector<fs::path> targets;
    written.reserve(head.Streams.size());
    targets.reserve(head.Streams.size());
    std::int64_t bytesWritten = 0;
    for (const auto& stream : head.Streams) {
        targets.push_back(tempDir / StreamFileName(stream.Name, fileNumber));
        std::error_code ignored;
        // A logging file kept in the deploy folder under a stream's name must not be replaced.
        if (fs::equivalent(logFile, targets.back(), ignored)) {
            return TLM_DECOMP_WRITE_FAILED;
        }
        TempFile& temp = written.emplace_back(tempDir, targets.back().filename().native());
        if (!temp.IsOpen()) {
            return TLM_DECOMP_WRITE_FAILED;
        }
        const auto result = decoder.Decode(file, stream, [&](std::span<const std::uint8_t> words) {
            bytesWritten += static_cast<std::int64_t>(words.size());
            return temp.Write(words);
        });
        if (result == DecodeResult::Damaged) {
            return TLM_DECOMP_ACCESS_ERROR;
        }
        if (result == DecodeResult::WriteFailed || !temp.Close(false)) {
            return TLM_DECOMP_WRITE_FAILED;
        }
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
    stats.BytesWritten = bytesWritten;
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
    StreamDecoder decoder;
    if (!head || !decoder.IsReady()) {
        return TLM_DECOMP_ACCESS_ERROR;
    }
    if (HoldsNoData(*head)) {
        const int checked = Check(*head, file.get(), decoder);
        return checked == TLM_DECOMP_OK ? TLM_DECOMP_NO_DATA : checked;
    }
    if (!fs::is_directory(tempDir, error)) {
        return TLM_DECOMP_WRITE_FAILED;
    }
    const int result =
        WriteStreams(*head, file.get(), decoder, logFile, tempDir, fileNumber, stats);
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
