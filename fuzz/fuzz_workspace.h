#pragma once
// A private folder for a fuzz target's files, made once per process and removed at its end.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <system_error>

namespace torvane::fuzz {

class Workspace {
public:
    explicit Workspace(const char* name) {
        std::string pattern =
            (std::filesystem::temp_directory_path() / (std::string(name) + "-XXXXXX")).string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            std::perror("mkdtemp");
            std::abort();
        }
        root_ = pattern;
    }
    ~Workspace() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    const std::filesystem::path& Root() const { return root_; }

private:
    std::filesystem::path root_;
};

inline void WriteInput(const std::filesystem::path& file, std::span<const std::uint8_t> bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

inline void Require(bool condition, const char* promise) {
    if (!condition) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

} // namespace torvane::fuzz
