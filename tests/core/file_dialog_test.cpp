#include "output/file_dialog_rules.h"
#include "output/file_list.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace torvane::output {
namespace {

using shell::RecordingSink;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;

constexpr std::string_view CsvType = "Csv Files (*.csv)";
constexpr std::string_view LoggingType = "Logging Files (*.rlg)";

TEST(FileDialogModes, NamesTakeTheTypesExtensionAndTheInitialNameFollowsTheMode) {
    EXPECT_EQ(PatternOf("Special Data Files (*.spd)"), "*.spd");
    EXPECT_EQ(ExtensionOf("Special Data Files (*.spd)"), ".spd");
    EXPECT_TRUE(OffersCsvOptions(PatternOf(CsvType)));
    EXPECT_FALSE(OffersCsvOptions(PatternOf(LoggingType)));

    // A typed name takes the type's extension; an entry of the list picked while the type is
    // CSV stays a logging file. The initial name follows the mode.
    EXPECT_EQ(CompleteFileName("abc", CsvType), "abc.csv");
    EXPECT_EQ(CompleteFileName("abc", LoggingType), "abc.rlg");
    EXPECT_EQ(CompleteFileName("run.rlg", CsvType), "run.rlg");
    EXPECT_EQ(ExtensionOf("Odd ( *.x )"), ".x");
    EXPECT_EQ(InitialFileName(FileDialogMode::SaveLoggingFile, "run.RLG"), "run.RLG");
    EXPECT_EQ(InitialFileName(FileDialogMode::SaveLoggingFile, "run.csv"), "");
    EXPECT_EQ(InitialFileName(FileDialogMode::SaveDetonationFile, "map.dto"), "map.dto");
    EXPECT_EQ(InitialFileName(FileDialogMode::LoadLoggingFile, "run.rlg"), "");
}

TEST(FileDialogName, KeyFilterDropsSeparatorsWildcardsAndTheDot) {
    for (char32_t key : std::u32string(U"\\/.:;<>|\"?!*")) {
        EXPECT_FALSE(FileNameKeyPasses(key)) << static_cast<int>(key);
    }
    for (char32_t key : std::u32string(U"aZ09 _-()#é")) {
        EXPECT_TRUE(FileNameKeyPasses(key)) << static_cast<int>(key);
    }
}

class PressOkTest : public ::testing::Test {
protected:
    OkPress Press(FileDialogMode mode, std::string typed, std::string_view type) {
        return {.Mode = mode,
                .Folder = folder.Path(),
                .TypedName = std::move(typed),
                .SelectedName = {},
                .Type = std::string(type)};
    }
    TempFolder folder;
    FileDialogMemory memory;
    RecordingSink sink{shell::answers::Yes};
};

TEST_F(PressOkTest, ExistingFileIsOverwrittenOnlyAfterYesInTheModesThatAsk) {
    WriteText(folder / "abc.csv", "old");
    sink.SetAnswer(shell::answers::No);
    const FileDialogResult refused =
        PressOk(Press(FileDialogMode::SaveLoggingFile, "abc", CsvType), memory, sink);
    EXPECT_TRUE(refused.Cancel);
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text, "Already exists.Overwrite? ");
    EXPECT_EQ(sink.Messages[0].Buttons, shell::buttons::YesNo);
    EXPECT_EQ(sink.Messages[0].Icon, shell::icons::Information);
    EXPECT_EQ(memory.LastFileName, "");

    sink.SetAnswer(shell::answers::Yes);
    EXPECT_FALSE(
        PressOk(Press(FileDialogMode::SaveLoggingFile, "abc", CsvType), memory, sink).Cancel);
    EXPECT_EQ(sink.Messages.size(), 2u);
    EXPECT_EQ(memory.LastFolder, folder.Path());
    EXPECT_EQ(memory.LastFileName, "abc.csv");

    WriteText(folder / "dump.spd", "old");
    EXPECT_FALSE(PressOk(Press(FileDialogMode::SaveSpecialData, "dump",
                               TypesOf(FileDialogMode::SaveSpecialData)[0]),
                         memory, sink)
                     .Cancel);
    EXPECT_EQ(sink.Messages.size(), 2u); // special data overwrites without asking
    EXPECT_EQ(memory.LastFileName, "abc.csv");

    // A printed page asks before it replaces a file, and its name is offered to no later save.
    WriteText(folder / "page.pdf", "old");
    const FileDialogResult page =
        PressOk(Press(FileDialogMode::SavePdfFile, "page", TypesOf(FileDialogMode::SavePdfFile)[0]),
                memory, sink);
    EXPECT_EQ(page.Filepath, folder / "page.pdf");
    EXPECT_EQ(sink.Messages.size(), 3u);
    EXPECT_EQ(memory.LastFileName, "abc.csv");
}

