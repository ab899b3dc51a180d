#include "load/link_command.h"
#include "load/memory_check.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace torvane::load {
namespace {

TEST(LinkExecuteTest, OnlyLoadIsAcceptedAndTheLastThreeCharactersOfThePathDecide) {
    const std::vector<std::pair<std::string, LinkAction>> cases{
        {"OPEN/runs/a.rlg", {}},
        {"load/runs/a.rlg", {}},
        {"LOA", {}},
        {"LOAD/runs/My Run.rlg", {true, FileKind::LoggingFile, "/runs/My Run.rlg"}},
        {"LOAD/maps/DETO0001.Dto", {true, FileKind::DetonationFile, "/maps/DETO0001.Dto"}},
        // No dot needed before the letters; a quote at the end spoils the match.
        {"LOAD/runs/trlg", {true, FileKind::LoggingFile, "/runs/trlg"}},
        {"LOAD\"/runs/a.rlg\"", {true, FileKind::Other, ""}},
        // Accepted without effect: an unknown extension, a path too short, or none at all.
        {"LOAD/runs/notes.txt", {true, FileKind::Other, ""}},
        {"LOADlg", {true, FileKind::Other, ""}},
        {"LOAD", {true, FileKind::Other, ""}},
    };
    for (const auto& [command, action] : cases) {
        EXPECT_EQ(LinkExecute(command), action) << command;
    }
}

class FixedMemory : public MemoryStatus {
public:
    explicit FixedMemory(std::optional<MemoryFigures> figures)
        : figures_(figures) {}
    std::optional<MemoryFigures> Read() override { return figures_; }

private:
    std::optional<MemoryFigures> figures_;
};

// 8000 MiB of memory and 2000 MiB of swap with the given share of both in use, in tenths of a
// per cent.
MemoryFigures InUse(std::uint64_t tenthsOfPercent) {
    constexpr std::uint64_t MiB = 1024 * 1024;
    const std::uint64_t used = 10000 * MiB * tenthsOfPercent / 1000;
    return {8000 * MiB, 8000 * MiB - used, 2000 * MiB, 2000 * MiB};
}

TEST(CheckMemoryTest, EightyPerCentInUseOrUnreadableFiguresRefuseANewWindow) {
    shell::RecordingSink sink;
    FixedMemory at79(InUse(794)); // 79.4 % rounds to 79
    EXPECT_TRUE(CheckMemory(at79, sink));
    EXPECT_TRUE(sink.Messages.empty());
    for (const std::uint64_t load : {796U, 1000U}) {
        FixedMemory full(InUse(load));
        EXPECT_FALSE(CheckMemory(full, sink)) << load;
    }
    ASSERT_EQ(sink.Messages.size(), 2U);
    EXPECT_EQ(sink.Messages[0].Text, "A memory is extremely insufficient,Please end application.");
    EXPECT_EQ(sink.Messages[0].Icon, shell::icons::Stop);

    FixedMemory unreadable(std::nullopt);
    EXPECT_FALSE(CheckMemory(unreadable, sink));
    FixedMemory empty(MemoryFigures{});
    EXPECT_FALSE(CheckMemory(empty, sink));
    ASSERT_EQ(sink.Messages.size(), 4U);
    EXPECT_EQ(sink.Messages[3].Text, "Windows Platform is unknown.");
}

TEST(ProcMemInfoTest, ReadsAvailableMemoryAndSwapFromTheSystemOrAFile) {
    const auto figures = ParseMemInfo("MemTotal:       16000000 kB\n"
                                      "MemFree:          1000000 kB\n"
                                      "MemAvailable:     6000000 kB\n"
                                      "SwapTotal:        4000000 kB\n"
                                      "SwapFree:         2000000 kB\n");
    ASSERT_TRUE(figures);
    EXPECT_EQ(figures->PhysicalFree, 6000000ULL * 1024);
    EXPECT_EQ(MemoryLoadPercent(*figures), 60); // (20 - 8) / 20 GB in use

    const auto older =
        ParseMemInfo("MemTotal: 100 kB\nMemFree: 50 kB\nSwapTotal: 0 kB\nSwapFree: 0 kB\n");
    ASSERT_TRUE(older);
    EXPECT_EQ(older->PhysicalFree, 50U * 1024);
    EXPECT_FALSE(ParseMemInfo("MemTotal: 100 kB\nMemFree: 50 kB\n"));
    EXPECT_FALSE(ParseMemInfo("MemTotal: lots\nMemFree: 50 kB\nSwapTotal: 0 kB\nSwapFree: 0 kB"));

    EXPECT_TRUE(ProcMemInfo().Read());
    torvane::testing::TempFolder folder;
    EXPECT_FALSE(ProcMemInfo(folder / "meminfo").Read());
    torvane::testing::WriteText(folder / "meminfo", "MemTotal: 1000 kB\nMemAvailable: 200 kB\n"
                                                    "SwapTotal: 0 kB\nSwapFree: 0 kB\n");
    EXPECT_EQ(MemoryLoadPercent(ProcMemInfo(folder / "meminfo").Read().value()), 80);
}

} // namespace
} // namespace torvane::load
