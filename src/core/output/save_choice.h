#pragma once
// What the operator chose in the save dialog of a graph window: the path, and for a CSV export
// whether every item goes out and whether only the marked range does.

#include <filesystem>

namespace torvane::output {

struct SaveChoice {
    std::filesystem::path Filepath;
    bool CsvAllItem = false; // every item of the file, not only those shown
    bool CsvRange = false;   // only the marked range
};

} // namespace torvane::output
