#pragma once
// The file dialog's places and list: the files of a folder that match the chosen type, as rows
// of name, size and date, sorted by a column; the folders below a folder; and which drive entry
// stands for a folder.

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::output {

// The list's columns. The first size column is hidden: it holds the size padded with zeros, so
// that sorting by either size column compares numbers as texts.
enum class FileColumn { Name = 0, SortSize = 1, Size = 2, Date = 3 };
inline constexpr int FileColumnCount = 4;

struct FileRow {
    std::string Name;
    std::string SortSize; // the length in bytes in 13 digits
    std::string Size;     // the length in KiB plus one, then "KB": an empty file shows 1KB
    std::string Date;     // local time, "YYYY/MM/DD hh:mm:ss"

    const std::string& Text(FileColumn column) const;
};

FileRow RowOf(std::string name, std::uintmax_t length, std::time_t modified);

// The column whose text a click on a header sorts by: either size column sorts by the hidden one.
FileColumn SortColumnFor(FileColumn clicked);
// Sorts ascending by the column's text; names compare without regard to case.
void SortRows(std::vector<FileRow>& rows, FileColumn column);

// Whether a file name matches a pattern of the type box ("*.rlg"); the case of the extension
// does not matter.
bool MatchesPattern(std::string_view name, std::string_view pattern);

struct FolderListing {
    std::vector<FileRow> Files;            // the matching files, unsorted
    std::vector<std::string> Subfolders;   // sorted by name
    std::optional<std::string> Unreadable; // why the folder could not be read
};

// Reads a folder. A folder that cannot be read lists nothing and says why.
FolderListing ListFolder(const std::filesystem::path& folder, std::string_view pattern);

// The icon of a drive entry, by the kind of its file system.
enum class DriveIcon { None, Removable, HardDisk, Network, CdRom };
DriveIcon DriveIconOf(std::string_view fileSystemType);

// The drive whose root holds the folder: the longest root that is a prefix of it, or nothing.
std::optional<std::size_t> DriveOf(const std::filesystem::path& folder,
                                   std::span<const std::filesystem::path> roots);

} // namespace torvane::output
