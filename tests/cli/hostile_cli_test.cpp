// The real torvane-cli against numbers and files chosen to break it: each case ends with a status
// and, when refused, a message, never a signal; ctest's timeout catches one that hangs.

#include "layout/layout_file.h"
#include "layout/layout_store.h"
#include "support/file_size_limit.h"
#include "support/hostile_files.h"
#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <functional>
#include <limits>

namespace torvane::cli {
namespace {

using torvane::testing::ProcessResult;
using torvane::testing::TempFolder;

class HostileCliTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        run_ = new TempFolder;
        const auto made = Cli({"generate", Run(), "--minutes", "0.5", "--seed", "3"});
        ASSERT_EQ(made.Status, 0) << made.Err;
    }
    static void TearDownTestSuite() { delete run_; }

    // The CLI, or a program that runs it with its own arguments first.
    static ProcessResult Cli(const std::vector<std::string>& args,
                             const std::vector<std::string>& wrapper = {}) {
        std::vector<std::string> all = args;
        if (!wrapper.empty()) {
            all.insert(all.begin(), TORVANE_CLI);
            all.insert(all.begin(), wrapper.begin() + 1, wrapper.end());
        }
        return torvane::testing::RunProcess(wrapper.empty() ? TORVANE_CLI : wrapper[0], all,
                                            {"TORVANE_HOME=" + (*run_ / "home").string()});
    }
    static std::string Run() { return (*run_ / "base.rlg").string(); }

    // A layout file whose record 0 is the factory display changed by edit.
    std::string LayoutFile(const std::function<void(graph::DisplaySet&)>& edit) const {
        std::vector<std::uint8_t> bytes = layout::FactoryLayoutFile();
        const std::span<std::uint8_t, layout::LayoutRecordSize> record(
            bytes.data() + layout::LayoutHeadSize, layout::LayoutRecordSize);
        graph::DisplaySet display = layout::DecodeLayoutRecord(record);
        edit(display);
        layout::EncodeLayoutRecord(display, record);
        const auto file = folder / ("LAYOUT" + std::to_string(++layouts_) + ".DAT");
        torvane::testing::WriteBytes(file, bytes);
        return file.string();
    }

    TempFolder folder;
    std::string out = (folder / "o.png").string();
    mutable int layouts_ = 0;
    static TempFolder* run_;
};

TempFolder* HostileCliTest::run_ = nullptr;

TEST_F(HostileCliTest, RenderRefusesNumbersOutsideTheirRangesAndDrawsTheExtremesWithin) {
    struct Case {
        std::vector<std::string> Args;
        bool Drawn;
    };
    const std::vector<Case> cases = {
        {{"--ms-per-step", "2147483647"}, true}, // the block arithmetic needs 62 bits
        {{"--pixels-per-step", "32767", "--ms-per-step", "1", "--offset", "2147483647"}, true},
        {{"--pixels-per-step", "65536"}, false}, // 16 bits in the layout file
        {{"--pixels-per-step", "40000"}, false},
        {{"--pixels-per-step", "0"}, false},
        {{"--ms-per-step", "2147483648"}, false},
        {{"--offset", "1e300"}, false},
        {{"--size", "100000x100000"}, false},
        {{"--size", "40000x200"}, false},
    };
    for (const Case& c : cases) {
        std::vector<std::string> args{"render", Run(), out};
        args.insert(args.end(), c.Args.begin(), c.Args.end());
        const ProcessResult result = Cli(args);
        const std::string name = c.Args[0] + " " + c.Args[1];
        if (c.Drawn) {
            EXPECT_EQ(result.Status, 0) << name << ": " << result.Err;
            EXPECT_TRUE(std::filesystem::exists(out)) << name;
        } else {
            EXPECT_GT(result.Status, 0) << name; // -1 would be a signal
            EXPECT_NE(result.Err.find(c.Args[0]), std::string::npos) << name << ": " << result.Err;
            EXPECT_FALSE(std::filesystem::exists(out)) << name;
        }
        std::filesystem::remove(out);
    }
    EXPECT_GT(Cli({"values", Run(), "--at", "1e300"}).Status, 0);
}

