#include "logdata/laps.h"
#include "vehicle/demo_setting.h"
#include "vehicle/generate_run.h"
#include "vehicle/run_recorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace torvane::sim {
namespace {

using logdata::LapSlot;
using logdata::LogHeader;
using logdata::StreamCount;

// Feeds `steps` made-up states through a recorder and collects what the sink gets; `largest`
// is the most words the sink got at once.
RecordedRun RecordSteps(const LogHeader& setting, std::int64_t steps,
                        const std::function<void(VehicleState&)>& shape,
                        std::size_t chunkWords = RunRecorder::DefaultChunkWords,
                        std::size_t* largest = nullptr) {
    RecordedRun run;
    RunRecorder recorder(
        setting,
        [&](int stream, std::span<const std::int16_t> words) {
            if (largest != nullptr) {
                *largest = std::max(*largest, words.size());
            }
            auto& target = run.Streams[static_cast<std::size_t>(stream)];
            target.insert(target.end(), words.begin(), words.end());
        },
        chunkWords);
    for (std::int64_t step = 1; step <= steps; ++step) {
        VehicleState state;
        state.TimeMs = step * 5;
        shape(state);
        recorder.Record(state);
    }
    recorder.Flush();
    recorder.Flush(); // a second flush has nothing left to give
    return run;
}

LogHeader SettingWithIntervals(std::initializer_list<int> intervals, int lapWord) {
    LogHeader setting = DemoSetting();
    int entry = 0;
    for (int interval : intervals) {
        setting.SetSampleTime(entry++, static_cast<std::int16_t>(interval));
    }
    setting.SetWord(logdata::SettingWord::LapOn, static_cast<std::int16_t>(lapWord));
    return setting;
}

TEST(RunRecorder, SampleKIsTheStateAtKTimesTheIntervalWhateverTheChunkSize) {
    const LogHeader setting = SettingWithIntervals({25, 300, 5}, 0);
    // Ne reads rpm / 20: an engine speed of 4 × time makes Ne read the step number.
    const RecordedRun run = RecordSteps(setting, 120, [](VehicleState& state) {
        state.EngineRpm = 4.0 * static_cast<double>(state.TimeMs);
    });
    ASSERT_EQ(run.Streams[0].size(), 24u);
    for (std::size_t k = 1; k <= run.Streams[0].size(); ++k) {
        EXPECT_EQ(run.Streams[0][k - 1], static_cast<std::int16_t>(5 * k)) << "sample " << k;
    }

    // The chunk size changes only how the words arrive.
    const LogHeader demo = DemoSetting();
    const auto shape = [](VehicleState& state) {
        state.EngineRpm = static_cast<double>(state.TimeMs % 9000);
        state.CrossedLine = state.TimeMs % 1000 == 0;
    };
    std::size_t largest = 0;
    const RecordedRun chunked = RecordSteps(demo, 2000, shape, 7, &largest);
    EXPECT_EQ(largest, 7u);
    EXPECT_EQ(chunked.Streams, RecordSteps(demo, 2000, shape).Streams);
}

TEST(RunRecorder, StreamLengthsFollowTheIntervalsAndTheDuration) {
    const LogHeader setting = SettingWithIntervals({5, 10, 25, 50, 100, 300, 0, 7, -5, 10, 10}, 1);
    const double durationMs = 60'000.0 + 4.9; // a part of a step records nothing
    const RecordedRun run = GenerateRunInMemory(setting, durationMs, 3);
    const std::array<std::size_t, StreamCount> expected{12000, 6000, 2400, 1200, 600,  200,
                                                        0,     0,    0,    6000, 6000, 200};
    for (int stream = 0; stream < StreamCount; ++stream) {
        EXPECT_EQ(run.Streams[static_cast<std::size_t>(stream)].size(),
                  expected[static_cast<std::size_t>(stream)])
            << logdata::StreamNames[static_cast<std::size_t>(stream)];
    }

    const RecordedRun lapOff = GenerateRunInMemory(SettingWithIntervals({10}, 0), 60'000.0, 3);
    EXPECT_TRUE(lapOff.Streams[LapSlot].empty());
    for (double nothing : {0.0, 4.99, -100.0}) {
        const RecordedRun empty = GenerateRunInMemory(DemoSetting(), nothing, 3);
        EXPECT_TRUE(std::all_of(empty.Streams.begin(), empty.Streams.end(),
                                [](const auto& stream) { return stream.empty(); }));
    }
}

// A knock counter reports every knock of its interval, not just the one at the sample instant.
TEST(RunRecorder, DetonationWordsCountTheirWholeInterval) {
    LogHeader setting = SettingWithIntervals({10}, 0);
    setting.SetSampleTime(logdata::DETO1, 300);
    setting.SetSampleTime(logdata::DETO2, 5);
    const RecordedRun run = RecordSteps(setting, 180, [](VehicleState& state) {
        const std::int64_t step = state.TimeMs / 5;
        state.Detonation = {step % 7 == 0 ? 2 : 0, step % 60 == 1 ? 1 : 0};
    });
    // Steps 1..60 hold 8 multiples of 7, 61..120 hold 9, 121..180 hold 8; two knocks each.
    EXPECT_EQ(run.Streams[logdata::DETO1], (std::vector<std::int16_t>{16, 18, 16}));
    const auto& perStep = run.Streams[logdata::DETO2];
    ASSERT_EQ(perStep.size(), 180u);
    EXPECT_EQ(std::count(perStep.begin(), perStep.end(), 1), 3);
}

// Every 5 ms tick within a 300 ms step gets its own word, and the viewer's decoding gives the
// crossing time back exactly.
TEST(RunRecorder, LapWordsResolveCrossingsToTheTick) {
    const LogHeader setting = SettingWithIntervals({10}, 1);
    for (std::int64_t crossing = 5; crossing <= 900; crossing += 5) {
        const RecordedRun run = RecordSteps(setting, 240, [crossing](VehicleState& state) {
            state.CrossedLine = state.TimeMs == crossing;
        });
        const auto& lap = run.Streams[LapSlot];
        ASSERT_EQ(lap.size(), 4u);
        const auto marked =
            std::find_if(lap.begin(), lap.end(), [](auto word) { return word != 0; });
        ASSERT_NE(marked, lap.end());
        EXPECT_EQ(std::count(lap.begin(), lap.end(), 0), 3);
        EXPECT_EQ(logdata::LapMarkTime(marked - lap.begin() + 1, *marked),
                  static_cast<double>(crossing));
    }
}

} // namespace
} // namespace torvane::sim
