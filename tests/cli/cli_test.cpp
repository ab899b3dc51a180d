// Runs the real torvane-cli binary on files made here, with TORVANE_HOME in a private folder.

#include "layout/layout_store.h"
#include "logdata/log_header.h"
#include "support/documented_json.h"
#include "support/hostile_files.h"
#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace torvane::cli {
namespace {

using logdata::LogHeader;
using logdata::SettingWord;
using nlohmann::json;
using torvane::testing::ProcessResult;
using torvane::testing::ReadText;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;
using torvane::testing::WriteWords16;

class CliTest : public ::testing::Test {
protected:
    ProcessResult Cli(const std::vector<std::string>& args) const {
        return torvane::testing::RunProcess(TORVANE_CLI, args,
                                            {"TORVANE_HOME=" + (folder / "home").string()});
    }

    // Packs a small run: Ne at 10 ms, TH at 25 ms, LAF1 on VM3 at 100 ms, laps.
    std::string PackSmallRun(int susMode = 0) const {
        LogHeader header;
        header.SetWord(SettingWord::Sus, static_cast<std::int16_t>(susMode));
        header.SetSampleTime(0, 10);
        header.SetSampleTime(1, 25);
        header.SetSampleTime(9, 100);
        header.SetWord(SettingWord::ThClose, 100);
        header.SetWord(SettingWord::ThOpen, 900);
        header.SetWord(SettingWord::LapOn, 1);
        header.SetWord(SettingWord::Laf, 1);
        header.SetWord(SettingWord::Reserved40, 10);
        const auto bytes = header.ToBytes();
        WriteText(folder / "header.bin", std::string(bytes.begin(), bytes.end()));

        std::vector<std::int16_t> ne(1000);
        for (std::size_t i = 0; i < ne.size(); ++i) {
            ne[i] = static_cast<std::int16_t>(100 + i % 400);
        }
        WriteWords16(folder / "ne.bin", ne);
        WriteWords16(folder / "th.bin", std::vector<std::int16_t>(400, 125));
        WriteWords16(folder / "vm3.bin", std::vector<std::int16_t>(100, 512));
        std::vector<std::int16_t> lap(40, 0);
        lap[9] = 1;   // 3000 ms
        lap[19] = 11; // 6000 - 50 ms
        lap[35] = 1;  // 10800 ms
        WriteWords16(folder / "lap.bin", lap);

        const std::string out = (folder / "small.rlg").string();
        const auto packed = Cli({"pack", "--header", (folder / "header.bin").string(), "--stream",
                                 "Ne=" + (folder / "ne.bin").string(), "--stream",
                                 "TH=" + (folder / "th.bin").string(), "--stream",
                                 "VM3=" + (folder / "vm3.bin").string(), "--stream",
                                 "LAP=" + (folder / "lap.bin").string(), out});
        EXPECT_EQ(packed.Status, 0) << packed.Err;
        return out;
    }

    TempFolder folder;
};

TEST_F(CliTest, ValuesInfoLapsAndUnpackOfAPackedRun) {
    const std::string run = PackSmallRun();
    auto values = Cli({"values", run, "--at", "0,10,15,1000", "--json"});
    ASSERT_EQ(values.Status, 0) << values.Err;
    json rows = json::parse(values.Out);
    // One row a time asked; the values themselves are the value reader's.
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[1]["values"]["Ne"], 2000);
    EXPECT_EQ(rows[3]["values"]["TH"], 50);
    EXPECT_FALSE(rows[3]["values"].contains("VFW"));

    // The home folder's air/fuel table converts LAF1.
    WriteText(folder / "home" / "INT" / "LAF_DATA.CSV", "0,0\r\n50,5\r\n");
    values = Cli({"values", run, "--at", "1000", "--json"});
    rows = json::parse(values.Out);
    EXPECT_NEAR(rows[0]["values"]["LAF1"].get<double>(), 512.0 / 1023 * 50, 1e-9);

    // Info, laps and unpack of the same run.
    const auto info = Cli({"info", run, "--json"});
    ASSERT_EQ(info.Status, 0) << info.Err;
    const json result = json::parse(info.Out);
    EXPECT_EQ(result["MeasureTime"], 10000);
    EXPECT_EQ(result["MinSampleTime"], 10);
    EXPECT_EQ(result["header"]["SampleTime"], json::parse("[10,25,0,0,0,0,0,0,0,100,0]"));
    ASSERT_EQ(result["slots"].size(), 12u);
    EXPECT_EQ(result["slots"][9],
              json::parse(R"({"slot":9,"channel":13,"name":"LAF1","exists":true})"));
    EXPECT_EQ(result["slots"][2]["exists"], false);
    EXPECT_EQ(result["BestLap"], 2950);
    // The private deployment folder is gone again; TMP was not used for it.
    EXPECT_TRUE(std::filesystem::is_directory(folder / "home" / "TMP"));

