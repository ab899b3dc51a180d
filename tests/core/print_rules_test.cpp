#include "output/paper_names.h"
#include "output/print_dialog_rules.h"
#include "output/print_geometry.h"

#include <gtest/gtest.h>

#include <vector>

namespace torvane::output {
namespace {

TEST(PaperNames, NumbersMapToTheTableAndUnknownNumbersAreLeftOut) {
    EXPECT_EQ(PaperNameOf(1), "Letter,8 1/2 x 11 ins.");
    EXPECT_EQ(PaperNameOf(9), "A4,210 x 297 mm");
    EXPECT_EQ(PaperNameOf(16), "10 x 14 ins. ");
    EXPECT_EQ(PaperNameOf(19), "Envelope  #9,3 7/8 x 8 7/8 ins.");
    EXPECT_EQ(PaperNameOf(38), "Envelope,3 5/8 x 6 1/2 ins.");
    EXPECT_EQ(PaperNameOf(UserPaperNumber), "User");
    for (const int number : {0, -1, 39, 255, 257, 70}) {
        EXPECT_EQ(PaperNameOf(number), "Nothing") << number;
    }
    EXPECT_EQ(TablePaperNumbers().size(), 38U);

    // The printer's order stays; "Nothing" entries vanish, "User" stays.
    const std::vector<int> reported{9, 70, 1, 256, 39, 8};
    const std::vector<PaperEntry> list = PaperListOf(reported);
    ASSERT_EQ(list.size(), 4U);
    EXPECT_EQ(list[0].Number, 9);
    EXPECT_EQ(list[1].Name, "Letter,8 1/2 x 11 ins.");
    EXPECT_EQ(list[2].Name, "User");
    EXPECT_EQ(list[3].Name, "A3,297 x 420 mm");
    EXPECT_EQ(list[3].Reported, 5U);
}

TEST(PaperNames, ACommandLineNamesAPaperByItsShortOrWholeName) {
    EXPECT_EQ(PaperNumberOf("A4"), 9);
    EXPECT_EQ(PaperNumberOf(" letter "), 1);
    EXPECT_EQ(PaperNumberOf("Envelope DL"), 27);
    EXPECT_EQ(PaperNumberOf("A4,210 x 297 mm"), 9);
    EXPECT_EQ(PaperNumberOf("10 x 14 ins."), 16);
    EXPECT_EQ(PaperNumberOf("Envelope"), 36);
    EXPECT_FALSE(PaperNumberOf("A7"));
    EXPECT_FALSE(PaperNumberOf(""));
    EXPECT_FALSE(PaperNumberOf("User"));
}

TEST(PrintDialogRules, PrintersOfTheRenderingSubsystemAreNotListed) {
    EXPECT_TRUE(ListsPrinter("Office"));
    EXPECT_TRUE(ListsPrinter("My Rendering Subsystem"));
    EXPECT_FALSE(ListsPrinter("Rendering Subsystem"));
    EXPECT_FALSE(ListsPrinter("Rendering Subsystem #2"));
}

TEST(PrintDialogRules, TheBoxesAreCheckedInOrderWithTheFirstRefusal) {
    struct Case {
        const char* Copies;
        const char* Zoom;
        std::string_view Message;
        PrintEntry Focus;
    };
    const Case cases[] = {
        {"", "", "Input Copies.", PrintEntry::Copies},
        {" ", "100", "Input Copies.", PrintEntry::Copies},
        {"a", "", "Input numerical value.", PrintEntry::Copies},
        {"inf", "100", "Input numerical value.", PrintEntry::Copies},
        {"1e2", "100", "Input numerical value.", PrintEntry::Copies},
        {"--1", "100", "Input numerical value.", PrintEntry::Copies},
        {"0", "abc", "Input value beyond 1.", PrintEntry::Copies},
        {"-1", "100", "Input value beyond 1.", PrintEntry::Copies},
        {"0.9", "100", "Input value beyond 1.", PrintEntry::Copies},
        {"1", "", "Input Zoom.", PrintEntry::Zoom},
        {"1", "x1", "Input numerical value.", PrintEntry::Zoom},
        {"1", ".", "Input numerical value.", PrintEntry::Zoom},
        {"1", "49", "Input value from 50 to 200.", PrintEntry::Zoom},
        {"1", "201", "Input value from 50 to 200.", PrintEntry::Zoom},
        {"1", "-50", "Input value from 50 to 200.", PrintEntry::Zoom},
    };
    for (const Case& c : cases) {
        const PrintEntryCheck check = CheckPrintEntries(c.Copies, c.Zoom);
        EXPECT_FALSE(check.Passed) << c.Copies << "/" << c.Zoom;
        EXPECT_EQ(check.Message, c.Message) << c.Copies << "/" << c.Zoom;
        EXPECT_EQ(check.Focus, c.Focus) << c.Copies << "/" << c.Zoom;
    }
    struct Pass {
        const char* Copies;
        const char* Zoom;
        int CopyCount;
        int Percent;
    };
    for (const Pass& p : {Pass{"1", "50", 1, 50}, Pass{"999", "200", 999, 200},
                          Pass{" 2", "+75", 2, 75}, Pass{"1.5", "99.5", 2, 100}}) {
        const PrintEntryCheck check = CheckPrintEntries(p.Copies, p.Zoom);
        ASSERT_TRUE(check.Passed) << p.Copies << "/" << p.Zoom;
        EXPECT_EQ(check.Copies, p.CopyCount);
        EXPECT_EQ(check.Zoom, p.Percent);
    }
}

TEST(PrintGeometry, TheFrameCutByModeAndNothingCutInAnyOtherMode) {
    struct Case {
        int Mode;
        CaptureArea Area;
    };
    // A window of 800 × 600 with a caption of 18 pixels.
    for (const Case& c : {Case{0, {3, 21, 794, 550}}, Case{2, {3, 22, 795, 549}},
                          Case{-1, {0, 0, 800, 600}}, Case{1, {0, 0, 800, 600}}}) {
        const CaptureArea area = CaptureAreaOf(c.Mode, 18, 800, 600);
        EXPECT_EQ(area.Left, c.Area.Left) << c.Mode;
        EXPECT_EQ(area.Top, c.Area.Top) << c.Mode;
        EXPECT_EQ(area.Width, c.Area.Width) << c.Mode;
        EXPECT_EQ(area.Height, c.Area.Height) << c.Mode;
    }
    // A window no larger than its frame leaves nothing to print.
    const CaptureArea tiny = CaptureAreaOf(0, 18, 5, 40);
    EXPECT_EQ(tiny.Width, 0);
    EXPECT_EQ(tiny.Height, 0);
}

TEST(PrintGeometry, TheZoomKeepsThePicturesShareOfTheNewPaper) {
    // A4 to A3 doubles the area: half of +100 % is added.
    EXPECT_EQ(CorrectedZoom(100, 210, 297, 297, 420), 150);
    // And back: half of -50 % taken off.
    EXPECT_EQ(CorrectedZoom(150, 297, 420, 210, 297), 125);
    // The orientation swaps the sides and keeps the area.
    EXPECT_EQ(CorrectedZoom(80, 210, 297, 297, 210), 80);
    // Half percents round to even: +12.5 gives 12, +37.5 gives 38.
    EXPECT_EQ(CorrectedZoom(100, 4, 100, 5, 100), 112);
    EXPECT_EQ(CorrectedZoom(100, 4, 100, 7, 100), 138);
    // No correction from an area that was not known.
    EXPECT_EQ(CorrectedZoom(100, 0, 297, 210, 297), 100);
}

TEST(PrintGeometry, ThePictureStandsCentredAndBeyondTheFullSizeShowsItsCentre) {
    const PagePlacement fits = CentrePicture(1000, 1400, 760, 480, 100);
    EXPECT_DOUBLE_EQ(fits.ScaleLeft, -120);
    EXPECT_DOUBLE_EQ(fits.ScaleTop, -460);
    EXPECT_DOUBLE_EQ(fits.Width, 760);
    EXPECT_DOUBLE_EQ(fits.Height, 480);

    const PagePlacement half = CentrePicture(1000, 1400, 760, 480, 50);
    EXPECT_DOUBLE_EQ(half.ScaleLeft, -310);
    EXPECT_DOUBLE_EQ(half.Width, 380);

    // 760 × 1.5 = 1140 is wider than the page: the origin turns positive, and the page's
    // centre column shows the picture's centre column.
    const PagePlacement over = CentrePicture(1000, 1400, 760, 480, 150);
    EXPECT_DOUBLE_EQ(over.ScaleLeft, 70);
    EXPECT_DOUBLE_EQ(over.ScaleTop, -340);
    EXPECT_DOUBLE_EQ(over.ScaleLeft + 1000 / 2.0, over.Width / 2);
}

} // namespace
} // namespace torvane::output
