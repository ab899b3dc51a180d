// Maps made from a run's streams and read from the logger.

#include "core/logger_test_support.h"
#include "support/temp_folder.h"
#include "views/detonation_layer.h"
#include "views/detonation_logger.h"
#include "views/dto_file.h"

#include <gtest/gtest.h>

namespace torvane::views {
namespace {

using torvane::testing::TempFolder;
using torvane::testing::WriteWords16;

constexpr int NeMs = 10; // 30 samples a period
constexpr int ThMs = 25; // 12 samples a period
constexpr int ThClose = 100;
constexpr int ThOpen = 900;

// Raw readings: Ne is rpm / 20, TH is the sensor's reading / 4.
std::int16_t NeRaw(int rpm) {
    return static_cast<std::int16_t>(rpm / 20);
}
std::int16_t ThRaw(int percent) {
    return static_cast<std::int16_t>((ThClose + (ThOpen - ThClose) * percent / 100) / 4);
}

// One period of the run: where it stands and what the counters say.
struct Period {
    int Rpm;
    int Throttle;
    std::int16_t Deto1;
    std::int16_t Deto2;
};

class DetonationFromStreams : public ::testing::Test {
protected:
    // Writes the periods' streams; only the last sample of a period carries its values, the
    // others stand at a speed that would land elsewhere.
    DetonationStreams Write(const std::vector<Period>& periods, bool withDeto2 = true) {
        std::vector<std::int16_t> ne, th, deto1, deto2;
        for (const Period& p : periods) {
            ne.insert(ne.end(), 300 / NeMs - 1, NeRaw(9000));
            ne.push_back(NeRaw(p.Rpm));
            th.insert(th.end(), 300 / ThMs - 1, ThRaw(50));
            th.push_back(ThRaw(p.Throttle));
            deto1.push_back(p.Deto1);
            deto2.push_back(p.Deto2);
        }
        WriteWords16(folder / "Ne-010.tmp", ne);
        WriteWords16(folder / "TH-010.tmp", th);
        WriteWords16(folder / "DETO1-010.tmp", deto1);
        WriteWords16(folder / "DETO2-010.tmp", withDeto2 ? deto2 : std::vector<std::int16_t>{});
        return {folder / "Ne-010.tmp", folder / "TH-010.tmp", folder / "DETO1-010.tmp",
                folder / "DETO2-010.tmp"};
    }

    logdata::LogHeader Header(int neMs = NeMs, int thMs = ThMs) const {
        logdata::LogHeader header;
        header.SetSampleTime(logdata::Ne, static_cast<std::int16_t>(neMs));
        header.SetSampleTime(logdata::TH, static_cast<std::int16_t>(thMs));
        header.SetSampleTime(logdata::DETO1, 300);
        header.SetSampleTime(logdata::DETO2, 300);
        header.SetWord(logdata::SettingWord::ThClose, ThClose);
        header.SetWord(logdata::SettingWord::ThOpen, ThOpen);
        return header;
    }

    static int Cell(int row, int column) { return row * 20 + column; }

