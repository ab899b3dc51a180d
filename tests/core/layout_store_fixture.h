#pragma once
// A layout store over LAYOUT.DAT in a private home folder, and what its tests read back: the
// names of the records and the top of a record's Ne band, which tells the records apart.

#include "layout/layout_store.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace torvane::testing {

using NameList = std::vector<std::string>;

class LayoutStoreFixture {
protected:
    std::filesystem::path File() const { return paths_.InitDir() / "LAYOUT.DAT"; }
    NameList Names() const { return store_.GetLayoutNames(); }
    graph::DisplaySet Record(int index) const {
        graph::DisplaySet record;
        EXPECT_TRUE(store_.GetLayout(index, record)) << "record " << index;
        return record;
    }
    std::int16_t NeTop(int index) const { return Record(index).Items[0].Top; }

    TempFolder folder_;
    shell::AppPaths paths_{folder_.Path()};
    shell::RecordingSink sink_;
    layout::LayoutStore store_{paths_, sink_};
};

} // namespace torvane::testing
