#pragma once
// The program's three folders: DATA (the operator's logging files), INT (small settings files)
// and TMP (deployed streams and other work files, emptied at every start and end).

#include <filesystem>
#include <optional>

namespace torvane::shell {

// What decides where the folders live; gathered by the caller so that the rule can be tested.
struct PathInputs {
    std::optional<std::filesystem::path> TorvaneHome; // TORVANE_HOME, when set and not empty
    std::filesystem::path ProgramDir;                 // folder of the running program
    std::filesystem::path UserDataDir;                // the per-user data folder
};

class AppPaths {
public:
    // TORVANE_HOME if set; else beside the program when that folder is writable; else the
    // per-user data folder.
    static AppPaths Resolve(const PathInputs& inputs);
    // The inputs of this process: environment, /proc/self/exe, XDG_DATA_HOME or HOME.
    static PathInputs ProcessInputs();

    explicit AppPaths(std::filesystem::path appPath)
        : appPath_(std::move(appPath)) {}

    const std::filesystem::path& AppPath() const { return appPath_; }
    std::filesystem::path DataDir() const { return appPath_ / "DATA"; }
    std::filesystem::path InitDir() const { return appPath_ / "INT"; }
    std::filesystem::path TempDir() const { return appPath_ / "TMP"; }

    // Makes DATA, INT and TMP in this order, each only when the one before succeeded. A file
    // standing where a folder belongs is deleted first; a link to a folder is used as it is.
    // False when a folder could not be made.
    bool MakeFolders() const;

private:
    std::filesystem::path appPath_;
};

// True when a file can be created in the folder (the folder exists and is writable).
bool IsWritableFolder(const std::filesystem::path& folder);

} // namespace torvane::shell