TEST_F(PressOkTest, LoadTakesAMissingFileAndAnEmptyNameFallsBackToTheSelection) {
    memory.LastFileName = "saved.rlg";
    const FileDialogResult missing =
        PressOk(Press(FileDialogMode::LoadLoggingFile, "nothing", LoggingType), memory, sink);
    EXPECT_FALSE(missing.Cancel);
    EXPECT_EQ(missing.Filepath, folder / "nothing.rlg");

    OkPress picked = Press(FileDialogMode::LoadLoggingFile, "   ", LoggingType);
    picked.SelectedName = "run.rlg";
    EXPECT_EQ(PressOk(picked, memory, sink).Filepath, folder / "run.rlg");
    picked.SelectedName.clear();
    EXPECT_TRUE(PressOk(picked, memory, sink).Cancel);
    EXPECT_TRUE(sink.Messages.empty());
    // The next save must not start with the loaded name typed in.
    EXPECT_EQ(memory.LastFileName, "saved.rlg");
}

TEST(FileDialogMemory, StartFolderIsTheLastOneWhileItExists) {
    TempFolder data;
    TempFolder last;
    FileDialogMemory memory;
    EXPECT_EQ(StartFolder(memory, data.Path()), data.Path());
    memory.LastFolder = last.Path();
    EXPECT_EQ(StartFolder(memory, data.Path()), last.Path());
    memory.LastFolder = last / "gone";
    EXPECT_EQ(StartFolder(memory, data.Path()), data.Path());
}

TEST(FileList, SizesShowKilobytesPlusOneAndSortAsNumbersAndDatesAreLocal) {
    EXPECT_EQ(RowOf("a", 0, 0).Size, "1KB");
    EXPECT_EQ(RowOf("a", 1023, 0).Size, "1KB");
    EXPECT_EQ(RowOf("a", 1024, 0).Size, "2KB");
    EXPECT_EQ(RowOf("a", 1024, 0).SortSize, "0000000001024");

    std::vector<FileRow> rows{RowOf("b.rlg", 20000, 300), RowOf("A.rlg", 3000, 100),
                              RowOf("c.rlg", 100000, 200)};
    const auto names = [&rows] {
        std::vector<std::string> out;
        for (const auto& row : rows) {
            out.push_back(row.Name);
        }
        return out;
    };
    SortRows(rows, FileColumn::Size); // the shown text would put "20KB" before "3KB"
    EXPECT_EQ(names(), (std::vector<std::string>{"A.rlg", "b.rlg", "c.rlg"}));
    SortRows(rows, FileColumn::Date);
    EXPECT_EQ(names(), (std::vector<std::string>{"A.rlg", "c.rlg", "b.rlg"}));
    SortRows(rows, FileColumn::Name);
    EXPECT_EQ(names(), (std::vector<std::string>{"A.rlg", "b.rlg", "c.rlg"}));

    // The date is local time in its format.
    std::tm local{};
    local.tm_year = 2026 - 1900;
    local.tm_mon = 0;
    local.tm_mday = 2;
    local.tm_hour = 3;
    local.tm_min = 4;
    local.tm_sec = 5;
    local.tm_isdst = -1;
    EXPECT_EQ(RowOf("a", 0, std::mktime(&local)).Date, "2026/01/02 03:04:05");
}

TEST(FileList, FolderListsMatchingFilesAndItsSubfoldersOrSaysWhyItCannot) {
    TempFolder folder;
    WriteText(folder / "one.rlg", std::string(1024, 'x'));
    WriteText(folder / "TWO.RLG", "");
    WriteText(folder / "three.csv", "");
    std::filesystem::create_directory(folder / "runs");
    const FolderListing listing = ListFolder(folder.Path(), "*.rlg");
    EXPECT_FALSE(listing.Unreadable);
    ASSERT_EQ(listing.Files.size(), 2u);
    std::vector<FileRow> rows = listing.Files;
    SortRows(rows, FileColumn::Name);
    EXPECT_EQ(rows[0].Name, "one.rlg");
    EXPECT_EQ(rows[1].Name, "TWO.RLG");
    EXPECT_EQ(listing.Subfolders, std::vector<std::string>{"runs"});

    // An unreadable folder lists nothing and says why.
    const FolderListing missing = ListFolder(folder / "gone", "*.rlg");
    EXPECT_TRUE(missing.Files.empty());
    ASSERT_TRUE(missing.Unreadable);
    EXPECT_NE(missing.Unreadable->find("gone"), std::string::npos);
    WriteText(folder / "plain", "not a folder");
    EXPECT_TRUE(ListFolder(folder / "plain", "*.rlg").Unreadable);
}

TEST(FileDrives, FolderBelongsToTheDeepestRootThatHoldsIt) {
    const std::vector<std::filesystem::path> roots{"/", "/media/usb/", "/media"};
    EXPECT_EQ(DriveOf("/media/usb/runs", roots), 1u);
    EXPECT_EQ(DriveOf("/media/usb", roots), 1u);
    EXPECT_EQ(DriveOf("/media/usb2", roots), 2u);
    EXPECT_EQ(DriveOf("/home/rider", roots), 0u);
    EXPECT_FALSE(DriveOf("relative", roots));
    EXPECT_EQ(DriveIconOf("ext4"), DriveIcon::HardDisk);
    EXPECT_EQ(DriveIconOf("tmpfs"), DriveIcon::None);
}

} // namespace
} // namespace torvane::output