    TempFolder folder;
};

TEST_F(DetonationFromStreams, EachPeriodLandsInTheCellOfItsLastSample) {
    const auto streams = Write({
        {5000, 0, 1, 2},    // first row, first column
        {4999, 50, 9, 9},   // below the map: nothing
        {15020, 50, 9, 9},  // above the map: nothing
        {15000, 100, 3, 4}, // the top edges fall into the last row and column
        {7260, 37, 5, 6},   // row 4, column 7
        {7260, 37, 200, 0}, // 205 + 200 saturates
        {7260, 37, 100, 1},
    });
    const DetonationContent map = ComputeDetonationMap(streams, Header(), 12, 345);
    EXPECT_EQ(map.Maps[0][Cell(0, 0)], 1);
    EXPECT_EQ(map.Maps[1][Cell(0, 0)], 2);
    EXPECT_EQ(map.Maps[0][Cell(19, 19)], 3);
    EXPECT_EQ(map.Maps[1][Cell(19, 19)], 4);
    EXPECT_EQ(map.Maps[0][Cell(4, 7)], 255);
    EXPECT_EQ(map.Maps[1][Cell(4, 7)], 7);
    int sum = 0;
    for (const auto count : map.Maps[0]) {
        sum += count;
    }
    EXPECT_EQ(sum, 1 + 3 + 255); // the periods off the map added nothing
    EXPECT_EQ(map.Present, (std::array<bool, 2>{true, true}));

    const auto bytes = EncodeDetonation(map);
    EXPECT_EQ(BytesToLong(std::span(bytes).subspan(RunTimeOffset, 3)), 345u);
    EXPECT_EQ(BytesToLong(std::span(bytes).subspan(RunDistanceOffset, 2)), 12u);
}

TEST_F(DetonationFromStreams, WithoutThrottleEveryCountLandsInColumnZero) {
    const auto streams = Write({{6000, 80, 4, 0}, {8000, 100, 5, 0}});
    const DetonationContent map = ComputeDetonationMap(streams, Header(NeMs, 0), 0, 0);
    EXPECT_EQ(map.Maps[0][Cell(2, 0)], 4);
    EXPECT_EQ(map.Maps[0][Cell(6, 0)], 5);
    // An uncalibrated throttle counts as none.
    logdata::LogHeader flat = Header();
    flat.SetWord(logdata::SettingWord::ThOpen, ThClose);
    EXPECT_EQ(ComputeDetonationMap(streams, flat, 0, 0).Maps[0][Cell(6, 0)], 5);
}

TEST_F(DetonationFromStreams, TheShortestNonEmptyStreamEndsTheWalk) {
    // Long Ne and TH, DETO1 of 3 periods, DETO2 empty: three periods count and map 2 is absent.
    std::vector<Period> periods(250, {6000, 10, 1, 1});
    auto streams = Write(periods, false);
    WriteWords16(streams.Deto1, {1, 1, 1});
    const DetonationContent map = ComputeDetonationMap(streams, Header(), 0, 0);
    EXPECT_EQ(map.Maps[0][Cell(2, 2)], 3);
    EXPECT_EQ(map.Present, (std::array<bool, 2>{true, false}));
    EXPECT_EQ(map.Maps[1][Cell(2, 2)], 0);

    // Across several blocks of 100 periods, every period is read once.
    streams = Write(periods);
    EXPECT_EQ(ComputeDetonationMap(streams, Header(), 0, 0).Maps[0][Cell(2, 2)], 250);
    streams.Deto2.clear();
    EXPECT_EQ(ComputeDetonationMap(streams, Header(), 0, 0).Maps[1][Cell(2, 2)], 0);
}

TEST_F(DetonationFromStreams, ANeSamplingTimeOfZeroLeavesBothMapsEmptyButPresent) {
    const auto streams = Write({{6000, 10, 9, 9}});
    const DetonationContent map = ComputeDetonationMap(streams, Header(0), 0, 0);
    EXPECT_EQ(map.Maps[0], MapCounts{});
    EXPECT_EQ(map.Present, (std::array<bool, 2>{true, true}));
    // Nothing at all: an empty map, nothing present, still written.
    shell::RecordingSink sink;
    const auto file = GetDetonationFromLayer({}, Header(), 0, 0, folder.Path(), sink);
    EXPECT_EQ(file.filename(), "DETO0001.dto");
    EXPECT_EQ(std::filesystem::file_size(file), 807u);
    // A folder that cannot be written: told, no path.
    EXPECT_TRUE(GetDetonationFromLayer({}, Header(), 0, 0, folder / "gone", sink).empty());
    EXPECT_EQ(sink.Messages.size(), 1u);
}

using logger::Call;
using logger::Reply;
using logger::testing::ScriptedLink;

TEST(DetonationFromLogger, ReadsAnIdleOrAcquiringLoggerAndRefusesABusyOne) {
    TempFolder folder;
    struct Case {
        std::uint8_t State;
        bool Read;
        std::vector<std::string> Texts;
    };
    const std::vector<Case> cases{
        {TLM_STATE_IDLE, true, {}},
        {TLM_STATE_ACQUIRING, true, {}}, // not asked, not stopped
        {TLM_STATE_SENDING, false, {"Now logging data is transmitting."}},
        {TLM_STATE_READY, false, {}},
    };
    for (const Case& c : cases) {
        ScriptedLink scripted;
        scripted.Driver.state = c.State;
        scripted.Driver.detonationMap.bytMap1[5] = 9;
        scripted.Driver.detonationMap.bytMap2[7] = 4;
        scripted.Driver.detonationMap.lngRunTime = 0x12345;
        scripted.Driver.detonationMap.lngRunDistance = 77;
        scripted.Driver.detonationMap.intPresent = 2;
        const auto file = GetDetonationFromLogger(scripted.Link, folder.Path());
        EXPECT_EQ(!file.empty(), c.Read) << int{c.State};
        EXPECT_EQ(scripted.Sink.Texts(), c.Texts) << int{c.State};
        EXPECT_EQ(scripted.Driver.CountOf(Call::LoggingControl), 0);
        EXPECT_EQ(scripted.Driver.CountOf(Call::Close), 1);
        if (!c.Read) {
            continue;
        }
        DetonationBytes bytes{};
        std::error_code error;
        ASSERT_EQ(ReadDtoFile(file, bytes, error), DtoReadResult::Read);
        EXPECT_EQ(bytes[5], 9);
        EXPECT_EQ(bytes[400 + 7], 4);
        EXPECT_EQ(BytesToLong(std::span(bytes).subspan(800, 3)), 0x12345u);
        EXPECT_EQ(BytesToLong(std::span(bytes).subspan(803, 2)), 77u);
        EXPECT_EQ(bytes[805], 0);
        EXPECT_EQ(bytes[806], 1);
    }
}

TEST(DetonationFromLogger, DriverFailuresAreReportedAndGiveNoFile) {
    TempFolder folder;
    ScriptedLink notConnected;
    notConnected.Driver.Script(Call::Open, {Reply{.Result = TLM_ERR_NOT_CONNECTED}});
    EXPECT_TRUE(GetDetonationFromLogger(notConnected.Link, folder.Path()).empty());
    EXPECT_EQ(notConnected.Sink.Texts().at(0), "TorvaneDataLogger is not connected.");

    ScriptedLink dirty;
    dirty.Driver.ScriptRepeated(Call::GetTheDetonationMap, Reply{.Sense = 5}, 5);
    EXPECT_TRUE(GetDetonationFromLogger(dirty.Link, folder.Path()).empty());
    EXPECT_EQ(dirty.Sink.Texts(), std::vector<std::string>{"Sence code error. Error code = 005"});
    EXPECT_TRUE(folder.FileNames().empty());
}

} // namespace
} // namespace torvane::views
