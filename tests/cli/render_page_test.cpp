// torvane-cli render with further runs as layers and a PDF page as the output.

#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace torvane::cli {
namespace {

using torvane::testing::ProcessResult;
using torvane::testing::ReadText;
using torvane::testing::RunProcess;
using torvane::testing::TempFolder;

// The first page rendered by pdftoppm at 96 pixels an inch: its size and the rectangle of its
// pixels darker than near-white (left, top, right, bottom).
struct Page {
    int Width = 0;
    int Height = 0;
    int Left = 0;
    int Top = 0;
    int Right = -1;
    int Bottom = -1;
};

Page RenderPage(const std::filesystem::path& pdf) {
    const auto prefix = pdf.parent_path() / "page";
    RunProcess("/usr/bin/pdftoppm",
               {"-r", "96", "-gray", "-singlefile", pdf.string(), prefix.string()});
    std::istringstream in(ReadText(prefix.string() + ".pgm"));
    std::string magic;
    int maximum = 0;
    Page page;
    in >> magic >> page.Width >> page.Height >> maximum;
    in.get();
    page.Left = page.Width;
    page.Top = page.Height;
    for (int y = 0; y < page.Height; ++y) {
        for (int x = 0; x < page.Width; ++x) {
            if (static_cast<unsigned char>(in.get()) < 235) {
                page.Left = std::min(page.Left, x);
                page.Right = std::max(page.Right, x);
                page.Top = std::min(page.Top, y);
                page.Bottom = std::max(page.Bottom, y);
            }
        }
    }
    return page;
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

TEST_F(RenderPageTest, APdfPageHoldsThePictureCentredAtTheZoomOnThePaper) {
    const std::string run = Run(4);
    Page pages[2];
    for (const int zoom : {100, 50}) {
        const auto pdf = folder / ("zoom" + std::to_string(zoom) + ".pdf");
        const ProcessResult result =
            Cli({"render", run, pdf.string(), "--size", "640x480", "--zoom", std::to_string(zoom)});
        ASSERT_EQ(result.Status, 0) << result.Err;
        pages[zoom == 100 ? 0 : 1] = RenderPage(pdf);
    }
    const Page& full = pages[0];
    const Page& half = pages[1];
    EXPECT_EQ(full.Width, 794); // A4 portrait
    EXPECT_EQ(full.Height, 1123);
    // At 100 % the picture's 640 pixels stay 640 pixels on the page, at 50 % half as many,
    // and both stand about the page's centre: the ink's offset from it halves too.
    EXPECT_LE(full.Right - full.Left + 1, 642); // a pixel of smoothing either side
    EXPECT_GT(full.Right - full.Left + 1, 600);
    EXPECT_NEAR(half.Right - half.Left, (full.Right - full.Left) / 2.0, 2.0);
    EXPECT_NEAR(half.Bottom - half.Top, (full.Bottom - full.Top) / 2.0, 2.0);
    const auto offset = [](const Page& page, bool across) {
        return across ? (page.Left + page.Right) / 2.0 - page.Width / 2.0
                      : (page.Top + page.Bottom) / 2.0 - page.Height / 2.0;
    };
    EXPECT_NEAR(offset(half, true), offset(full, true) / 2.0, 2.0);
    EXPECT_NEAR(offset(half, false), offset(full, false) / 2.0, 2.0);
    EXPECT_LE(std::abs(full.Left - (794 - 640) / 2), 10);
    EXPECT_LE(std::abs(full.Top - (1123 - 480) / 2), 10);

    const auto letter = folder / "letter.pdf";
    ASSERT_EQ(Cli({"render", run, letter.string(), "--paper", "letter", "--landscape"}).Status, 0);
    const Page across = RenderPage(letter);
    EXPECT_EQ(across.Width, 1056); // 11 × 96
    EXPECT_EQ(across.Height, 816);

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
