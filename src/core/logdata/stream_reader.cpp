#include "logdata/stream_reader.h"

#include <algorithm>
#include <bit>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace torvane::logdata {
namespace {

// The words of a stream are little-endian; they are used in place, as the host reads them.
static_assert(std::endian::native == std::endian::little,
              "stream words are read in place on little-endian hosts only");

template <typename Word> std::span<const Word> WordsOf(const void* map, std::int64_t length) {
    if (map == nullptr) {
        return {};
    }
    return {static_cast<const Word*>(map), static_cast<std::size_t>(length) / sizeof(Word)};
}

} // namespace

StreamReader::~StreamReader() {
    Close();
}

StreamReader::StreamReader(StreamReader&& other) noexcept
    : file_(std::exchange(other.file_, -1))
    , length_(std::exchange(other.length_, 0))
    , map_(std::exchange(other.map_, nullptr)) {
}

StreamReader& StreamReader::operator=(StreamReader&& other) noexcept {
    if (this != &other) {
        Close();
        file_ = std::exchange(other.file_, -1);
        length_ = std::exchange(other.length_, 0);
        map_ = std::exchange(other.map_, nullptr);
    }
    return *this;
}

bool StreamReader::Open(const std::filesystem::path& path) {
    Close();
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        return false;
    }
    file_ = file;
    length_ = static_cast<std::int64_t>(status.st_size);
    return true;
}

void StreamReader::Close() {
    if (map_ != nullptr) {
        ::munmap(map_, static_cast<std::size_t>(length_));
        map_ = nullptr;
    }
    if (file_ >= 0) {
        ::close(file_);
        file_ = -1;
    }
    length_ = 0;
}

void StreamReader::ReadBytes(std::int64_t offset, std::span<std::byte> out) const {
    std::ranges::fill(out, std::byte{0});
    // Only the part of out that lies inside the stream is read; the rest stays 0.
    const std::int64_t begin = std::max<std::int64_t>(offset, 0);
    const std::int64_t end = std::min(offset + std::ssize(out), length_);
    std::byte* target = out.data() + (begin - offset);
    for (std::int64_t position = begin; file_ >= 0 && position < end;) {
        const ssize_t count = ::pread(file_, target, static_cast<std::size_t>(end - position),
                                      static_cast<off_t>(position));
        if (count <= 0) {
            break;
        }
        position += count;
        target += count;
    }
}

void StreamReader::ReadWords16(std::int64_t first, std::span<std::int16_t> out) {
    ReadBytes((first - 1) * 2, std::as_writable_bytes(out));
}

void StreamReader::ReadWords32(std::int64_t first, std::span<std::int32_t> out) {
    ReadBytes((first - 1) * 4, std::as_writable_bytes(out));
}

const void* StreamReader::Map() {
    if (map_ == nullptr && file_ >= 0 && length_ > 0) {
        void* map =
            ::mmap(nullptr, static_cast<std::size_t>(length_), PROT_READ, MAP_PRIVATE, file_, 0);
        map_ = map == MAP_FAILED ? nullptr : map;
    }
    return map_;
}

std::span<const std::int16_t> StreamReader::MappedWords16() {
    return WordsOf<std::int16_t>(Map(), length_);
}

std::span<const std::int32_t> StreamReader::MappedWords32() {
    return WordsOf<std::int32_t>(Map(), length_);
}

} // namespace torvane::logdata
