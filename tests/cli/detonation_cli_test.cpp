// torvane-cli deto on packed runs and on .dto files made here.

#include "logdata/log_header.h"
#include "support/documented_json.h"
#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace torvane::cli {
namespace {

using logdata::LogHeader;
using logdata::SettingWord;
using nlohmann::json;
using torvane::testing::ProcessResult;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;
using torvane::testing::WriteWords16;

class DetonationCliTest : public ::testing::Test {
protected:
    ProcessResult Cli(const std::vector<std::string>& args) const {
        return torvane::testing::RunProcess(TORVANE_CLI, args,
                                            {"TORVANE_HOME=" + (folder / "home").string()});
    }

    // Ne at 10 ms, TH at 25 ms and DETO1 (DETO2 too when asked) for ten periods: period i at
    // 6000 r/min and 50 % counts i in DETO1 and 1 in DETO2.
    std::string PackRun(bool deto, bool deto2) const {
        LogHeader header;
        header.SetSampleTime(0, 10);
        header.SetSampleTime(1, 25);
        header.SetSampleTime(2, 10);
        header.SetSampleTime(4, deto ? 300 : 0);
        header.SetSampleTime(5, deto2 ? 300 : 0);
        header.SetWord(SettingWord::ThClose, 100);
        header.SetWord(SettingWord::ThOpen, 900);
        header.SetWord(SettingWord::Reserved40, 10);
        const auto bytes = header.ToBytes();
        WriteText(folder / "header.bin", std::string(bytes.begin(), bytes.end()));
        constexpr int Periods = 20;
        WriteWords16(folder / "ne.bin", std::vector<std::int16_t>(Periods * 30, 6000 / 20));
        WriteWords16(folder / "th.bin", std::vector<std::int16_t>(Periods * 12, (100 + 400) / 4));
        // 100 km/h for 6 s: 0 km, a distance rounds down.
        WriteWords16(folder / "vfw.bin", std::vector<std::int16_t>(Periods * 30, 100));
        std::vector<std::int16_t> counts(Periods);
        for (int i = 0; i < Periods; ++i) {
            counts[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(i);
        }
        WriteWords16(folder / "deto1.bin", counts);
        WriteWords16(folder / "deto2.bin", std::vector<std::int16_t>(Periods, 1));
        std::vector<std::string> args{"pack",
                                      "--header",
                                      (folder / "header.bin").string(),
                                      "--stream",
                                      "Ne=" + (folder / "ne.bin").string(),
                                      "--stream",
                                      "TH=" + (folder / "th.bin").string(),
                                      "--stream",
                                      "VFW=" + (folder / "vfw.bin").string()};
        if (deto) {
            args.insert(args.end(), {"--stream", "DETO1=" + (folder / "deto1.bin").string()});
        }
        if (deto2) {
            args.insert(args.end(), {"--stream", "DETO2=" + (folder / "deto2.bin").string()});
        }
        const std::string out = (folder / "run.rlg").string();
        args.push_back(out);
        const auto packed = Cli(args);
        EXPECT_EQ(packed.Status, 0) << packed.Err;
        return out;
    }

    TempFolder folder;
};

TEST_F(DetonationCliTest, ARunsMapIsSavedDrawnAndReadBackAsTheSameMap) {
    const std::string run = PackRun(true, true);
    const std::string dto = (folder / "saved.dto").string();
    const std::string png = (folder / "map.png").string();
    const auto made = Cli({"deto", run, "--out", dto, "--png", png, "--json"});
    ASSERT_EQ(made.Status, 0) << made.Err;
    const json map = json::parse(made.Out);
    EXPECT_EQ(torvane::testing::Undocumented(torvane::testing::DocumentedJson("deto"), map),
              std::vector<std::string>{});
    // Row 2 (6000 r/min), column 10 (50 %).
    EXPECT_EQ(map["map1"][2][10], 190);
    EXPECT_EQ(map["map2"][2][10], 20);
    EXPECT_EQ(map["total1"], 190);
    EXPECT_EQ(map["present"], json::array({true, true}));
    EXPECT_EQ(map["RunTime"], 6);
    EXPECT_EQ(map["RunDistance"], 0);
    EXPECT_EQ(std::filesystem::file_size(dto), 807u);

    const auto read = Cli({"deto", dto, "--json"});
    ASSERT_EQ(read.Status, 0) << read.Err;
    EXPECT_EQ(json::parse(read.Out), map);

    // The PNG is the window's 460 x 401 picture (IHDR: width and height, highest byte first).
    std::ifstream in(png, std::ios::binary);
    std::array<unsigned char, 24> head{};
    in.read(reinterpret_cast<char*>(head.data()), head.size());
    EXPECT_EQ((head[18] << 8) | head[19], 460);
    EXPECT_EQ((head[22] << 8) | head[23], 401);

    const auto text = Cli({"deto", run});
    EXPECT_EQ(text.Out, "Rundistance[km]  0\nRuntime          000H00M06S\n"
                        "DETO1            Total 190  Total/km 0\n"
                        "DETO2            Total 20  Total/km 0\n");
}

TEST_F(DetonationCliTest, RefusedInputsExitOneWithTheProgramsMessage) {
    WriteText(folder / "short.dto", std::string(806, '\0'));
    std::filesystem::create_directory(folder / "folder.dto");
    struct Case {
        std::string Input;
        std::string Err;
    };
    const std::vector<Case> cases{
        {(folder / "short.dto").string(), "Error detonation map data.\n"},
        {(folder / "none.dto").string(), "File not found.\n"},
        {(folder / "folder.dto").string(), "Error(75)"},
    };
    for (const Case& c : cases) {
        const auto result = Cli({"deto", c.Input, "--json"});
        EXPECT_EQ(result.Status, 1) << c.Input;
        EXPECT_TRUE(result.Err.starts_with(c.Err)) << result.Err;
        EXPECT_EQ(result.Out, "");
    }
    // A run without detonation counters makes no map; one without DETO2 makes map 1 only.
    const auto none = Cli({"deto", PackRun(false, false)});
    EXPECT_EQ(none.Status, 1);
    EXPECT_NE(none.Err.find("no detonation counter"), std::string::npos) << none.Err;
    const auto one = Cli({"deto", PackRun(true, false), "--json"});
    ASSERT_EQ(one.Status, 0) << one.Err;
    EXPECT_EQ(json::parse(one.Out)["present"], json::array({true, false}));
    // A save into a folder that is not there loses nothing and says so.
    const auto unsaved =
        Cli({"deto", (folder / "run.rlg").string(), "--out", (folder / "no" / "x.dto").string()});
    EXPECT_EQ(unsaved.Status, 1);
    EXPECT_TRUE(unsaved.Err.starts_with("Error(76)")) << unsaved.Err;
}

} // namespace
} // namespace torvane::cli