    const auto laps = Cli({"laps", run, "--json"});
    ASSERT_EQ(laps.Status, 0) << laps.Err;
    EXPECT_EQ(json::parse(laps.Out),
              json::parse(R"({"laps":[{"lap":1,"start":3000,"end":5950,"time":2950},
                                      {"lap":2,"start":5950,"end":10800,"time":4850}],
                              "best":2950})"));

    std::filesystem::create_directory(folder / "out");
    const auto unpacked = Cli({"unpack", run, (folder / "out").string(), "--number", "121"});
    ASSERT_EQ(unpacked.Status, 0) << unpacked.Err;
    EXPECT_EQ(unpacked.Out, "result 0\nDeployCount 12\n");
    EXPECT_EQ(std::filesystem::file_size(folder / "out" / "Ne-121.tmp"), 2000u);
    EXPECT_EQ(std::filesystem::file_size(folder / "out" / "VFW-121.tmp"), 0u);

    const auto refused = Cli({"unpack", run, (folder / "missing").string()});
    EXPECT_EQ(refused.Status, 1);
    EXPECT_EQ(refused.Out, "result -3\nDeployCount 0\n");
    EXPECT_EQ(refused.Err, "Can not make the file after deployment.\n");
}

// Scripts read these keys, so every --json output keeps to docs/cli-json.schema.json, key for key.
TEST_F(CliTest, JsonOutputsHaveExactlyTheDocumentedKeys) {
    using torvane::testing::DocumentedJson;
    using torvane::testing::Undocumented;
    const std::string run = PackSmallRun();
    const std::vector<std::pair<std::string, std::vector<std::string>>> commands{
        {"info", {"info", run, "--json"}},
        {"values", {"values", run, "--at", "0,15.5,1000", "--json"}},
        {"laps", {"laps", run, "--json"}},
        {"histogram", {"histogram", run, "--json"}}};
    for (const auto& [command, args] : commands) {
        const auto result = Cli(args);
        ASSERT_EQ(result.Status, 0) << result.Err;
        EXPECT_EQ(Undocumented(DocumentedJson(command), json::parse(result.Out)),
                  std::vector<std::string>{})
            << command;
    }

    // A renamed or a missing key is caught, not only a new one.
    auto laps = json::parse(Cli({"laps", run, "--json"}).Out);
    laps["BestLap"] = laps["best"];
    laps.erase("best");
    EXPECT_EQ(Undocumented(DocumentedJson("laps"), laps),
              (std::vector<std::string>{"$: no key best", "$: key BestLap is not documented"}));
}

TEST_F(CliTest, HistogramOfBothViewsWithTheRangeDialogsRules) {
    const std::string run = PackSmallRun();
    auto result = Cli({"histogram", run, "--json"});
    ASSERT_EQ(result.Status, 0) << result.Err;
    json out = json::parse(result.Out);
    // Every throttle sample at 50 %; engine speeds run 2.5 times from 2000 up to 9980 r/min.
    EXPECT_EQ(out["total"], 400);
    EXPECT_EQ(out["TH"]["counts"][10], 400);
    EXPECT_EQ(out["TH"]["shares"][10], "100.00");
    EXPECT_EQ(out["Ne"]["width"], 1000);
    EXPECT_EQ(out["Ne"]["counts"][2], 150);
    EXPECT_EQ(out["Ne"]["shares"][9], "10.00");
    EXPECT_EQ(out["Ne"]["max"], 15);

    result = Cli({"histogram", run, "--json", "--ne", "0", "20"});
    ASSERT_EQ(result.Status, 0) << result.Err;
    out = json::parse(result.Out);
    EXPECT_EQ(out["Ne"]["width"], 1);
    EXPECT_EQ(out["Ne"]["shares"][0], "0.00");

    result = Cli({"histogram", run, "--ne", "100", "119"});
    EXPECT_EQ(result.Status, 1);
    EXPECT_EQ(result.Err,
              "Input it so that the difference in DataStart and DataEnd may be beyond 20. \n");
    result = Cli({"histogram", run, "--ne", "x", "119"});
    EXPECT_EQ(result.Err, "Inputted data are not correct.\n");

    const std::string png = (folder / "ne.png").string();
    result = Cli({"histogram", run, "--png-ne", png});
    ASSERT_EQ(result.Status, 0) << result.Err;
    EXPECT_EQ(ReadText(png).substr(1, 3), "PNG");
}

