#include "shell/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace torvane::shell {
namespace fs = std::filesystem;
namespace {

class Descriptor {
public:
    explicit Descriptor(int fd)
        : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) {
            ::close(fd_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return fd_; }

private:
    int fd_;
};

std::optional<std::vector<std::uint8_t>> Errno(std::error_code& error) {
    error = std::error_code(errno, std::generic_category());
    return std::nullopt;
}

} // namespace

std::optional<std::vector<std::uint8_t>> ReadRegularFile(const fs::path& file, std::size_t maxBytes,
                                                         std::error_code& error) {
    error.clear();
    // Opened without waiting and judged by the descriptor itself: a name checked first and
    // opened after could meanwhile have become a FIFO, whose open would wait for a writer.
    const Descriptor fd(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (fd.Get() < 0) {
        return Errno(error);
    }
    struct stat status {};
    if (::fstat(fd.Get(), &status) != 0) {
        return Errno(error);
    }
    if (S_ISDIR(status.st_mode)) {
        error = std::make_error_code(std::errc::is_a_directory);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        error = std::make_error_code(std::errc::invalid_argument);
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes;
    constexpr std::size_t chunk = 64 * 1024;
    while (bytes.size() < maxBytes) {
        const std::size_t start = bytes.size();
        bytes.resize(start + std::min(chunk, maxBytes - start));
        const ssize_t count = ::read(fd.Get(), bytes.data() + start, bytes.size() - start);
        if (count < 0 && errno == EINTR) {
            bytes.resize(start);
            continue;
        }
        if (count < 0) {
            return Errno(error);
        }
        bytes.resize(start + static_cast<std::size_t>(count));
        if (count == 0) {
            break;
        }
    }
    return bytes;
}

} // namespace torvane::shell
