#include "logdata/channels.h"
#include "logdata/laps.h"
#include "logdata/values.h"
#include "vehicle/demo_setting.h"
#include "vehicle/generate_run.h"
#include "vehicle/vehicle_model.h"

#include <gtest/gtest.h>

#include <algorithm>
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

template <typename Select, typename Value> double MeanWhere(Select select, Value value) {
    double sum = 0.0;
    int count = 0;
    for (const VehicleState& state : EightMinutes().States) {
        if (select(state)) {
            sum += value(state);
            ++count;
        }
    }
    return count == 0 ? 0.0 : sum / count;
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

TEST(VehicleModel, SameSeedSameWordsOtherSeedOtherWords) {
    const RecordedRun first = GenerateRunInMemory(DemoSetting(), 30'000.0, 5);
    EXPECT_EQ(first.Streams, GenerateRunInMemory(DemoSetting(), 30'000.0, 5).Streams);
    const RecordedRun other = GenerateRunInMemory(DemoSetting(), 30'000.0, 6);
    EXPECT_NE(first.Streams[VM3], other.Streams[VM3]);
    EXPECT_NE(first.Streams[VB], other.Streams[VB]);
}

// The words of a seed are the same on every platform. This value changes only when the model
// is changed on purpose; a difference between machines is a portability bug.
TEST(VehicleModel, WordsOfASeedArePinned) {
    EXPECT_EQ(Fingerprint(GenerateRunInMemory(DemoSetting(), 20'000.0, 1)), 11157868327102831656u);
}

TEST(VehicleModel, StartsAtRestOnTheLineIdlingThenLaunches) {
    const auto& states = EightMinutes().States;
    for (std::size_t i = 0; i < 300; ++i) {
        EXPECT_EQ(states[i].SpeedKmh, 0.0);
        EXPECT_EQ(states[i].Gear, 0);
        EXPECT_EQ(states[i].LapPositionM, 0.0);
    }
    EXPECT_NEAR(states[100].EngineRpm, IdleRpm, 100.0);
    const VehicleState& fiveSeconds = states[999];
    EXPECT_GT(fiveSeconds.SpeedKmh, 80.0);
    EXPECT_GE(fiveSeconds.Gear, 1);
}

TEST(VehicleModel, EngineSpeedRunsFromIdleToTheShiftSpeed) {
    const std::vector<double> ne = Decoded(Ne);
    const auto [low, high] = std::minmax_element(ne.begin(), ne.end());
    EXPECT_GE(*low, IdleRpm - 100.0);
    EXPECT_LE(*high, LimiterRpm);
    // The demo setting's Shift word is 256: 12800 r/min.
    EXPECT_GE(*high, 12700.0);
    EXPECT_LE(*high, 13000.0);
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

TEST(VehicleModel, SpeedsThrottleAndSupplyStayInRange) {
    for (int channel : {VFW, VRW}) {
        const std::vector<double> speed = Decoded(channel);
        EXPECT_LE(*std::max_element(speed.begin(), speed.end()), 320.0);
        EXPECT_GE(*std::max_element(speed.begin(), speed.end()), 250.0);
    }
    const std::vector<double> throttle = Decoded(TH);
    const auto [shut, open] = std::minmax_element(throttle.begin(), throttle.end());
    EXPECT_GE(*shut, 0.0);
    EXPECT_LE(*shut, 1.0);
    EXPECT_GE(*open, 99.0);
    EXPECT_LE(*open, 100.0);
    const std::vector<double> battery = Decoded(VB);
    const auto [flat, charged] = std::minmax_element(battery.begin(), battery.end());
    EXPECT_GE(*flat, 12.0);
    EXPECT_LE(*charged, 14.8);
}

// The rear spins a little under power and the front runs slow in the hardest stops; neither by
// more than a racing tyre's slip.
TEST(VehicleModel, WheelsSlipALittleAtTheLimits) {
    double rearSpin = 0.0;
    double frontLock = 0.0;
    for (const VehicleState& state : EightMinutes().States) {
        if (state.SpeedKmh > 30.0) {
            rearSpin = std::max(rearSpin, state.RearWheelKmh / state.SpeedKmh - 1.0);
            frontLock = std::min(frontLock, state.FrontWheelKmh / state.SpeedKmh - 1.0);
        }
    }
    EXPECT_GT(rearSpin, 0.03);
    EXPECT_LT(rearSpin, 0.12);
    EXPECT_LT(frontLock, -0.03);
    EXPECT_GT(frontLock, -0.12);
}

TEST(VehicleModel, SuspensionPitchesUnderBrakingAndPower) {
    for (const auto& [channel, travel] : {std::pair{FRSUS, 120.0}, std::pair{RRSUS, 80.0}}) {
        const std::vector<double> stroke = Decoded(channel);
        EXPECT_GE(*std::min_element(stroke.begin(), stroke.end()), 0.0);
        EXPECT_LE(*std::max_element(stroke.begin(), stroke.end()), travel + 0.2);
    }
    const auto braking = [](const VehicleState& state) {
        return state.LongitudinalAccel < -7.0;
    };
    const auto driving = [](const VehicleState& state) {
        return state.LongitudinalAccel > 4.0;
    };
    const auto front = [](const VehicleState& state) {
        return state.FrontStrokeMm;
    };
    const auto rear = [](const VehicleState& state) {
        return state.RearStrokeMm;
    };
    EXPECT_GT(MeanWhere(braking, front), MeanWhere(driving, front) + 50.0);
    EXPECT_GT(MeanWhere(driving, rear), MeanWhere(braking, rear) + 20.0);
}

TEST(VehicleModel, MixtureIsRichAtFullLoadAndLeanOnTheOverrun) {
    for (int channel : {LAF1, LAF2}) {
        const std::vector<double> ratio = Decoded(channel);
        EXPECT_GE(*std::min_element(ratio.begin(), ratio.end()), 11.5);
        EXPECT_LE(*std::max_element(ratio.begin(), ratio.end()), 18.0);
    }
    const auto fullLoad = [](const VehicleState& state) {
        return state.ThrottlePercent >= 99.0;
    };
    const auto overrun = [](const VehicleState& state) {
        return state.ThrottlePercent == 0.0 && state.BrakeDecel > 3.0;
    };
    const auto airFuel = [](const VehicleState& state) {
        return state.AirFuel[0];
    };
    EXPECT_LT(MeanWhere(fullLoad, airFuel), 13.0);
    EXPECT_GT(MeanWhere(overrun, airFuel), 16.0);
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
    const double lengthM = DefaultCircuit().LengthM();
    for (std::size_t i = 1; i < marks.size(); ++i) {
        const double lapMs = marks[i] - marks[i - 1];
        EXPECT_GT(lapMs, 100'000.0);
        EXPECT_LT(lapMs, 120'000.0);
        EXPECT_LT(lapMs, marks[0]);
        const double averageKmh = lengthM / lapMs * 3600.0;
        EXPECT_GT(averageKmh, 140.0);
        EXPECT_LT(averageKmh, 180.0);
    }
}

} // namespace
} // namespace torvane::sim
