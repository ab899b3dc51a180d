#pragma once
// Things that are not regular files, put where a reader expects one. A reader that opens a FIFO
// waits for a writer that never comes, and one that reads /dev/zero never reaches its end, so a
// test that fails here hangs rather than fails; ctest's timeout ends it.

#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace torvane::testing {

struct HostileFile {
    std::string Kind;
    std::function<bool(const std::filesystem::path&)> Make;
};

inline std::vector<HostileFile> HostileFiles() {
    return {
        {"a FIFO",
         [](const std::filesystem::path& at) {
             return ::mkfifo(at.c_str(), 0600) == 0;
         }},
        {"a link to /dev/zero",
         [](const std::filesystem::path& at) {
             std::error_code error;
             std::filesystem::create_symlink("/dev/zero", at, error);
             return !error;
         }},
    };
}

} // namespace torvane::testing
