#pragma once
// A private folder for one test, removed with everything in it when the test ends, and small
// writers for stream files.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace torvane::testing {

class TempFolder {
public:
    TempFolder() {
        std::random_device entropy;
        path_ = std::filesystem::temp_directory_path() /
                ("torvane-test-" + std::to_string(entropy()) + std::to_string(entropy()));
        std::filesystem::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code error;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, error);
        std::filesystem::remove_all(path_, error);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    std::vector<std::string> FileNames() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path path_;
};

template <typename Word>
inline void WriteWords(const std::filesystem::path& file, std::span<const Word> words) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    for (const Word word : words) {
        auto value = static_cast<std::uint32_t>(word);
        for (std::size_t b = 0; b < sizeof(Word); ++b) {
            out.put(static_cast<char>(value & 0xFF));
            value >>= 8;
        }
    }
}

inline void WriteWords16(const std::filesystem::path& file, const std::vector<std::int16_t>& words) {
    WriteWords<std::int16_t>(file, words);
}

inline void WriteWords32(const std::filesystem::path& file, const std::vector<std::int32_t>& words) {
    WriteWords<std::int32_t>(file, words);
}

inline void WriteText(const std::filesystem::path& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << text;
}

inline std::string ReadText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace torvane::testing