TEST_F(HostileCliTest, RenderDrawsLayoutValuesThroughTheStoresRepairOrRefusesThem) {
    constexpr std::int32_t Largest = std::numeric_limits<std::int32_t>::max();
    // Each must draw, within ctest's time, in bounded memory.
    const std::vector<std::function<void(graph::DisplaySet&)>> drawn = {
        [](graph::DisplaySet& d) {
            d.Time = {1, Largest, Largest};
        },
        [](graph::DisplaySet& d) {
            d.Time = {32767, Largest, 1};
        },
        [](graph::DisplaySet& d) {
            d.Time = {0, 0, 0};
        }, // repaired to 1, 5, 500
        [](graph::DisplaySet& d) {
            for (auto& item : d.Items) {
                item.Max = 1'000'000'000; // the scale column walks only the visible steps
            }
        },
        [](graph::DisplaySet& d) {
            for (auto& item : d.Items) {
                item.Max = Largest;
                item.Min = std::numeric_limits<std::int32_t>::min();
                item.Bottom = 32767;
            }
        },
    };
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        const ProcessResult result = Cli({"render", Run(), out, "--layout", LayoutFile(drawn[i])});
        EXPECT_EQ(result.Status, 0) << "case " << i << ": " << result.Err;
    }
    const std::string negative = LayoutFile([](graph::DisplaySet& d) { d.Time = {-5, 100, 100}; });
    std::filesystem::remove(out);
    const ProcessResult result = Cli({"render", Run(), out, "--layout", negative});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("cannot be drawn"), std::string::npos) << result.Err;
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(HostileCliTest, APictureThatCannotBeAllocatedIsRefused) {
    if (!std::filesystem::exists("/usr/bin/prlimit")) {
        GTEST_SKIP() << "no prlimit";
    }
    // Three 256 MiB surfaces do not fit in 600 MB of address space.
    const ProcessResult result =
        Cli({"render", Run(), out, "--size", "8192x8192"}, {"/usr/bin/prlimit", "--as=600000000"});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("not enough memory for a picture of 8192x8192"), std::string::npos)
        << result.Err;
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(HostileCliTest, CommandsRefuseAFifoOrADeviceInPlaceOfTheirFiles) {
    const auto init = *run_ / "home" / "INT";
    std::filesystem::create_directories(init);
    const std::string rlg = (folder / "o.rlg").string();
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        const auto given = folder / "given";
        ASSERT_TRUE(hostile.Make(given)) << hostile.Kind;
        for (const auto& args :
             std::vector<std::vector<std::string>>{{"pack", "--header", given.string(), rlg},
                                                   {"generate", rlg, "--setting", given.string()},
                                                   {"info", given.string()}}) {
            const ProcessResult result = Cli(args);
            EXPECT_EQ(result.Status, 1) << hostile.Kind << " " << args[0];
            EXPECT_FALSE(result.Err.empty()) << hostile.Kind << " " << args[0];
        }
        std::filesystem::remove(given);

        // A LAF table that cannot be read leaves the default table in force.
        std::filesystem::remove(init / "LAF_DATA.CSV");
        ASSERT_TRUE(hostile.Make(init / "LAF_DATA.CSV")) << hostile.Kind;
        for (const auto& args :
             std::vector<std::vector<std::string>>{{"render", Run(), out},
                                                   {"export", Run(), (folder / "o.csv").string()},
                                                   {"values", Run(), "--at", "1000"}}) {
            EXPECT_EQ(Cli(args).Status, 0) << hostile.Kind << " " << args[0];
        }
        std::filesystem::remove(init / "LAF_DATA.CSV");
    }
}

TEST_F(HostileCliTest, AFullDiskLeavesTheOldPictureAndTheOldExportAsTheyWere) {
    const std::string csv = (folder / "o.csv").string();
    torvane::testing::WriteText(out, "old picture");
    torvane::testing::WriteText(csv, "old export");
    {
        // Above the run's largest stream (6000 bytes), below the picture and the export.
        const torvane::testing::FileSizeLimit limit(12000);
        ASSERT_TRUE(limit.Active());
        const ProcessResult rendered = Cli({"render", Run(), out, "--size", "1600x1000"});
        EXPECT_EQ(rendered.Status, 1) << rendered.Err;
        EXPECT_NE(rendered.Err.find("cannot write"), std::string::npos) << rendered.Err;
        EXPECT_EQ(Cli({"export", Run(), csv}).Status, 1);
    }
    EXPECT_TRUE(torvane::testing::ReadText(out) == "old picture");
    EXPECT_TRUE(torvane::testing::ReadText(csv) == "old export");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()),
                            std::filesystem::directory_iterator()),
              2);
}

TEST_F(HostileCliTest, WorkFoldersGoOnATerminationSignalAndStaleOnesAtTheNextStart) {
    const auto tmp = folder / "tmp";
    std::filesystem::create_directories(tmp / "torvane-cli-2147483647-1"); // no such process
    const auto live = tmp / ("torvane-cli-" + std::to_string(::getpid()) + "-1");
    std::filesystem::create_directories(live);
    const auto longRun = folder / "long.rlg";
    ASSERT_EQ(Cli({"generate", longRun.string(), "--minutes", "120"}).Status, 0);
    const std::string csv = (folder / "o.csv").string();
    torvane::testing::WriteText(csv, "old export");

    const ProcessResult result = torvane::testing::RunProcess(
        "/usr/bin/timeout", {"-s", "TERM", "0.3", TORVANE_CLI, "export", longRun.string(), csv},
        {"TORVANE_HOME=" + (*run_ / "home").string(), "TMPDIR=" + tmp.string()});
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(tmp)) {
        left.push_back(entry.path().filename().string());
    }
    EXPECT_EQ(left, std::vector<std::string>{live.filename().string()});
    if (result.Status == 0) {
        GTEST_SKIP() << "the export ended before the signal";
    }
    EXPECT_EQ(result.Status, 124);
    EXPECT_TRUE(torvane::testing::ReadText(csv) == "old export");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()),
                            std::filesystem::directory_iterator()),
              3); // tmp, long.rlg, o.csv: no partial export
}

} // namespace
} // namespace torvane::cli
