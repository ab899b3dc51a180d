#include "shell/temp_files.h"

#include "shell/number_format.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <system_error>
#include <vector>

namespace torvane::shell {
namespace fs = std::filesystem;

int StreamFileNumber(int window, int layer) {
    return window * 10 + layer;
}

std::string StreamFileName(std::string_view stream, int fileNumber) {
    return std::string(stream) + "-" + FormatNumber(fileNumber, formats::ThreeDigits) + ".tmp";
}

int DeleteTempFiles(const fs::path& tempDir, int window) {
    std::vector<std::string> endings;
    for (int layer = 0; window != 0 && layer <= 2; ++layer) {
        endings.push_back(FormatNumber(StreamFileNumber(window, layer), formats::ThreeDigits) +
                          ".tmp");
    }
    std::error_code error;
    std::vector<fs::path> doomed;
    for (fs::directory_iterator it(tempDir, error), end; !error && it != end; it.increment(error)) {
        if (it->is_directory(error)) {
            continue;
        }
        const std::string name = it->path().filename().string();
        const bool matches = window == 0 || std::any_of(endings.begin(), endings.end(),
                                                        [&](const std::string& ending) {
                                                            return name.ends_with(ending);
                                                        });
        if (matches) {
            doomed.push_back(it->path());
        }
    }
    int removed = 0;
    for (const fs::path& file : doomed) {
        if (fs::remove(file, error)) {
            ++removed;
        }
    }
    return removed;
}

fs::path NextNumberedFile(const fs::path& folder, std::string_view prefix,
                          std::string_view extension) {
    int highest = 0;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        const std::string name = it->path().filename().string();
        if (name.size() != prefix.size() + 4 + extension.size() || !name.starts_with(prefix) ||
            !name.ends_with(extension)) {
            continue;
        }
        const std::string_view digits = std::string_view(name).substr(prefix.size(), 4);
        int number = 0;
        const auto [ptr, ec] =
            std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (ec == std::errc{} && ptr == digits.data() + digits.size()) {
            highest = std::max(highest, number);
        }
    }
    return folder / (std::string(prefix) + FormatNumber(highest + 1, formats::FourDigits) +
                     std::string(extension));
}

} // namespace torvane::shell
