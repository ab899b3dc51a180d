#pragma once
// A private folder for one test, removed with everything in it when the test ends, and small
// readers and writers for the files in it.

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
        // Tests leave read-only folders behind; each must be writable again to be emptied.
        namespace fs = std::filesystem;
        std::error_code error;
        fs::permissions(path_, fs::perms::owner_all, fs::perm_options::add, error);
        for (fs::recursive_directory_iterator it(path_, error), end; it != end;
             it.increment(error)) {
            if (it->is_directory(error)) {
                fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, error);
            }
        }
        fs::remove_all(path_, error);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    std::vector<std::string> FileNames() const { return FileNamesIn(path_); }

    // Names of everything in folder, hidden files included, sorted.
    static std::vector<std::string> FileNamesIn(const std::filesystem::path& folder) {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
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

inline void WriteWords16(const std::filesystem::path& file,
                         const std::vector<std::int16_t>& words) {
    WriteWords<std::int16_t>(file, words);
}

inline void WriteWords32(const std::filesystem::path& file,
                         const std::vector<std::int32_t>& words) {
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

inline void WriteBytes(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes) {
    WriteText(file, std::string(bytes.begin(), bytes.end()));
}

inline std::vector<std::uint8_t> ReadBytes(const std::filesystem::path& file) {
    const std::string text = ReadText(file);
    return {text.begin(), text.end()};
}

} // namespace torvane::testing
