#include "views/dto_file.h"

#include "layout/file_image.h"
#include "shell/regular_file.h"
#include "shell/temp_files.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <string>

namespace torvane::views {
namespace fs = std::filesystem;

std::uint32_t BytesToLong(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : bytes) {
        value = (value << 8) | byte;
    }
    return value;
}

void LongToBytes(std::int64_t value, std::span<std::uint8_t> bytes) {
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   static_cast<std::uint32_t>(value), 16)
                         .ptr;
    std::string text(digits.data(), end);
    if (text.size() < bytes.size() * 2) {
        text.insert(0, bytes.size() * 2 - text.size(), '0');
    }
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::uint8_t byte = 0;
        std::from_chars(text.data() + 2 * i, text.data() + 2 * i + 2, byte, 16);
        bytes[i] = byte;
    }
}

DetonationBytes EncodeDetonation(const DetonationContent& content) {
    DetonationBytes bytes{};
    for (int map = 0; map < MapCount; ++map) {
        const MapCounts& counts = content.Maps[static_cast<std::size_t>(map)];
        std::copy(counts.begin(), counts.end(), bytes.begin() + MapOffset(map));
        bytes[PresenceOffset + static_cast<std::size_t>(map)] =
            content.Present[static_cast<std::size_t>(map)] ? 1 : 0;
    }
    LongToBytes(content.RunTime, std::span(bytes).subspan(RunTimeOffset, RunTimeBytes));
    LongToBytes(content.RunDistance, std::span(bytes).subspan(RunDistanceOffset, RunDistanceBytes));
    return bytes;
}

DtoReadResult ReadDtoFile(const fs::path& file, DetonationBytes& bytes, std::error_code& error) {
    error.clear();
    const auto read = shell::ReadRegularFile(file, DetonationFileSize + 1, error);
    if (!read) {
        return error == std::errc::no_such_file_or_directory ? DtoReadResult::NotFound
                                                             : DtoReadResult::Unreadable;
    }
    if (read->size() != DetonationFileSize && read->size() != OlderDetonationFileSize) {
        return DtoReadResult::WrongLength;
    }
    bytes.fill(0);
    std::copy(read->begin(), read->end(), bytes.begin());
    if (read->size() == OlderDetonationFileSize) {
        bytes[PresenceOffset] = 1;
        bytes[PresenceOffset + 1] = 1;
    }
    return DtoReadResult::Read;
}

bool WriteDtoFile(const fs::path& file, const DetonationBytes& bytes, std::error_code& error) {
    fs::path temporary = file;
    temporary += ".new";
    layout::FileFailure failure;
    if (!layout::ReplaceFileImage(file, temporary, bytes, failure)) {
        error = failure.Error;
        return false;
    }
    return true;
}

fs::path GetDetonationFileName(const fs::path& tempDir) {
    return shell::NextNumberedFile(tempDir, "DETO", ".dto");
}

fs::path WriteDetonationWorkFile(const fs::path& tempDir, const DetonationBytes& bytes,
                                 shell::MessageSink& sink) {
    const fs::path file = GetDetonationFileName(tempDir);
    // A work file replaces nothing and is gone when the program ends, so it is written in place,
    // without the temporary name and the flush to the disk that a kept file gets.
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        const std::error_code error(errno != 0 ? errno : EIO, std::generic_category());
        std::error_code ignored;
        if (fs::is_regular_file(fs::symlink_status(file, ignored))) {
            fs::remove(file, ignored);
        }
        shell::ShowRunTimeError(sink, layout::DescribeFailure({error, file}));
        return {};
    }
    return file;
}

} // namespace torvane::views
