#include "graph/scale.h"
#include "layout/default_layout.h"
#include "layout/layout_file.h"
#include "layout/layout_store.h"
#include "layout_bytes.h"

#include <gtest/gtest.h>

namespace torvane::layout {
namespace {

using graph::DisplaySet;
using graph::ItemDisplay;
using testing::RecordBytes;
using testing::StoredItem;

DisplaySet Decode(const std::vector<std::uint8_t>& bytes) {
    return DecodeLayoutRecord(std::span<const std::uint8_t, LayoutRecordSize>(bytes.data(), 318));
}

std::vector<std::uint8_t> Encode(const DisplaySet& record) {
    std::vector<std::uint8_t> bytes(LayoutRecordSize, 0xEE);
    EncodeLayoutRecord(record, std::span<std::uint8_t, LayoutRecordSize>(bytes));
    return bytes;
}

TEST(LayoutFile, RecordAndHeadFieldsAreLittleEndianWithoutPaddingAndOnlyOneShowsTheToolbox) {
    std::array<StoredItem, 16> items = testing::FactoryItems();
    items[0] = {1, 2, 3, 1, 0, 9, -2, 0x1234, 0x12345678, -1};
    items[15] = {0, 14, 2, 3, 1, 0, 32767, -32768, -2147483647 - 1, 2147483647};
    const auto bytes = RecordBytes(items, -3, 0x01020304, 70000, "Wet race");
    ASSERT_EQ(bytes.size(), LayoutRecordSize);

    const DisplaySet record = Decode(bytes);
    EXPECT_EQ(record.Items[0], (ItemDisplay{1, 2, 3, 1, 0, 9, -2, 0x1234, 0x12345678, -1}));
    EXPECT_EQ(record.Time, (graph::TimeScale{-3, 0x01020304, 70000}));
    EXPECT_EQ(record.Name, "Wet race");
    EXPECT_EQ(Encode(record), bytes);

    // The head shows the toolbox only for 1.
    for (const auto& [shown, expected] :
         std::array<std::pair<std::int32_t, bool>, 3>{{{1, true}, {0, false}, {-1, false}}}) {
        const auto head = testing::HeadBytes(shown, -5, 70000);
        const ToolBoxPlace place =
            DecodeLayoutHead(std::span<const std::uint8_t, LayoutHeadSize>(head.data(), 12));
        EXPECT_EQ(place, (ToolBoxPlace{expected, -5, 70000})) << shown;
    }
    std::array<std::uint8_t, LayoutHeadSize> out{};
    EncodeLayoutHead({true, 3000, 400}, out);
    EXPECT_EQ(std::vector<std::uint8_t>(out.begin(), out.end()), testing::HeadBytes(1, 3000, 400));
}

TEST(LayoutFile, NamesKeepTwentyBytesAndReadBackTrimmed) {
    DisplaySet record = DefaultLayout();
    record.Name = "ABCDEFGHIJKLMNOPQRSTUVWXY"; // 25 bytes
    const auto bytes = Encode(record);
    EXPECT_EQ(std::string(bytes.begin() + 298, bytes.end()), "ABCDEFGHIJKLMNOPQRST");

    record.Name = "short";
    const auto shortName = Encode(record); // padded with zero bytes, not the buffer's 0xEE
    EXPECT_EQ(std::string(shortName.begin() + 298, shortName.end()),
              std::string("short") + std::string(15, '\0'));
    // A character of two bytes that would straddle the cut is left out whole.
    EXPECT_EQ(StoredLayoutName("0123456789012345678\xC3\xA9"), "0123456789012345678");
    EXPECT_EQ(StoredLayoutName("012345678901234567\xC3\xA9xyz"), "012345678901234567\xC3\xA9");

    const auto padded =
        RecordBytes(testing::FactoryItems(), 1, 1, 1, std::string("  Dry \0tail", 11));
    EXPECT_EQ(Decode(padded).Name, "Dry");
}

TEST(DefaultLayout, EachBandSpansItsDefaultScaleAndTheFirstReadingTurnsDeto2sGridOff) {
    const DisplaySet factory = DefaultLayout();
    for (int channel = 0; channel < logdata::ChannelCount; ++channel) {
        const ItemDisplay& item = factory.Items[static_cast<std::size_t>(channel)];
        graph::ScaleRecord scale;
        ASSERT_TRUE(graph::ScaleFor(channel, graph::DefaultScaleNumber(channel), scale));
        EXPECT_EQ(item.Zoom, graph::DefaultScaleNumber(channel)) << channel;
        EXPECT_EQ(item.Bottom, item.Top + graph::BandHeight(scale)) << channel;
    }
    // The factory DETO2 is hidden with its grid on, which the first reading turns off.
    DisplaySet repaired = factory;
    RepairLayout(repaired);
    DisplaySet expected = factory;
    expected.Items[5].Grid = 0;
    EXPECT_EQ(repaired, expected);
}

DisplaySet Repaired(int channel, ItemDisplay item) {
    DisplaySet record = DefaultLayout();
    record.Items[static_cast<std::size_t>(channel)] = item;
    RepairLayout(record);
    return record;
}

TEST(RepairLayout, StylesOutOfRangeBecomeTheFirstAndBandsWithoutBottomAreRebuilt) {
    // View Color Line Point Grid Zoom Top Bottom Max Min
    EXPECT_EQ(Repaired(1, {2, 0, 0, 0, 1, 10, 5, 9, 7, 8}).Items[1],
              (ItemDisplay{1, 1, 1, 1, 1, 3, 5, 9, 7, 8}));
    EXPECT_EQ(Repaired(1, {0, 17, 4, 4, 1, 9, 5, 9, 0, 0}).Items[1],
              (ItemDisplay{0, 1, 1, 1, 0, 9, 5, 9, 0, 0}));
    EXPECT_EQ(Repaired(1, {1, 16, 3, 3, 7, 0, 5, 9, 0, 0}).Items[1],
              (ItemDisplay{1, 16, 3, 3, 7, 0, 5, 9, 0, 0}));

    // A band without a bottom is rebuilt by channel: the table's ends and its two odd rows.
    struct Case {
        int Channel;
        std::int16_t OldBottom;
        ItemDisplay Expected;
    };
    // Every item goes in hidden, with grid off, scale number 2 and top 7.
    const std::array<Case, 4> cases{{
        {0, 0, {1, 3, 2, 2, 0, 6, 30, 430, 11, 12}},
        {4, -20, {0, 3, 2, 2, 0, 8, 210, 380, 11, 12}}, // old bottom + 400
        {5, 0, {0, 3, 2, 2, 0, 2, 7, 0, 11, 12}},       // left alone
        {15, 0, {0, 3, 2, 2, 0, 7, 360, 860, 11, 12}},
    }};
    for (const Case& c : cases) {
        const ItemDisplay stored{0, 3, 2, 2, 0, 2, 7, c.OldBottom, 11, 12};
        EXPECT_EQ(Repaired(c.Channel, stored).Items[static_cast<std::size_t>(c.Channel)],
                  c.Expected)
            << "channel " << c.Channel;
    }
}

} // namespace
} // namespace torvane::layout
