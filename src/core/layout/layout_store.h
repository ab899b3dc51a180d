#pragma once
// The layout store: up to eleven saved displays in INT/LAYOUT.DAT and in memory. Record 0 is the
// last used display, the one a new window starts with; records 1 to 10 are the operator's named
// layouts. Whatever goes wrong with the file, the store keeps a record 0 to start windows from.

#include "graph/display_set.h"
#include "layout/layout_file.h"
#include "shell/app_paths.h"
#include "shell/message_sink.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::layout {

// The toolbox place a new file records: hidden, top 3000, left 400.
inline constexpr ToolBoxPlace FactoryToolBox{false, 3000, 400};

// Head and record 0 "INITIALIZE" from DefaultLayout: the 330 bytes of a new file.
std::vector<std::uint8_t> FactoryLayoutFile();

class LayoutStore {
public:
    // Before LoadLayouts the store holds only the factory record 0.
    LayoutStore(const shell::AppPaths& paths, shell::MessageSink& sink);

    // INT/LAYOUT.DAT, made by CreateLayoutFile first when it is missing; empty when that fails.
    std::filesystem::path LayoutFilePath();
    // Writes the factory file over whatever is there.
    bool CreateLayoutFile();

    // Reads the file into memory, repairing each record. A file whose length is no whole number
    // of records is replaced by the factory file without a word; at most eleven records are read.
    bool LoadLayouts();
    // Writes the pending layout under the name: over the record of that name among 1..10, else
    // after the last record (over record 10 when the file is full). Then reloads the store.
    bool SaveLayout(std::string_view name);
    // Removes record index from the file, and the records after it move up one place; the
    // store is rebuilt from what was written.
    bool DeleteLayout(int index);
    // Writes the head (the toolbox place given) and record 0 over the start of the file; the
    // records after it stay.
    bool SaveLastLayout(const ToolBoxPlace& toolBox);

    int Count() const { return static_cast<int>(layouts_.size()); }
    // Names of the records from index 0 up, for the layout menu.
    std::vector<std::string> GetLayoutNames() const;
    bool GetLayout(int index, graph::DisplaySet& record) const;
    // Copies the items and the time scale into a record; the record keeps its name.
    bool SetLayout(int index, const graph::DisplaySet& display, const graph::TimeScale& time);
    // The display that the next SaveLayout writes.
    void SetPendingLayout(const graph::DisplaySet& display, const graph::TimeScale& time);
    const graph::DisplaySet& PendingLayout() const { return pending_; }
    // The toolbox place of the file as last read.
    const ToolBoxPlace& ToolBox() const { return toolBox_; }

private:
    std::filesystem::path FilePath() const;
    std::optional<std::vector<std::uint8_t>> ReadLayoutFile();
    bool WriteLayoutFile(const std::vector<std::uint8_t>& image);
    void Rebuild(const std::vector<std::uint8_t>& image);
    void KeepRecordZero();

    std::filesystem::path initDir_;
    shell::MessageSink& sink_;
    std::vector<graph::DisplaySet> layouts_;
    graph::DisplaySet pending_;
    ToolBoxPlace toolBox_ = FactoryToolBox;
};

} // namespace torvane::layout
