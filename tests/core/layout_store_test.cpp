#include "layout/default_layout.h"
#include "layout_bytes.h"
#include "layout_store_fixture.h"
#include "support/file_size_limit.h"
#include "support/hostile_files.h"

#include <gtest/gtest.h>

#include <fstream>

namespace torvane::layout {
namespace {

namespace fs = std::filesystem;
using graph::DisplaySet;
using testing::ByteImage;
using testing::FactoryFileBytes;
using testing::HeadBytes;
using testing::NameList;
using testing::RecordBytes;
using torvane::testing::ReadBytes;
using torvane::testing::WriteBytes;

// Records that need no repair, told apart by their names and the top of their Ne bands (the
// record's index).
std::vector<std::uint8_t> FileOf(const NameList& names) {
    ByteImage image;
    image.Append(HeadBytes(1, 120, 240));
    for (std::size_t i = 0; i < names.size(); ++i) {
        auto items = testing::FactoryItems();
        items[0].Top = static_cast<std::int16_t>(i);
        items[5].Grid = 0; // hidden with its grid on would be repaired
        image.Append(RecordBytes(items, 2, 20000, 200, names[i]));
    }
    return image.bytes;
}

// "INITIALIZE", then "L1", "L2" ... up to count names in all.
NameList NumberedNames(int count) {
    NameList names{"INITIALIZE"};
    for (int i = 1; i < count; ++i) {
        std::string name = std::to_string(i); // "L" + to_string trips a false -Wrestrict
        name.insert(0, 1, 'L');
        names.push_back(name);
    }
    return names;
}

class LayoutStoreTest : public ::testing::Test, protected testing::LayoutStoreFixture {
protected:
    LayoutStoreTest() { fs::create_directories(paths_.InitDir()); }

