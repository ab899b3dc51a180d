#include "shell/app_paths.h"
#include "shell/message_sink.h"
#include "shell/temp_files.h"
#include "shell/window_registry.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace torvane::shell {
namespace {

using torvane::testing::ReadText;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;

TEST(WindowRegistry, NumbersReuseTheLowestAndTheLoggerMarkGoesWithTheNumber) {
    WindowRegistry registry;
    EXPECT_FALSE(registry.AnyFroms()); // number 0 never counts
    EXPECT_EQ(registry.Claim(), 1);
    EXPECT_EQ(registry.Claim(), 2);
    EXPECT_EQ(registry.Claim(), 3);
    EXPECT_TRUE(registry.SetLogger(2, 1));
    EXPECT_EQ(registry.GetLogger(2), 1);
    EXPECT_TRUE(registry.DeleteFrom(2));
    EXPECT_EQ(registry.GetLogger(2), 0);
    EXPECT_EQ(registry.Claim(), 2);
    EXPECT_EQ(registry.Claim(), 4);
    EXPECT_FALSE(registry.SetLogger(99, 1));
    EXPECT_FALSE(registry.DeleteFrom(-1));

    // A downloaded file that fails to load gives its number up before the frame marks it as
    // coming from the logger; the mark must not pass to the next window that takes the number.
    registry.DeleteFrom(4);
    registry.SetLogger(4, 1);
    EXPECT_EQ(registry.Claim(), 4);
    EXPECT_EQ(registry.GetLogger(4), 0);
    for (int number : {1, 2, 3, 4}) {
        registry.DeleteFrom(number);
    }
    EXPECT_FALSE(registry.AnyFroms());
}

TEST(ShowMessage, EmptyTextReportsThePendingErrorWithStopIcon) {
    RecordingSink sink;
    ShowMessage(sink, "", buttons::Ok, icons::None);
    EXPECT_EQ(sink.Messages.back().Text, "Error(0)\r");
    EXPECT_EQ(sink.Messages.back().Icon, icons::Stop);
    ShowRunTimeError(sink, {53, "File not found"});
    EXPECT_EQ(sink.Messages.back().Text, "Error(53)\rFile not found");
    EXPECT_EQ(sink.Messages.back().Icon, icons::Stop);
}

TEST(AppPaths, HomeVariableWinsThenProgramFolderThenUserFolder) {
    TempFolder folder;
    PathInputs inputs{folder / "home", folder.Path(), folder / "user"};
    EXPECT_EQ(AppPaths::Resolve(inputs).AppPath(), folder / "home");
    inputs.TorvaneHome.reset();
    EXPECT_EQ(AppPaths::Resolve(inputs).AppPath(), folder.Path());
    inputs.ProgramDir = folder / "no-such-folder";
    EXPECT_EQ(AppPaths::Resolve(inputs).AppPath(), folder / "user");
}

TEST(AppPaths, MakesTheThreeFoldersReplacingAFileInTheWayOrStopsAtOneItCannotMake) {
    TempFolder folder;
    WriteText(folder / "TMP", "in the way");
    std::filesystem::permissions(folder / "TMP", std::filesystem::perms::owner_read);
    const AppPaths paths(folder.Path());
    ASSERT_TRUE(paths.MakeFolders());
    EXPECT_TRUE(std::filesystem::is_directory(paths.DataDir()));
    EXPECT_TRUE(std::filesystem::is_directory(paths.InitDir()));
    EXPECT_TRUE(std::filesystem::is_directory(paths.TempDir()));
    EXPECT_EQ(paths.TempDir(), folder / "TMP");
    EXPECT_TRUE(paths.MakeFolders()); // existing folders are fine

    // Links to folders are followed, their targets' permissions left alone; a link to a file
    // is replaced, the file it points to kept.
    const TempFolder elsewhere;
    std::filesystem::create_directory(elsewhere / "data");
    std::filesystem::permissions(elsewhere / "data", std::filesystem::perms::owner_read);
    WriteText(elsewhere / "int.txt", "not a folder");
    const AppPaths linked(folder / "linked");
    std::filesystem::create_directory(linked.AppPath());
    std::filesystem::create_directory_symlink(elsewhere / "data", linked.DataDir());
    std::filesystem::create_symlink(elsewhere / "int.txt", linked.InitDir());
    EXPECT_TRUE(linked.MakeFolders());
    EXPECT_TRUE(std::filesystem::is_symlink(linked.DataDir()));
    EXPECT_EQ(std::filesystem::status(elsewhere / "data").permissions(),
              std::filesystem::perms::owner_read);
    EXPECT_FALSE(std::filesystem::is_symlink(linked.InitDir()));
    EXPECT_TRUE(std::filesystem::is_directory(linked.InitDir()));
    EXPECT_EQ(ReadText(elsewhere / "int.txt"), "not a folder");
    std::filesystem::permissions(elsewhere / "data", std::filesystem::perms::owner_all);

    WriteText(folder / "app", "a file, so nothing can be made below it");
    const AppPaths blocked(folder / "app");
    EXPECT_FALSE(blocked.MakeFolders());
    EXPECT_FALSE(std::filesystem::exists(folder / "app" / "TMP"));
}

TEST(TempFiles, StreamNamesCarryWindowAndLayerAndAreDeletedByWindow) {
    EXPECT_EQ(StreamFileName("Ne", StreamFileNumber(1, 0)), "Ne-010.tmp");
    EXPECT_EQ(StreamFileName("LAP", StreamFileNumber(12, 1)), "LAP-121.tmp");
    TempFolder folder;
    for (const char* name : {"Ne-010.tmp", "TH-011.tmp", "LAP-012.tmp", "Ne-020.tmp",
                             "MyItem-010.tmp", "LGGR0001.rlg", "Ne-010.dat"}) {
        WriteText(folder / name, "x");
    }
    EXPECT_EQ(DeleteTempFiles(folder.Path(), 1), 4);
    EXPECT_EQ(folder.FileNames(),
              (std::vector<std::string>{"LGGR0001.rlg", "Ne-010.dat", "Ne-020.tmp"}));
    EXPECT_EQ(DeleteTempFiles(folder.Path(), 0), 3);
    EXPECT_TRUE(folder.FileNames().empty());
    EXPECT_EQ(DeleteTempFiles(folder / "missing", 0), 0);
}

TEST(TempFiles, NextNumberedFileTakesOneAboveTheHighest) {
    TempFolder folder;
    EXPECT_EQ(NextNumberedFile(folder.Path(), "LGGR", ".rlg").filename(), "LGGR0001.rlg");
    for (const char* name :
         {"LGGR0002.rlg", "LGGR0007.rlg", "LGGRabcd.rlg", "LGGR00123.rlg", "DETO0009.dto"}) {
        WriteText(folder / name, "");
    }
    EXPECT_EQ(NextNumberedFile(folder.Path(), "LGGR", ".rlg").filename(), "LGGR0008.rlg");
}

} // namespace
} // namespace torvane::shell
