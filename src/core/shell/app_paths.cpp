#include "shell/app_paths.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <system_error>

namespace torvane::shell {
namespace fs = std::filesystem;
namespace {

std::optional<fs::path> Environment(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') {
        return std::nullopt;
    }
    return fs::path(value);
}

// A link to a folder is the operator's choice: followed, and neither changed nor replaced. Any
// other name in the way (a file, a link to a file or to nothing) is removed itself, which never
// touches what a link points to, and no permission is changed on something not made here.
bool MakeFolder(const fs::path& folder) {
    std::error_code error;
    if (fs::is_directory(fs::status(folder, error))) {
        return true;
    }
    if (fs::exists(fs::symlink_status(folder, error))) {
        fs::remove(folder, error);
    }
    if (fs::exists(fs::symlink_status(folder, error))) {
        return false;
    }
    return fs::create_directories(folder, error) || fs::is_directory(folder, error);
}

} // namespace

bool IsWritableFolder(const fs::path& folder) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        return false;
    }
    // Permission bits do not tell the truth for root or on read-only mounts: try it.
    const fs::path probe = folder / ".torvane-write-probe";
    bool writable = false;
    {
        std::ofstream file(probe, std::ios::binary);
        writable = file.good();
    }
    fs::remove(probe, error);
    return writable;
}

PathInputs AppPaths::ProcessInputs() {
    PathInputs inputs;
    inputs.TorvaneHome = Environment("TORVANE_HOME");
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    inputs.ProgramDir = error ? fs::current_path(error) : executable.parent_path();
    if (const auto xdg = Environment("XDG_DATA_HOME")) {
        inputs.UserDataDir = *xdg / "torvane-studio";
    } else if (const auto appData = Environment("APPDATA")) {
        inputs.UserDataDir = *appData / "Torvane Studio";
    } else if (const auto home = Environment("HOME")) {
        inputs.UserDataDir = *home / ".local" / "share" / "torvane-studio";
    } else {
        inputs.UserDataDir = fs::temp_directory_path(error) / "torvane-studio";
    }
    return inputs;
}

AppPaths AppPaths::Resolve(const PathInputs& inputs) {
    if (inputs.TorvaneHome) {
        return AppPaths(*inputs.TorvaneHome);
    }
    if (IsWritableFolder(inputs.ProgramDir)) {
        return AppPaths(inputs.ProgramDir);
    }
    return AppPaths(inputs.UserDataDir);
}

bool AppPaths::MakeFolders() const {
    std::error_code error;
    if (!fs::is_directory(appPath_, error)) {
        fs::create_directories(appPath_, error);
    }
    for (const fs::path& folder : {DataDir(), InitDir(), TempDir()}) {
        if (!MakeFolder(folder)) {
            return false;
        }
    }
    return true;
}

} // namespace torvane::shell
