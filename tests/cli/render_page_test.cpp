// torvane-cli render with further runs as layers and a PDF page as the output.

#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

namespace torvane::cli {
namespace {

using torvane::testing::ProcessResult;
using torvane::testing::ReadText;
using torvane::testing::RunProcess;
using torvane::testing::TempFolder;

// The size of the first page rendered by pdftoppm at 96 pixels an inch.
std::pair<int, int> PageSize(const std::filesystem::path& pdf) {
    const auto prefix = pdf.parent_path() / "page";
    RunProcess("/usr/bin/pdftoppm",
               {"-r", "96", "-gray", "-singlefile", pdf.string(), prefix.string()});
    std::istringstream in(ReadText(prefix.string() + ".pgm"));
    std::string magic;
    std::pair<int, int> size;
    in >> magic >> size.first >> size.second;
    return size;
}

class RenderPageTest : public ::testing::Test {
protected:
    ProcessResult Cli(const std::vector<std::string>& args) const {
        return RunProcess(TORVANE_CLI, args, {"TORVANE_HOME=" + (folder / "home").string()});
    }
    std::string Run(int seed) const {
        const std::string run = (folder / ("run" + std::to_string(seed) + ".rlg")).string();
        EXPECT_EQ(Cli({"generate", run, "--minutes", "1", "--seed", std::to_string(seed)}).Status,
                  0);
        return run;
    }
    TempFolder folder;
};

TEST_F(RenderPageTest, FurtherRunsAreLaidOverTheFirstInPngAndPdf) {
    const std::string first = Run(1);
    const std::string second = Run(2);
    const std::string third = Run(3);
    const auto alone = folder / "alone.png";
    const auto three = folder / "three.png";
    ASSERT_EQ(Cli({"render", first, alone.string()}).Status, 0);
    const ProcessResult laid =
        Cli({"render", first, three.string(), "--layer", second, "--layer", third});
    ASSERT_EQ(laid.Status, 0) << laid.Err;
    EXPECT_NE(ReadText(alone), ReadText(three));

    const auto page = folder / "three.pdf";
    ASSERT_EQ(Cli({"render", first, page.string(), "--layer", second, "--layer", third}).Status, 0);
    EXPECT_EQ(ReadText(page).substr(0, 5), "%PDF-");

    // A third further run, or one that cannot be read, makes nothing.
    const auto refused = folder / "refused.png";
    ProcessResult result = Cli(
        {"render", first, refused.string(), "--layer", second, "--layer", third, "--layer", first});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("at most two"), std::string::npos);
    const std::string whole = ReadText(second);
    torvane::testing::WriteText(folder / "cut.rlg", whole.substr(0, whole.size() / 2));
    result = Cli({"render", first, refused.string(), "--layer", (folder / "cut.rlg").string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_FALSE(result.Err.empty());
    EXPECT_FALSE(std::filesystem::exists(refused));
}

// The picture's place on the page is the desktop's (tests/app/print_test.cpp); here the options
// that choose the page.
TEST_F(RenderPageTest, APdfPageTakesItsPaperAndOrientationAndRefusesBadOnes) {
    const std::string run = Run(4);
    const auto a4 = folder / "a4.pdf";
    ASSERT_EQ(Cli({"render", run, a4.string(), "--zoom", "150"}).Status, 0);
    EXPECT_EQ(PageSize(a4), (std::pair{794, 1123}));
    const auto letter = folder / "letter.pdf";
    ASSERT_EQ(Cli({"render", run, letter.string(), "--paper", "letter", "--landscape"}).Status, 0);
    EXPECT_EQ(PageSize(letter), (std::pair{1056, 816})); // 11 x 8.5 inches

    // A paper not in the list, a zoom out of range and a folder that is not there: refused,
    // and no file, not even an empty one.
    const auto out = folder / "out.pdf";
    EXPECT_EQ(Cli({"render", run, out.string(), "--paper", "A7"}).Status, 1);
    EXPECT_NE(Cli({"render", run, out.string(), "--zoom", "49"}).Status, 0);
    EXPECT_NE(Cli({"render", run, out.string(), "--zoom", "201"}).Status, 0);
    EXPECT_FALSE(std::filesystem::exists(out));
    const ProcessResult missing = Cli({"render", run, (folder / "no" / "out.pdf").string()});
    EXPECT_EQ(missing.Status, 1);
    EXPECT_NE(missing.Err.find("cannot write"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder / "no"));
}

} // namespace
} // namespace torvane::cli
