#include "layout/layout_save_rules.h"
#include "layout_store_fixture.h"

#include <gtest/gtest.h>

namespace torvane::layout {
namespace {

namespace fs = std::filesystem;
using testing::NameList;

class LayoutSaveRulesTest : public ::testing::Test, protected testing::LayoutStoreFixture {
protected:
    LayoutSaveRulesTest() {
        paths_.MakeFolders();
        store_.LoadLayouts();
    }

    // Makes the display that the next save writes recognisable by the top of its Ne band.
    void Pend(std::int16_t neTop) {
        graph::DisplaySet display = Record(0);
        display.Items[0].Top = neTop;
        store_.SetPendingLayout(display, display.Time);
    }
    void SaveNames(const NameList& names) {
        for (const std::string& name : names) {
            ASSERT_TRUE(store_.SaveLayout(name));
        }
    }
    std::string FileBytes() const { return torvane::testing::ReadText(File()); }
    void ExpectMessage(const char* text, int buttons, int icon) {
        ASSERT_EQ(sink_.Messages.size(), 1u);
        EXPECT_EQ(sink_.Messages[0].Text, text);
        EXPECT_EQ(sink_.Messages[0].Buttons, buttons);
        EXPECT_EQ(sink_.Messages[0].Icon, icon);
        sink_.Messages.clear();
    }
};

TEST_F(LayoutSaveRulesTest, DeleteIsOfferedWithANamedLayoutAndSaveOnlyBelowTen) {
    LayoutSaveOffer offer = LayoutSaveOfferOf(store_);
    EXPECT_TRUE(offer.Layouts.empty());
    EXPECT_TRUE(offer.SaveEnabled);
    EXPECT_FALSE(offer.DeleteEnabled);
    EXPECT_EQ(offer.ChosenRow, -1);

    SaveNames({"Mugello", "Jerez"});
    offer = LayoutSaveOfferOf(store_);
    EXPECT_EQ(offer.Layouts, (std::vector<NamedLayout>{{1, "Mugello"}, {2, "Jerez"}}));
    EXPECT_TRUE(offer.SaveEnabled);
    EXPECT_TRUE(offer.DeleteEnabled);
    EXPECT_EQ(offer.ChosenRow, 0);

    SaveNames({"3", "4", "5", "6", "7", "8", "9"});
    EXPECT_TRUE(LayoutSaveOfferOf(store_).SaveEnabled);
    SaveNames({"10"});
    offer = LayoutSaveOfferOf(store_);
    EXPECT_EQ(offer.Layouts.size(), 10u);
    EXPECT_EQ(offer.Layouts.back(), (NamedLayout{10, "10"}));
    EXPECT_FALSE(offer.SaveEnabled);
}

TEST_F(LayoutSaveRulesTest, ANameIsTrimmedAndAnExistingOneOverwrittenOnlyOnYes) {
    const std::string before = FileBytes();
    for (const char* blank : {"", "   "}) {
        EXPECT_EQ(SaveNamedLayout(store_, blank, sink_), LayoutSaveResult::NameMissing);
        ExpectMessage(LayoutNameMissingMessage, shell::buttons::Ok, shell::icons::Warning);
    }
    EXPECT_EQ(FileBytes(), before);

    Pend(11);
    EXPECT_EQ(SaveNamedLayout(store_, "  Mugello wet ", sink_), LayoutSaveResult::Saved);
    EXPECT_TRUE(sink_.Messages.empty());
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "Mugello wet"}));
    EXPECT_EQ(NeTop(1), 11);

    Pend(22);
    sink_.SetAnswer(shell::answers::No);
    EXPECT_EQ(SaveNamedLayout(store_, "Mugello wet", sink_), LayoutSaveResult::Declined);
    ExpectMessage(LayoutExistsMessage, shell::buttons::YesNo, shell::icons::Warning);
    EXPECT_EQ(NeTop(1), 11);

    sink_.SetAnswer(shell::answers::Yes);
    EXPECT_EQ(SaveNamedLayout(store_, "Mugello wet ", sink_), LayoutSaveResult::Saved);
    ExpectMessage(LayoutExistsMessage, shell::buttons::YesNo, shell::icons::Warning);
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "Mugello wet"}));
    EXPECT_EQ(NeTop(1), 22);

    // Record 0 is not among the listed layouts: its name is asked about nowhere and appended.
    EXPECT_EQ(SaveNamedLayout(store_, "INITIALIZE", sink_), LayoutSaveResult::Saved);
    EXPECT_TRUE(sink_.Messages.empty());
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "Mugello wet", "INITIALIZE"}));
}

TEST_F(LayoutSaveRulesTest, ADeleteHappensOnlyAfterOk) {
    SaveNames({"A", "B", "C"});
    sink_.SetAnswer(shell::answers::Cancel);
    EXPECT_FALSE(DeleteChosenLayout(store_, 2, sink_));
    ExpectMessage(DeleteLayoutMessage, shell::buttons::OkCancel, shell::icons::Information);
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "A", "B", "C"}));

    sink_.SetAnswer(shell::answers::Ok);
    EXPECT_TRUE(DeleteChosenLayout(store_, 2, sink_));
    ExpectMessage(DeleteLayoutMessage, shell::buttons::OkCancel, shell::icons::Information);
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "A", "C"}));
    EXPECT_EQ(LayoutSaveOfferOf(store_).Layouts, (std::vector<NamedLayout>{{1, "A"}, {2, "C"}}));
}

// A layout file that cannot be read any more: the operator is told, the store keeps the
// layouts it holds, and the caller stays in the dialog.
TEST_F(LayoutSaveRulesTest, AnUnreadableFileIsReportedAndLosesNothing) {
    SaveNames({"A"});
    fs::remove(File());
    fs::create_directory(File());
    EXPECT_EQ(SaveNamedLayout(store_, "B", sink_), LayoutSaveResult::Failed);
    ASSERT_EQ(sink_.Messages.size(), 1u);
    EXPECT_TRUE(sink_.Messages[0].Text.starts_with("Error(")) << sink_.Messages[0].Text;
    sink_.Messages.clear();
    EXPECT_FALSE(DeleteChosenLayout(store_, 1, sink_));
    EXPECT_EQ(sink_.Messages.size(), 2u); // the question, then the failure
    EXPECT_EQ(Names(), (NameList{"INITIALIZE", "A"}));
}

} // namespace
} // namespace torvane::layout