    void ExpectOneError(int number) {
        ASSERT_EQ(sink_.Messages.size(), 1u);
        const std::string& text = sink_.Messages[0].Text;
        std::string prefix = "Error(";
        prefix += std::to_string(number);
        EXPECT_TRUE(text.starts_with(prefix + ")\r")) << text;
        EXPECT_EQ(sink_.Messages[0].Icon, shell::icons::Stop);
        sink_.Messages.clear();
    }
};

TEST_F(LayoutStoreTest, MissingOrWrongLengthFileIsReplacedSilentlyButAShortOneIsKept) {
    EXPECT_EQ(Names(), NameList{"INITIALIZE"}); // before any file
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(ReadBytes(File()), FactoryFileBytes());
    EXPECT_EQ(store_.ToolBox(), (ToolBoxPlace{false, 3000, 400}));

    auto image = FileOf({"INITIALIZE", "Dry"});
    image.push_back(0);
    WriteBytes(File(), image);
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(ReadBytes(File()), FactoryFileBytes());
    EXPECT_EQ(Names(), NameList{"INITIALIZE"});
    EXPECT_TRUE(sink_.Messages.empty());

    WriteBytes(File(), {1, 0, 0, 0, 9}); // shorter than its head
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(ReadBytes(File()).size(), 5u);
    EXPECT_TRUE(store_.ToolBox().Shown);
    EXPECT_EQ(Names(), NameList{"INITIALIZE"}); // a window still has a start
}

TEST_F(LayoutStoreTest, RepairsOnLoadAndTheRepairedTimeScaleStays) {
    auto items = testing::FactoryItems();
    items[5].Bottom = 0;
    auto image = ByteImage().Append(HeadBytes(0, 1, 2)).Append(RecordBytes(items, 1, 0, 100, "X"));
    WriteBytes(File(), image.bytes);
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(Record(0).Time, (graph::TimeScale{1, 5, 500}));
    // The file keeps what it had until record 0 is saved.
    EXPECT_EQ(ReadBytes(File()), image.bytes);
    ASSERT_TRUE(store_.SaveLastLayout({}));
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(Record(0).Time, (graph::TimeScale{1, 5, 500}));
}

TEST_F(LayoutStoreTest, TwelveRecordsReadElevenAndDeleteWritesOnlyThose) {
    const auto image = FileOf(NumberedNames(12));
    WriteBytes(File(), image);
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(store_.Count(), 11);

    ASSERT_TRUE(store_.DeleteLayout(3));
    const auto after = ReadBytes(File());
    ASSERT_EQ(after.size(), 12u + 318u * 10u);
    // Head and records 0..2 as they were, then 4..10 moved up one place.
    EXPECT_TRUE(std::equal(after.begin(), after.begin() + 12 + 318 * 3, image.begin()));
    EXPECT_TRUE(
        std::equal(after.begin() + 12 + 318 * 3, after.end(), image.begin() + 12 + 318 * 4));
    EXPECT_EQ(Names()[3], "L4");
    EXPECT_EQ(NeTop(3), 4);
    EXPECT_FALSE(store_.DeleteLayout(10)); // no such record any more
    EXPECT_FALSE(store_.DeleteLayout(-1));
    EXPECT_EQ(ReadBytes(File()), after);
}

TEST_F(LayoutStoreTest, SaveOverwritesItsNameOrAppendsAndAFullStoreReusesItsLast) {
    WriteBytes(File(), FileOf({"INITIALIZE", "Dry"}));
    ASSERT_TRUE(store_.LoadLayouts());
    DisplaySet display = DefaultLayout();
    display.Items[0].Top = 77;
    store_.SetPendingLayout(display, {3, 4000, 50});

    ASSERT_TRUE(store_.SaveLayout("Dry"));
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "Dry"}));
    EXPECT_EQ(NeTop(1), 77);
    EXPECT_EQ(Record(1).Time, (graph::TimeScale{3, 4000, 50}));

    // The search starts after record 0, so its name makes a new record.
    ASSERT_TRUE(store_.SaveLayout("INITIALIZE"));
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "Dry", "INITIALIZE"}));
    EXPECT_EQ(NeTop(0), 0);
    // A long name is cut, so its full form is not found again.
    const std::string name = "Qualifying wet, soft rear"; // 25 bytes
    ASSERT_TRUE(store_.SaveLayout(name));
    ASSERT_TRUE(store_.SaveLayout(name));
    EXPECT_EQ(Names()[3], "Qualifying wet, soft");
    EXPECT_EQ(store_.Count(), 5);

    WriteBytes(File(), FileOf(NumberedNames(11)));
    ASSERT_TRUE(store_.LoadLayouts());
    ASSERT_TRUE(store_.SaveLayout("New"));
    EXPECT_EQ(store_.Count(), 11);
    EXPECT_EQ(Names()[10], "New");
    EXPECT_EQ(Names()[9], "L9");
    EXPECT_EQ(ReadBytes(File()).size(), 12u + 318u * 11u);
}

TEST_F(LayoutStoreTest, ReadsAFileAndSaveLastLayoutWritesHeadAndRecordZeroOnly) {
    const auto image = FileOf({"INITIALIZE", "Dry", "Wet"});
    WriteBytes(File(), image);
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "Dry", "Wet"}));
    EXPECT_EQ(store_.ToolBox(), (ToolBoxPlace{true, 120, 240}));
    EXPECT_EQ(NeTop(2), 2);
    ASSERT_TRUE(store_.SaveLastLayout(store_.ToolBox()));
    EXPECT_EQ(ReadBytes(File()), image); // byte for byte

    DisplaySet display = DefaultLayout();
    display.Name = "ignored";
    display.Items[0].Top = 99;
    ASSERT_TRUE(store_.SetLayout(0, display, {4, 8000, 40}));

    ASSERT_TRUE(store_.SaveLastLayout({false, -10, 20}));
    auto expected = ByteImage().Append(HeadBytes(0, -10, 20));
    auto items = testing::FactoryItems();
    items[0].Top = 99;
    expected.Append(RecordBytes(items, 4, 8000, 40, "INITIALIZE"));
    expected.bytes.insert(expected.bytes.end(), image.begin() + 12 + 318, image.end());
    EXPECT_EQ(ReadBytes(File()), expected.bytes);
}

