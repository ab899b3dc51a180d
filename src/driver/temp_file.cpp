#include "temp_file.h"

#include <cerrno>
#include <exception>
#include <random>
#include <string>

#include <unistd.h>

#include "rlg_container.h"

namespace torvane::rlg {
namespace {

std::string RandomSuffix() {
    thread_local std::mt19937 engine{std::random_device{}()};
    static constexpr char Digits[] = "0123456789abcdef";
    std::string suffix(8, '0');
    for (auto& c : suffix) {
        c = Digits[engine() % 16];
    }
    return suffix;
}

} // namespace

TempFile::TempFile(const std::filesystem::path& folder, std::string_view stem) {
    try {
        // "x" makes the create exclusive: never reuse or truncate a file someone else holds.
        for (int attempt = 0; attempt < 8 && file_ == nullptr; ++attempt) {
            std::string name(".");
            name.append(stem).append(".").append(RandomSuffix()).append(".part");
            path_ = folder / name;
            file_ = std::fopen(path_.c_str(), "wbx");
            if (file_ == nullptr && errno != EEXIST) {
                break;
            }
        }
        owned_ = file_ != nullptr;
    } catch (const std::exception&) {
        file_ = nullptr;
        owned_ = false;
    }
}

TempFile::TempFile(TempFile&& other) noexcept
    : path_(std::move(other.path_))
    , file_(other.file_)
    , owned_(other.owned_) {
    other.file_ = nullptr;
    other.owned_ = false;
}

TempFile::~TempFile() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
    if (owned_) {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
}

bool TempFile::Write(std::span<const std::uint8_t> bytes) {
    return file_ != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file_) == bytes.size();
}

bool TempFile::Close(bool durable) {
    if (file_ == nullptr) {
        return false;
    }
    bool ok = std::fflush(file_) == 0 && std::ferror(file_) == 0;
    if (ok && durable) {
        ok = ::fsync(::fileno(file_)) == 0;
    }
    ok = std::fclose(file_) == 0 && ok;
    file_ = nullptr;
    return ok;
}

bool TempFile::RenameTo(const std::filesystem::path& target) {
    if (file_ != nullptr || !owned_) {
        return false;
    }
    std::error_code error;
    std::filesystem::rename(path_, target, error);
    if (error) {
        return false;
    }
    owned_ = false;
    return true;
}

bool WriteFileAtomically(const std::filesystem::path& target, std::span<const std::uint8_t> bytes) {
    try {
        auto folder = target.parent_path();
        if (folder.empty()) {
            folder = ".";
        }
        TempFile file(folder, target.filename().native());
        return file.IsOpen() && file.Write(bytes) && file.Close(true) && file.RenameTo(target);
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace torvane::rlg
