// Loading runs of the vehicle model, written as real logging files and deployed by the driver
// library, as the desktop does.

#include "binding/tlm_decompressor.h"
#include "layout/default_layout.h"
#include "layout/layout_store.h"
#include "load/layer_commands.h"
#include "load/load_logging_file.h"
#include "load/window_close.h"
#include "rlg_container.h"
#include "support/temp_folder.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"

#include <gtest/gtest.h>

#include <fstream>

namespace torvane::load {
namespace {

namespace fs = std::filesystem;
using torvane::testing::TempFolder;

void WriteRun(const fs::path& file, double durationMs, std::uint64_t seed) {
    ASSERT_TRUE(
        rlg::WriteFileAtomically(file, sim::GenerateRunFile(sim::DemoSetting(), durationMs, seed)));
}

class GeneratedRunTest : public ::testing::Test {
protected:
    GeneratedRunTest() {
        EXPECT_TRUE(paths.MakeFolders());
        files.Layers.TempDir = paths.TempDir();
        files.Layers.WindowNumber = registry.Claim();
    }

    bool Load(const fs::path& file) {
        return LoadLoggingFile(files, file, layout::DefaultLayout(), driver, sink, view);
    }
    void Unload() {
        layout::LayoutStore store(paths, sink);
        UnloadWindow(files, registry, store, layout::FactoryToolBox);
    }
    std::vector<std::string> TempFileNames() const {
        return TempFolder::FileNamesIn(paths.TempDir());
    }

    TempFolder home;
    shell::AppPaths paths{home.Path()};
    shell::WindowRegistry registry;
    graph::GraphWindowState files;
    binding::TlmDecompressor driver;
    shell::RecordingSink sink;
    NoWindowView view;
};

TEST_F(GeneratedRunTest, RunsLoadAndLayOverEachOther) {
    const fs::path first = paths.DataDir() / "FIRST.rlg";
    const fs::path second = paths.DataDir() / "SECOND.rlg";
    WriteRun(first, 300000.0, 1);
    WriteRun(second, 240000.0, 2);

    ASSERT_TRUE(Load(first));
    EXPECT_TRUE(sink.Messages.empty());
    const logdata::LayerRecord& main = files.Layers.Layer[0];
    EXPECT_EQ(main.MeasureTime, 300000.0);
    EXPECT_EQ(main.ScrollItem, logdata::TH);
    EXPECT_EQ(files.LapBarHeight, 14);
    EXPECT_GE(files.Layers.Lap[0].LapTime.size(), 2U);
    EXPECT_GT(files.Layers.Lap[0].BestLap, 0.0);

    ASSERT_TRUE(OpenLayer(files, second, driver, sink, view));
    EXPECT_EQ(files.Layers.Layer[1].MeasureTime, 240000.0);
    EXPECT_EQ(files.LapBarHeight, 28);
    EXPECT_EQ(files.Layers.Lap[1].LapBarTop, 14);

    Unload();
    EXPECT_TRUE(TempFileNames().empty());
    EXPECT_TRUE(fs::exists(first));
}

TEST_F(GeneratedRunTest, DamagedFileGivesTheDriversMessageAndLeavesNoStream) {
    const fs::path file = paths.DataDir() / "DAMAGED.rlg";
    WriteRun(file, 60000.0, 3);
    const auto size = fs::file_size(file);
    {
        std::fstream bytes(file, std::ios::binary | std::ios::in | std::ios::out);
        bytes.seekp(static_cast<std::streamoff>(size - 40));
        bytes.write("\xFF\x00\xFF\x00", 4);
    }
    EXPECT_FALSE(Load(file));
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_EQ(sink.Messages[0].Text, "File access error.");
    EXPECT_EQ(sink.Messages[0].Icon, shell::icons::Stop);
    EXPECT_TRUE(TempFileNames().empty());

    fs::resize_file(file, size / 2);
    sink.Messages.clear();
    EXPECT_FALSE(Load(file));
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_EQ(sink.Messages[0].Text, "File access error.");
    EXPECT_TRUE(TempFileNames().empty());
}

} // namespace
} // namespace torvane::load