TEST_F(CliTest, RefusedFilesGiveTheMessageAndStatusOne) {
    const std::string missing = (folder / "none.rlg").string();
    auto result = Cli({"info", missing});
    EXPECT_EQ(result.Status, 1);
    EXPECT_EQ(result.Err, "[" + missing + "]Can not find the specified log file.\n");

    WriteText(folder / "empty.rlg", "");
    result = Cli({"info", (folder / "empty.rlg").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_EQ(result.Err, "There is No data in a file.\n");

    WriteText(folder / "text.rlg", "this is no logging file at all");
    result = Cli({"values", (folder / "text.rlg").string(), "--at", "10"});
    EXPECT_EQ(result.Status, 1);
    EXPECT_EQ(result.Err, "File access error.\n");

    result = Cli({"laps", PackSmallRun(4)});
    EXPECT_EQ(result.Status, 1);
    EXPECT_EQ(result.Err, "A file format is not correct.\n");
}

TEST_F(CliTest, ExportWritesTheDefaultDisplaysItemsOrAllOverARangeAndRefusesBadInput) {
    const std::string run = PackSmallRun();
    const std::string csv = (folder / "run.csv").string();
    auto result = Cli({"export", run, csv});
    ASSERT_EQ(result.Status, 0) << result.Err;
    std::string text = ReadText(csv);
    // The factory display shows Ne and TH of this run, not LAF1 or LAP; the rows are the CSV
    // writer's.
    EXPECT_TRUE(text.starts_with("Time(s),Ne,TH\r\n0.000,0.00,0.00\r\n")) << text.substr(0, 80);

    // Record 0 of the home folder's layouts decides, as it does for a new window.
    const shell::AppPaths paths(folder / "home");
    shell::RecordingSink sink;
    layout::LayoutStore layouts(paths, sink);
    ASSERT_TRUE(layouts.LoadLayouts());
    graph::DisplaySet display;
    layouts.GetLayout(0, display);
    display.Items[logdata::LAF1].View = 1;
    layouts.SetLayout(0, display, display.Time);
    ASSERT_TRUE(layouts.SaveLastLayout(layouts.ToolBox()));
    ASSERT_EQ(Cli({"export", run, csv}).Status, 0);
    EXPECT_TRUE(ReadText(csv).starts_with("Time(s),Ne,TH,LAF1\r\n"));

    result = Cli({"export", run, csv, "--all", "--range", "2995", "3010"});
    ASSERT_EQ(result.Status, 0) << result.Err;
    EXPECT_EQ(ReadText(csv), "Time(s),Ne,TH,LAF1,LAP\r\n"
                             "2.995,7970.00,50.00,13.50,0.00\r\n"
                             "3.000,7980.00,50.00,13.50,1.00\r\n"
                             "3.005,7990.00,50.00,13.50,1.00\r\n"
                             "3.010,8000.00,50.00,13.50,1.00\r\n");

    // Bad ranges, an unwritable target and a damaged file are refused.
    std::filesystem::remove(csv);
    result = Cli({"export", run, (folder / "missing" / "run.csv").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_EQ(result.Err,
              "Error(76)\nPath not found: " + (folder / "missing" / "run.csv").string() + "\n");

    result = Cli({"export", run, (folder / "run.csv").string(), "--range", "3000", "2000"});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("--range"), std::string::npos);
    EXPECT_NE(Cli({"export", run, (folder / "run.csv").string(), "--range", "3000"}).Status, 0);
    EXPECT_FALSE(std::filesystem::exists(folder / "run.csv"));

    WriteText(folder / "text.rlg", "this is no logging file at all");
    result = Cli({"export", (folder / "text.rlg").string(), (folder / "run.csv").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_EQ(result.Err, "File access error.\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "run.csv"));
}

TEST_F(CliTest, BadArgumentsAreRefusedAndEveryCommandHasHelp) {
    WriteText(folder / "short.bin", "too short");
    auto result =
        Cli({"pack", "--header", (folder / "short.bin").string(), (folder / "x.rlg").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "x.rlg"));

    PackSmallRun();
    result = Cli({"pack", "--header", (folder / "header.bin").string(), "--stream",
                  "RPM=" + (folder / "ne.bin").string(), (folder / "x.rlg").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("Unknown stream"), std::string::npos);

    WriteText(folder / "odd.bin", "abc");
    result = Cli({"pack", "--header", (folder / "header.bin").string(), "--stream",
                  "Ne=" + (folder / "odd.bin").string(), (folder / "x.rlg").string()});
    EXPECT_EQ(result.Status, 1);

    EXPECT_NE(Cli({"values", (folder / "small.rlg").string(), "--at", "10,abc"}).Status, 0);
    WriteText(folder / "bad-setting.dat", "short");
    EXPECT_EQ(Cli({"generate", (folder / "g.rlg").string(), "--setting",
                   (folder / "bad-setting.dat").string()})
                  .Status,
              1);
    for (const char* command :
         {"pack", "unpack", "info", "values", "laps", "export", "generate", "render"}) {
        const auto help = Cli({command, "--help"});
        EXPECT_EQ(help.Status, 0) << command;
        EXPECT_NE(help.Out.find("Usage"), std::string::npos) << command;
    }
}

// Width and height of a PNG file from its header; zero when it is no PNG.
std::pair<std::uint32_t, std::uint32_t> PngSize(const std::filesystem::path& file) {
    const std::string bytes = torvane::testing::ReadText(file);
    if (bytes.size() < 24 || bytes.compare(1, 3, "PNG") != 0) {
        return {0, 0};
    }
    const auto word = [&bytes](std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            value = value << 8 | static_cast<std::uint8_t>(bytes[at + i]);
        }
        return value;
    };
    return {word(16), word(20)};
}

TEST_F(CliTest, RenderDrawsTheGraphOfARunAtTheGivenSizeAndTimeAndRefusesBadInput) {
    const std::string run = (folder / "run.rlg").string();
    ASSERT_EQ(Cli({"generate", run, "--minutes", "1", "--seed", "3"}).Status, 0);
    const auto first = folder / "first.png";
    auto result = Cli({"render", run, first.string(), "--size", "640x480"});
    ASSERT_EQ(result.Status, 0) << result.Err;
    EXPECT_EQ(result.Err, ""); // a batch job gets no platform chatter
    EXPECT_EQ(PngSize(first), (std::pair<std::uint32_t, std::uint32_t>{640, 480}));

    const auto zoomed = folder / "zoomed.png";
    result = Cli({"render", run, zoomed.string(), "--size", "640x480", "--offset", "20000",
                  "--pixels-per-step", "5", "--ms-per-step", "5"});
    ASSERT_EQ(result.Status, 0) << result.Err;
    EXPECT_NE(torvane::testing::ReadText(first), torvane::testing::ReadText(zoomed));

    // Record 0 of a new layout file is the factory display: the same picture.
    const std::vector<std::uint8_t> factory = layout::FactoryLayoutFile();
    WriteText(folder / "LAYOUT.DAT", std::string(factory.begin(), factory.end()));
    const auto laidOut = folder / "laid-out.png";
    result = Cli({"render", run, laidOut.string(), "--size", "640x480", "--layout",
                  (folder / "LAYOUT.DAT").string()});
    ASSERT_EQ(result.Status, 0) << result.Err;
    EXPECT_EQ(torvane::testing::ReadText(first), torvane::testing::ReadText(laidOut));

    // Bad input is refused and nothing is written.
    const std::string whole = torvane::testing::ReadText(run);
    WriteText(folder / "cut.rlg", whole.substr(0, whole.size() / 2));
    const auto out = folder / "out.png";
    result = Cli({"render", (folder / "cut.rlg").string(), out.string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_FALSE(result.Err.empty());
    EXPECT_NE(Cli({"render", run, out.string(), "--size", "90x400"}).Status, 0);
    EXPECT_NE(Cli({"render", run, out.string(), "--size", "wide"}).Status, 0);
    WriteText(folder / "LAYOUT.DAT", "short");
    result = Cli({"render", run, out.string(), "--layout", (folder / "LAYOUT.DAT").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("LAYOUT.DAT"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(out));
    int hostileCount = 0;
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        const auto layoutFile = folder / ("HOSTILE" + std::to_string(++hostileCount) + ".DAT");
        ASSERT_TRUE(hostile.Make(layoutFile)) << hostile.Kind;
        result = Cli({"render", run, out.string(), "--layout", layoutFile.string()});
        EXPECT_EQ(result.Status, 1) << hostile.Kind;
        EXPECT_NE(result.Err.find("cannot read a layout record from " + layoutFile.string()),
                  std::string::npos)
            << result.Err;
        EXPECT_FALSE(std::filesystem::exists(out)) << hostile.Kind;
    }

    result = Cli({"render", run, (folder / "missing" / "out.png").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("cannot write"), std::string::npos);
}

} // namespace
} // namespace torvane::cli
