#include "output/file_list.h"

#include "shell/number_format.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <system_error>
#include <utility>

namespace torvane::output {
namespace {

constexpr std::string_view PaddedLength = "0000000000000";
constexpr std::uintmax_t BytesPerKb = 1024;

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool LessIgnoringCase(std::string_view a, std::string_view b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return LowerAscii(x) < LowerAscii(y);
    });
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return LowerAscii(x) == LowerAscii(y);
           });
}

std::string DateText(std::time_t modified) {
    std::tm local{};
    localtime_r(&modified, &local);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y/%m/%d %H:%M:%S", &local);
    return std::string(text.data(), length);
}

std::time_t ModifiedTime(const std::filesystem::directory_entry& entry, std::error_code& error) {
    const auto written = entry.last_write_time(error);
    if (error) {
        return 0;
    }
    return std::chrono::system_clock::to_time_t(std::chrono::file_clock::to_sys(written));
}

} // namespace

const std::string& FileRow::Text(FileColumn column) const {
    switch (column) {
    case FileColumn::SortSize:
        return SortSize;
    case FileColumn::Size:
        return Size;
    case FileColumn::Date:
        return Date;
    case FileColumn::Name:
        break;
    }
    return Name;
}

FileRow RowOf(std::string name, std::uintmax_t length, std::time_t modified) {
    return {.Name = std::move(name),
            .SortSize = shell::FormatNumber(static_cast<double>(length), PaddedLength),
            .Size = shell::FormatNumber(static_cast<double>(length / BytesPerKb + 1),
                                        shell::formats::Integer) +
                    "KB",
            .Date = DateText(modified)};
}

FileColumn SortColumnFor(FileColumn clicked) {
    return clicked == FileColumn::Size ? FileColumn::SortSize : clicked;
}

void SortRows(std::vector<FileRow>& rows, FileColumn column) {
    const FileColumn key = SortColumnFor(column);
    std::stable_sort(rows.begin(), rows.end(), [key](const FileRow& a, const FileRow& b) {
        return key == FileColumn::Name ? LessIgnoringCase(a.Name, b.Name)
                                       : a.Text(key) < b.Text(key);
    });
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
    if (pattern == "*.*" || pattern == "*") {
        return true;
    }
    if (!pattern.starts_with('*')) {
        return EqualIgnoringCase(name, pattern);
    }
    const std::string_view tail = pattern.substr(1);
    return name.size() >= tail.size() &&
           EqualIgnoringCase(name.substr(name.size() - tail.size()), tail);
}

FolderListing ListFolder(const std::filesystem::path& folder, std::string_view pattern) {
    FolderListing listing;
    std::error_code error;
    std::filesystem::directory_iterator entries(folder, error);
    if (error) {
        listing.Unreadable = folder.string() + ": " + error.message();
        return listing;
    }
    for (const auto& entry : entries) {
        // An entry that vanishes or cannot be read while the folder is walked is left out.
        std::error_code entryError;
        const std::string name = entry.path().filename().string();
        if (entry.is_directory(entryError)) {
            listing.Subfolders.push_back(name);
            continue;
        }
        if (!entry.is_regular_file(entryError) || !MatchesPattern(name, pattern)) {
            continue;
        }
        const std::uintmax_t length = entry.file_size(entryError);
        const std::time_t modified = ModifiedTime(entry, entryError);
        if (!entryError) {
            listing.Files.push_back(RowOf(name, length, modified));
        }
    }
    std::sort(listing.Subfolders.begin(), listing.Subfolders.end(), LessIgnoringCase);
    return listing;
}

DriveIcon DriveIconOf(std::string_view fileSystemType) {
    constexpr std::array<std::string_view, 4> removable{"vfat", "msdos", "exfat", "fuseblk"};
    constexpr std::array<std::string_view, 7> network{"nfs",   "nfs4",  "cifs",      "smb3",
                                                      "smbfs", "sshfs", "fuse.sshfs"};
    constexpr std::array<std::string_view, 2> optical{"iso9660", "udf"};
    constexpr std::array<std::string_view, 7> disks{"ext2",  "ext3", "ext4", "xfs",
                                                    "btrfs", "zfs",  "ntfs"};
    const auto among = [fileSystemType](std::span<const std::string_view> kinds) {
        return std::ranges::find(kinds, fileSystemType) != kinds.end();
    };
    if (among(removable)) {
        return DriveIcon::Removable;
    }
    if (among(network)) {
        return DriveIcon::Network;
    }
    if (among(optical)) {
        return DriveIcon::CdRom;
    }
    if (among(disks)) {
        return DriveIcon::HardDisk;
    }
    return DriveIcon::None;
}

std::optional<std::size_t> DriveOf(const std::filesystem::path& folder,
                                   std::span<const std::filesystem::path> roots) {
    std::optional<std::size_t> best;
    std::size_t bestDepth = 0;
    const std::filesystem::path normal = folder.lexically_normal();
    for (std::size_t i = 0; i < roots.size(); ++i) {
        const std::filesystem::path root = roots[i].lexically_normal();
        const auto [rootEnd, folderAt] =
            std::mismatch(root.begin(), root.end(), normal.begin(), normal.end());
        // A trailing separator leaves an empty last element in the root ("/mnt/usb/").
        const bool holds =
            rootEnd == root.end() || (std::next(rootEnd) == root.end() && rootEnd->empty());
        const auto depth = static_cast<std::size_t>(std::distance(root.begin(), root.end()));
        if (holds && (!best || depth > bestDepth)) {
            best = i;
            bestDepth = depth;
        }
    }
    return best;
}

} // namespace torvane::output