// Failures: the operator is told, the file that was there is kept as it was, and the store
// still has a record 0 to start a window from.

TEST_F(LayoutStoreTest, MissingFolderOrAFileInItsPlaceIsReportedAndKept) {
    fs::remove(paths_.InitDir());
    EXPECT_FALSE(store_.LoadLayouts());
    ExpectOneError(76);
    EXPECT_EQ(Names(), NameList{"INITIALIZE"});
    EXPECT_TRUE(store_.LayoutFilePath().empty());
    ExpectOneError(76);
    EXPECT_FALSE(store_.SaveLastLayout({}));
    ExpectOneError(76);

    torvane::testing::WriteText(paths_.InitDir(), "not a folder");
    EXPECT_FALSE(store_.LoadLayouts());
    ExpectOneError(76);
    EXPECT_EQ(torvane::testing::ReadText(paths_.InitDir()), "not a folder");
}

TEST_F(LayoutStoreTest, FifoOrDeviceInPlaceOfTheFileIsRefusedUnopenedAndKept) {
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        SCOPED_TRACE(hostile.Kind);
        fs::remove(File());
        ASSERT_TRUE(hostile.Make(File()));
        EXPECT_FALSE(store_.LoadLayouts());
        ExpectOneError(75);
        EXPECT_EQ(Names(), NameList{"INITIALIZE"});
        EXPECT_FALSE(store_.SaveLastLayout({}));
        ExpectOneError(75);
        EXPECT_FALSE(fs::is_regular_file(fs::symlink_status(File())));
    }
}

// Records past the eleventh are never shown; a file far longer is read no further than that.
TEST_F(LayoutStoreTest, FileFarLongerThanElevenRecordsReadsOnlyThose) {
    auto image = FileOf(NumberedNames(11));
    image.resize(image.size() + (4 << 20), 0xFF);
    WriteBytes(File(), image);
    ASSERT_TRUE(store_.LoadLayouts());
    EXPECT_EQ(Names(), NumberedNames(11));
    EXPECT_TRUE(sink_.Messages.empty());
}

TEST_F(LayoutStoreTest, FullDiskIsReportedAndLosesNothing) {
    const auto image = FileOf({"INITIALIZE", "Dry"});
    WriteBytes(File(), image);
    ASSERT_TRUE(store_.LoadLayouts());
    bool written = true;
    {
        const torvane::testing::FileSizeLimit limit(100);
        ASSERT_TRUE(limit.Active());
        written = store_.SaveLastLayout({true, 1, 1});
    }

    EXPECT_FALSE(written);
    ExpectOneError(61);
    EXPECT_EQ(ReadBytes(File()), image);
    EXPECT_FALSE(fs::exists(paths_.InitDir() / "Layout.tmp"));
}

TEST_F(LayoutStoreTest, ReadOnlyFolderIsReportedAndLosesNothing) {
    const auto image = FileOf({"INITIALIZE", "Dry"});
    WriteBytes(File(), image);
    fs::permissions(paths_.InitDir(), fs::perms::owner_read | fs::perms::owner_exec);
    if (std::ofstream probe(paths_.InitDir() / "probe"); probe.is_open()) {
        probe.close();
        fs::remove(paths_.InitDir() / "probe");
        GTEST_SKIP() << "running with rights that ignore a read-only folder";
    }
    ASSERT_TRUE(store_.LoadLayouts()); // reading needs no rights to write
    EXPECT_FALSE(store_.SaveLayout("New"));
    ExpectOneError(70);
    EXPECT_FALSE(store_.DeleteLayout(1));
    ExpectOneError(70);
    EXPECT_EQ(ReadBytes(File()), image);
}

} // namespace
} // namespace torvane::layout
