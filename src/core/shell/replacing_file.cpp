#include "shell/replacing_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <string>

namespace torvane::shell {
namespace fs = std::filesystem;
namespace {

std::string RandomSuffix() {
    thread_local std::mt19937 engine{std::random_device{}()};
    static constexpr char Digits[] = "0123456789abcdef";
    std::string suffix(8, '0');
    for (char& c : suffix) {
        c = Digits[engine() % 16];
    }
    return suffix;
}

} // namespace

ReplacingFile::ReplacingFile(const fs::path& target)
    : target_(target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    for (int attempt = 0; attempt < 8 && !created_; ++attempt) {
        std::string name(".");
        name.append(target.filename().string()).append(".").append(RandomSuffix()).append(".part");
        path_ = folder / name;
        const int fd = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            ::close(fd);
            created_ = true;
        } else if (errno != EEXIST) {
            break;
        }
    }
    if (!created_) {
        error_ = std::error_code(errno, std::generic_category());
    }
}

ReplacingFile::~ReplacingFile() {
    Remove();
}

bool ReplacingFile::Commit() {
    if (!created_) {
        return false;
    }
    fs::rename(path_, target_, error_);
    if (error_) {
        Remove();
        return false;
    }
    created_ = false;
    return true;
}

void ReplacingFile::Remove() {
    if (created_) {
        std::error_code ignored;
        fs::remove(path_, ignored);
        created_ = false;
    }
}

bool ReplaceFileWith(const fs::path& target, std::span<const std::uint8_t> bytes,
                     std::error_code& error) {
    ReplacingFile file(target);
    if (!file.Created()) {
        error = file.Error();
        return false;
    }
    const int fd = ::open(file.Path().c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0) {
        error = std::error_code(errno, std::generic_category());
        return false;
    }
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            error = std::error_code(errno, std::generic_category());
            ::close(fd);
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    if (::close(fd) != 0) {
        error = std::error_code(errno, std::generic_category());
        return false;
    }
    if (!file.Commit()) {
        error = file.Error();
        return false;
    }
    return true;
}

} // namespace torvane::shell
