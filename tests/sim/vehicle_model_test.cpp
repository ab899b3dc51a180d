#include "logdata/channels.h"
#include "logdata/laps.h"
#include "logdata/values.h"
#include "vehicle/demo_setting.h"
#include "vehicle/generate_run.h"
#include "vehicle/vehicle_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace torvane::sim {
namespace {

using namespace logdata;

constexpr std::uint64_t Seed = 11;
// The launch, the out-lap and three laps at pace.
constexpr double RunMs = 8.0 * 60'000.0;

// One ride seen twice: the bike's states, and the words the demo setting records of it.
struct Ride {
    std::vector<VehicleState> States;
    RecordedRun Words;
};

const Ride& EightMinutes() {
    static const Ride ride = [] {
        Ride made;
        VehicleModel model(Seed, ShiftEngineSpeed(DemoSetting()));
        made.States.reserve(static_cast<std::size_t>(RunMs / 5));
        for (int step = 0; step < RunMs / 5; ++step) {
            made.States.push_back(model.Step());
        }
        made.Words = GenerateRunInMemory(DemoSetting(), RunMs, Seed);
        return made;
    }();
    return ride;
}

std::vector<double> Decoded(int channel) {
    logger::LafTable laf;
    laf.SetPoints(logger::DefaultLafPoints());
    std::vector<double> values;
    for (std::int16_t word :
         EightMinutes().Words.Streams[static_cast<std::size_t>(ChannelStream(channel))]) {
        values.push_back(RawToValue(DemoSetting(), channel, word, laf));
    }
    return values;
}

std::uint64_t Fingerprint(const RecordedRun& run) {
    std::uint64_t hash = 0xCBF29CE484222325ULL;
    for (const auto& stream : run.Streams) {
        for (std::int16_t word : stream) {
            hash = (hash ^ static_cast<std::uint16_t>(word)) * 0x100000001B3ULL;
        }
    }
    return hash;
}

// The words of a seed are the same on every platform. This value changes only when the model
// is changed on purpose; a difference between machines is a portability bug.
TEST(VehicleModel, WordsOfASeedArePinnedAndAnotherSeedDiffers) {
    EXPECT_EQ(Fingerprint(GenerateRunInMemory(DemoSetting(), 20'000.0, 1)), 11157868327102831656u);
    EXPECT_NE(Fingerprint(GenerateRunInMemory(DemoSetting(), 20'000.0, 2)), 11157868327102831656u);
}

TEST(VehicleModel, StartsAtRestOnTheLineIdlingThenLaunches) {
    const auto& states = EightMinutes().States;
    for (std::size_t i = 0; i < 300; ++i) {
        EXPECT_EQ(states[i].SpeedKmh, 0.0);
        EXPECT_EQ(states[i].LapPositionM, 0.0);
    }
    EXPECT_NEAR(states[100].EngineRpm, IdleRpm, 100.0);
    EXPECT_GT(states[999].SpeedKmh, 80.0); // five seconds in
}

TEST(VehicleModel, DecodedChannelsSpanTheirRanges) {
    struct Case {
        int Channel;
        double LowAtLeast, LowAtMost, HighAtLeast, HighAtMost;
    };
    // The demo setting's Shift word is 256: 12800 r/min.
    for (const Case& c : std::array<Case, 9>{{{Ne, IdleRpm - 100.0, 1e9, 12700.0, 13000.0},
                                              {VFW, -1e9, 1e9, 250.0, 320.0},
                                              {VRW, -1e9, 1e9, 250.0, 320.0},
                                              {TH, 0.0, 1.0, 99.0, 100.0},
                                              {VB, 12.0, 1e9, -1e9, 14.8},
                                              {FRSUS, 0.0, 1e9, -1e9, 120.2},
                                              {RRSUS, 0.0, 1e9, -1e9, 80.2},
                                              {LAF1, 11.5, 1e9, -1e9, 18.0},
                                              {LAF2, 11.5, 1e9, -1e9, 18.0}}}) {
        const std::vector<double> values = Decoded(c.Channel);
        const auto [low, high] = std::minmax_element(values.begin(), values.end());
        EXPECT_GE(*low, c.LowAtLeast) << c.Channel;
        EXPECT_LE(*low, c.LowAtMost) << c.Channel;
        EXPECT_GE(*high, c.HighAtLeast) << c.Channel;
        EXPECT_LE(*high, c.HighAtMost) << c.Channel;
    }
}

// Below top gear the engine never runs past the shift speed: that is where the rider changes up.
TEST(VehicleModel, ShiftWordSetsWhereTheRiderChangesUp) {
    LogHeader setting = DemoSetting();
    for (const auto& [word, shiftRpm] : {std::pair{230, 11500.0}, std::pair{0, DefaultShiftRpm}}) {
        setting.SetWord(SettingWord::Shift, static_cast<std::int16_t>(word));
        ASSERT_EQ(ShiftEngineSpeed(setting), shiftRpm);
        VehicleModel model(Seed, shiftRpm);
        double highest = 0.0;
        for (int step = 0; step < 30'000; ++step) {
            const VehicleState state = model.Step();
            if (state.Gear < GearCount) {
                highest = std::max(highest, state.EngineRpm);
            }
        }
        EXPECT_GE(highest, shiftRpm - 50.0) << word;
        EXPECT_LE(highest, shiftRpm + 100.0) << word;
    }
}

TEST(VehicleModel, DetonationIsRareAndOnlyAtHighLoad) {
    int knocks = 0;
    for (const VehicleState& state : EightMinutes().States) {
        if (state.Detonation[0] + state.Detonation[1] > 0) {
            ++knocks;
            EXPECT_GE(state.EngineRpm, 10'000.0);
            EXPECT_GE(state.ThrottlePercent, 90.0);
        }
    }
    EXPECT_GT(knocks, 0);
    for (int stream : {DETO1, DETO2}) {
        const auto& words = EightMinutes().Words.Streams[static_cast<std::size_t>(stream)];
        const auto quiet = std::count(words.begin(), words.end(), 0);
        EXPECT_GT(static_cast<double>(quiet), 0.85 * static_cast<double>(words.size()));
        EXPECT_LE(*std::max_element(words.begin(), words.end()), 6);
    }
}

TEST(VehicleModel, LapMarksFallOncePerLapAtTheTimingLine) {
    const auto& lap = EightMinutes().Words.Streams[LapSlot];
    std::vector<double> marks;
    for (std::size_t i = 0; i < lap.size(); ++i) {
        ASSERT_GE(lap[i], 0);
        ASSERT_LE(lap[i], 60);
        if (lap[i] > 0) {
            marks.push_back(LapMarkTime(static_cast<std::int64_t>(i) + 1, lap[i]));
        }
    }
    std::vector<double> crossings;
    for (const VehicleState& state : EightMinutes().States) {
        if (state.CrossedLine) {
            crossings.push_back(static_cast<double>(state.TimeMs));
        }
    }
    EXPECT_EQ(marks, crossings);
    ASSERT_EQ(marks.size(), 4u);
    // The out-lap starts from rest, so it is the slowest.
    EXPECT_GT(marks[0], 115'000.0);
    for (std::size_t i = 1; i < marks.size(); ++i) {
        const double lapMs = marks[i] - marks[i - 1];
        EXPECT_GT(lapMs, 100'000.0);
        EXPECT_LT(lapMs, 120'000.0);
    }
}

} // namespace
} // namespace torvane::sim
