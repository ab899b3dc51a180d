#include "shell/replacing_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <random>
#include <string>
#include <vector>

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

struct Unfinished {
    std::mutex Lock;
    std::vector<fs::path> Files;
};

Unfinished& UnfinishedFiles() {
    static Unfinished unfinished;
    return unfinished;
}

void Track(const fs::path& path) {
    const std::lock_guard lock(UnfinishedFiles().Lock);
    UnfinishedFiles().Files.push_back(path);
}

void Untrack(const fs::path& path) {
    const std::lock_guard lock(UnfinishedFiles().Lock);
    std::erase(UnfinishedFiles().Files, path);
}

} // namespace

void RemoveUnfinishedReplacements() {
    const std::lock_guard lock(UnfinishedFiles().Lock);
    for (const fs::path& path : UnfinishedFiles().Files) {
        ::unlink(path.c_str());
    }
    UnfinishedFiles().Files.clear();
}

ReplacingFile::ReplacingFile(const fs::path& target)
    : target_(target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    int failure = 0;
    for (int attempt = 0; attempt < 8 && !created_; ++attempt) {
        std::string name(".");
        name.append(target.filename().string()).append(".").append(RandomSuffix()).append(".part");
        path_ = folder / name;
        // Tracked before it exists, so that a signal in between still finds it.
        Track(path_);
        const int fd = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        failure = errno;
        if (fd >= 0) {
            ::close(fd);
            created_ = true;
            break;
        }
        Untrack(path_);
        if (failure != EEXIST) {
            break;
        }
    }
    if (!created_) {
        error_ = std::error_code(failure, std::generic_category());
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
    Untrack(path_);
    created_ = false;
    return true;
}

void ReplacingFile::Remove() {
    if (created_) {
        std::error_code ignored;
        fs::remove(path_, ignored);
        Untrack(path_);
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
