// The virtual logger's device on a hand-driven clock: its states, recording, memory, transfer
// and sensor points.

#include "logger/command_policy.h"
#include "logger_test_support.h"
#include "rlg_container.h"
#include "support/temp_folder.h"
#include "vehicle/demo_setting.h"

namespace torvane::sim {
namespace {

using logdata::SettingWord;

logdata::LogHeader StartAtOnce(logdata::LogHeader setting) {
    setting.SetWord(SettingWord::StartTh, 0);
    setting.SetWord(SettingWord::StartNe, 0);
    return setting;
}

// Stops acquisition, sends the setting and acquires again: the operator's way.
void Configure(DeviceOnManualClock& logger, const logdata::LogHeader& setting) {
    logger.Stop();
    ASSERT_EQ(logger.Send(setting).bytSense, 0);
    TlmStatus status{};
    logger.device.LoggingControl(status, 0);
    ASSERT_EQ(status.bytState, TLM_STATE_ACQUIRING);
}

TEST(LoggerDevice, PowersOnIntoAcquisitionPassingStatesEndAndOthersRefuseWithASense) {
    DeviceOnManualClock idle(LoggerConfig{.StartAcquiring = false});
    EXPECT_EQ(idle.StateAfter(InitialisingTime), TLM_STATE_IDLE);
    DeviceOnManualClock logger;
    EXPECT_EQ(logger.StateAfter(0s), TLM_STATE_INITIALIZING);
    EXPECT_EQ(logger.StateAfter(InitialisingTime), TLM_STATE_ACQUIRING);
    TlmStatus status{};

    logger.device.LoggingControl(status, 1);
    EXPECT_EQ(status.bytState, TLM_STATE_READY);
    EXPECT_EQ(logger.StateAfter(StoppingTime), TLM_STATE_IDLE);

    logger.device.ClearFiles(status);
    EXPECT_EQ(status.bytState, TLM_STATE_WRITING_FLASH);
    EXPECT_EQ(logger.StateAfter(FlashWriteTime - 1ms), TLM_STATE_WRITING_FLASH);
    EXPECT_EQ(logger.StateAfter(1ms), TLM_STATE_IDLE);

    logger.device.InitializeSensor(status, TLM_INIT_REAR_SUSPENSION);
    EXPECT_EQ(status.bytState, TLM_STATE_SUSPENSION_INIT);
    EXPECT_EQ(logger.StateAfter(SensorInitTime), TLM_STATE_IDLE);

    logger.device.LoggingControl(status, 0);
    logger.device.LoggingControl(status, 1);
    logger.device.LoggingControl(status, 0);
    EXPECT_EQ(status.bytState, TLM_STATE_ACQUIRING) << "acquiring again ends the stopping state";
    logger.device.LoggingControl(status, 1);
    logger.clock.Advance(StoppingTime);

    logger.device.ServiceMode(status, TLM_SERVICE_TEST1);
    EXPECT_EQ(logger.StateAfter(ServiceTime), TLM_STATE_IDLE);
    // A heat run is acquisition under the service function: the program reads live signals
    // while it runs, which a busy logger would refuse.
    logger.device.ServiceMode(status, TLM_SERVICE_HEAT_RUN2);
    EXPECT_EQ(status.bytState, TLM_STATE_ACQUIRING);

    // What a state does not take is refused with a sense code.
    DeviceOnManualClock fresh;
    EXPECT_EQ(fresh.device.FileCount(status), 0);
    EXPECT_EQ(status.bytSense, SenseNotInThisState) << "still initialising";

    fresh.Run(2);
    EXPECT_EQ(fresh.device.ClearFiles(status), TLM_OK);
    EXPECT_EQ(status.bytSense, SenseNotInThisState) << "acquiring";
    EXPECT_EQ(status.bytState, TLM_STATE_ACQUIRING);
    EXPECT_EQ(fresh.Send(StartAtOnce(logdata::FreshSetting())).bytSense, SenseNotInThisState);

    fresh.Stop();
    fresh.device.ServiceMode(status, 99);
    EXPECT_EQ(status.bytSense, SenseBadArgument);
    TlmInitData points{};
    fresh.device.InitData(status, 1, points);
    EXPECT_EQ(status.bytSense, SenseBadArgument);
    fresh.device.GetStatus(status);
    EXPECT_EQ(status.bytSense, 0) << "a refusal leaves nothing behind";
}

TEST(LoggerDevice, RecordsOnlyOnceTheStartConditionsHold) {
    DeviceOnManualClock logger;
    logger.Run(2);
    // The fresh setting waits for 80 % and 8000 r/min: not while the bike idles on the grid.
    Configure(logger, logdata::FreshSetting());
    logger.Run(1);
    EXPECT_FALSE(logger.device.Recording());
    logger.Run(30);
    EXPECT_TRUE(logger.device.Recording());
    EXPECT_EQ(logger.Stop().bytFlags & TLM_FLAG_DOWNLOAD, TLM_FLAG_DOWNLOAD);
    ASSERT_EQ(logger.device.Memory().Files().size(), 1u);
    const auto entry = logger.device.Memory().Files()[0].Entry();
    EXPECT_EQ(entry.intDone, 0);
    EXPECT_LT(entry.lngSeconds, 30);
}

TEST(LoggerDevice, StopsRecordingWhenTheMemoryIsFull) {
    // The fresh setting costs 48 bytes per 300 ms by the default table; room for 50 periods.
    DeviceOnManualClock logger(LoggerConfig{.MemoryBytes = 48 * 50});
    logger.Run(2);
    Configure(logger, StartAtOnce(logdata::FreshSetting()));
    logger.Run(20);
    EXPECT_FALSE(logger.device.Recording());
    TlmStatus status{};
    logger.device.GetStatus(status);
    EXPECT_EQ(status.bytState, TLM_STATE_ACQUIRING);
    EXPECT_EQ(status.bytStatus5, 100) << "memory used in per cent";
    ASSERT_EQ(logger.device.Memory().Files().size(), 1u);
    EXPECT_EQ(logger.device.Memory().Files()[0].Seconds, 15);

    logger.Run(20);
    EXPECT_EQ(logger.device.Memory().Files().size(), 1u) << "nothing more fits";
    logger.Stop();
    logger.device.ClearFiles(status);
    EXPECT_EQ(logger.device.Memory().Used(), 0);
}

TEST(LoggerDevice, ARecordedFileDeploysIntoTheStreamsOfItsSetting) {
    testing::TempFolder folder;
    DeviceOnManualClock logger(LoggerConfig{.BytesPerSecond = 0});
    logger.Run(2);
    auto setting = StartAtOnce(DemoSetting());
    setting.SetWord(SettingWord::ThTime, 50);
    Configure(logger, setting);
    logger.Run(12);
    logger.Stop();

    TlmStatus status{};
    const auto bytes = logger.Download(1, status);
    testing::WriteText(folder / "run.rlg", std::string(bytes.begin(), bytes.end()));
    rlg::HeaderBytes header{};
    rlg::DeployStats stats;
    ASSERT_EQ(rlg::Deploy(folder / "run.rlg", folder.Path(), 1, header, stats), TLM_DECOMP_OK);
    // The setting as sent, but for the sensor points, which are the logger's own.
    EXPECT_EQ(header, logger.device.Setting().ToBytes());
    EXPECT_EQ(logdata::LogHeader::FromBytes(header).SampleTime(1), 50);

    const auto words = [&folder](const char* stream) {
        return std::filesystem::file_size(folder / rlg::StreamFileName(stream, 1)) / 2;
    };
    // Each stream holds the whole intervals of the run's length.
    const auto runMs =
        static_cast<std::uintmax_t>(logger.device.Memory().Files()[0].Seconds) * 1000;
    EXPECT_GE(words("Ne"), runMs / 10);
    EXPECT_LT(words("Ne"), (runMs + 1000) / 10);
    EXPECT_EQ(words("TH"), words("Ne") / 5);
}

TEST(LoggerDevice, TransfersAFileInBlocksMarksItDoneAndAnAbandonedOneLeavesItNew) {
    DeviceOnManualClock logger(LoggerConfig{.BytesPerSecond = 0, .BlockSize = 4096});
    ASSERT_EQ(logger.device.AddRecordedRuns(2, 0.5, 7), 2);
    logger.Run(2);
    logger.Stop();

    TlmStatus status{};
    std::vector<TlmDownloadEntry> entries(2);
    logger.device.DownloadList(status, entries);
    EXPECT_EQ(entries[1].lngSeconds, 30);

    TlmTransferBlock block{};
    logger.device.LoggingControl(status, 0);
    logger.device.LoggingControl(status, 1);
    logger.device.TransferStart(status, entries[1], block);
    EXPECT_EQ(status.bytState, TLM_STATE_SENDING) << "right after stopping, too";
    int blocks = 0;
    std::vector<std::uint8_t> bytes;
    std::int32_t result = 0;
    while (result == 0) {
        result = logger.device.TransferRead(status, block, bytes);
        ASSERT_EQ(status.bytSense, 0);
        EXPECT_LE(block.lngSize, 4096);
        ++blocks;
    }
    EXPECT_GT(result, 0);
    EXPECT_EQ(static_cast<std::int64_t>(bytes.size()), entries[1].lngSize);
    EXPECT_EQ(blocks, (entries[1].lngSize + 4095) / 4096);
    logger.device.TransferEnd(status, block, block);
    EXPECT_EQ(status.bytState, TLM_STATE_IDLE);

    logger.device.DownloadList(status, entries);
    EXPECT_EQ(entries[0].intDone, 0);
    EXPECT_NE(entries[1].intDone, 0);
    EXPECT_EQ(status.bytFlags & TLM_FLAG_DOWNLOAD, TLM_FLAG_DOWNLOAD) << "file 1 is still new";

    // A transfer abandoned by a closed link leaves the file new.
    logger.device.TransferStart(status, TlmDownloadEntry{1, 0, 0, 0}, block);
    logger.device.TransferRead(status, block, bytes);
    logger.device.Closed();

    EXPECT_EQ(logger.device.State(), TLM_STATE_IDLE);
    EXPECT_FALSE(logger.device.Memory().Files()[0].Done);
    logger.device.TransferEnd(status, block, block);
    EXPECT_EQ(status.bytSense, SenseNotInThisState) << "nothing to end any more";

    const auto whole = logger.Download(1, status);
    EXPECT_EQ(whole.size(), logger.device.Memory().Files()[0].Bytes->size());
    EXPECT_TRUE(logger.device.Memory().Files()[0].Done);

    EXPECT_TRUE(logger.Download(9, status).empty());
    EXPECT_EQ(status.bytSense, TLM_SENSE_FILE_NOT_FOUND) << "on the first read";
    EXPECT_EQ(logger.device.State(), TLM_STATE_IDLE);
}

TEST(LoggerDevice, KeepsTheTransferToTheLinkRateOfTheClockInSmallBlocksWhenSlow) {
    DeviceOnManualClock logger(LoggerConfig{.BytesPerSecond = 100'000, .BlockSize = 32 * 1024});
    logger.device.AddRecordedRuns(1, 1.0, 5);
    logger.Run(2);
    logger.Stop();
    const auto before = logger.clock.Now();
    TlmStatus status{};
    const auto size = static_cast<std::int64_t>(logger.Download(1, status).size());
    // The fake clock moves only when the device waits for the link: exactly the file's time.
    EXPECT_EQ((logger.clock.Now() - before).count(), size * 1'000'000'000 / 100'000);
    // Blocks are small at a slow rate, so that no answer waits long.
    EXPECT_EQ(PacedTransfer::BlockSizeAt(32768, 0), 32768u);
    EXPECT_EQ(PacedTransfer::BlockSizeAt(32768, 1000), 250u);
    EXPECT_EQ(PacedTransfer::BlockSizeAt(32768, 1), 1u);
}

TEST(LoggerDevice, TakesSensorPointsFromTheFittedSensors) {
    DeviceOnManualClock logger;
    logger.Run(2);
    logger.Stop();
    auto miscalibrated = logdata::FreshSetting();
    miscalibrated.SetWord(SettingWord::ThClose, 500);
    miscalibrated.SetWord(SettingWord::ThOpen, 400);
    logger.Send(miscalibrated);
    TlmSettingData record{};
    TlmStatus status{};
    logger.device.ReadSetting(status, record);
    EXPECT_EQ(record.intThClose, 102) << "a sent setting does not overwrite the sensor points";

    logger.device.InitializeSensor(status, TLM_INIT_THROTTLE_OPEN);
    logger.device.InitializeSensor(status, TLM_INIT_THROTTLE_CLOSED);
    TlmInitData points{};
    logger.device.InitData(status, 0, points);
    EXPECT_EQ(points.intThClose, 102);
    EXPECT_EQ(points.intThOpen, 758);
    logger.device.InitializeSensor(status, TLM_INIT_COMMIT_THROTTLE);
    logger.device.InitializeSensor(status, TLM_INIT_FRONT_SUSPENSION);
    logger.device.ReadSetting(status, record);
    EXPECT_EQ(record.intFrZero, 900);
    EXPECT_EQ(record.intRrZero, 0) << "not taken";
    EXPECT_EQ(record.intThOpen, 758) << "committed";
}

TEST(LoggerDevice, LiveSignalsCountDetonationAndLapsSinceTheLastReading) {
    DeviceOnManualClock logger;
    TlmStatus status{};
    TlmSignalCondition signal{};
    logger.Run(2);
    int laps = 0;
    for (int second = 0; second < 400; ++second) {
        logger.Run(1);
        logger.device.SignalCondition(status, signal);
        laps += signal.intLap;
    }
    EXPECT_GE(laps, 2) << "a few laps in 400 s";
    logger.device.SignalCondition(status, signal);
    EXPECT_EQ(signal.intLap, 0) << "no time passed since the last reading";
    EXPECT_EQ(signal.intDeto1, 0);
}

TEST(LoggerDevice, BrokenStaysBrokenAfterResetAndAnErrorStopShowsAndRefusesToAct) {
    DeviceOnManualClock broken;
    broken.device.SetBroken(true);
    EXPECT_EQ(broken.StateAfter(InitialisingTime), TLM_STATE_BROKEN);
    TlmStatus status{};
    EXPECT_EQ(broken.device.FileCount(status), 0);
    EXPECT_EQ(status.bytSense, SenseNotInThisState);
    broken.device.Reset(status);
    EXPECT_EQ(broken.StateAfter(InitialisingTime), TLM_STATE_BROKEN);

    DeviceOnManualClock logger;
    logger.Run(2);
    logger.device.SetErrorCode(12);
    logger.device.GetStatus(status);
    EXPECT_EQ(status.bytError, 12);
    EXPECT_EQ(status.bytState, TLM_STATE_READY);
    logger.device.LoggingControl(status, 0);
    EXPECT_EQ(status.bytSense, SenseStoppedOnError);
    std::vector<std::uint8_t> log(TLM_ERROR_INFO_SIZE, 0xEE);
    logger.device.ErrorInfo(status, log);
    EXPECT_EQ(log[0], 1);
    EXPECT_EQ(log[1], 12);
}

TEST(LoggerDevice, DetonationMapFollowsTheRunAndTheSetting) {
    DeviceOnManualClock logger;
    logger.Run(2);
    Configure(logger, StartAtOnce(DemoSetting()));
    logger.Run(120);
    TlmStatus status{};
    TlmDetonationMap map{};
    logger.device.DetonationMap(status, map);
    EXPECT_EQ(map.intPresent, 3);
    EXPECT_GE(map.lngRunTime, 110);
    logger.Stop();
    logger.device.ClearFiles(status);
    logger.clock.Advance(FlashWriteTime);
    logger.Send(logdata::FreshSetting());
    logger.device.DetonationMap(status, map);
    EXPECT_EQ(map.intPresent, 1) << "the fresh setting records DETO1 only";
    EXPECT_EQ(map.lngRunTime, 0) << "cleared with the files";
}

TEST(LoggerTables, DetonationCellsByEngineSpeedAndThrottleAndMemoryByChannelAndPeriod) {
    EXPECT_EQ(DetonationCounter::CellOf(4999.0, 50), -1);
    EXPECT_EQ(DetonationCounter::CellOf(15001.0, 50), -1);
    EXPECT_EQ(DetonationCounter::CellOf(5499.0, 4), 0);
    EXPECT_EQ(DetonationCounter::CellOf(5500.0, 5), 21);
    EXPECT_EQ(DetonationCounter::CellOf(15000.0, 100), 399);

    DetonationCounter counter;
    VehicleState knocking;
    knocking.EngineRpm = 12000.0;
    knocking.FrontWheelKmh = 180.0;
    knocking.Detonation = {200, 1};
    counter.Observe(knocking, 62);
    counter.Observe(knocking, 62);
    const auto map = counter.Map(3);
    const int cell = 14 * 20 + 12;
    EXPECT_EQ(map.bytMap1[cell], 255) << "saturates";
    EXPECT_EQ(map.bytMap2[cell], 2);

    // The memory table budgets bytes per 300 ms by channel and period.
    // The fresh setting: Ne, TH, VFW, VB at 25 ms and DETO1 on (free by default table) is 48.
    auto setting = logdata::FreshSetting();
    MemoryTable table = DefaultMemoryTable();
    table[0 * 6 + 2] = 2; // Ne at 25 ms
    table[3 * 6 + 2] = 3; // TH at 25 ms (the fourth row)
    table[54] = 4;
    table[55] = 5;
    EXPECT_EQ(BytesPer300Ms(table, setting), 12 * 2 + 12 * 3 + 12 + 12 + 4);
    setting.SetWord(SettingWord::NeTime, 7); // not a period
    setting.SetWord(SettingWord::Deto2Time, 300);
    EXPECT_EQ(BytesPer300Ms(table, setting), 12 * 3 + 12 + 12 + 4 + 5);
}

} // namespace
} // namespace torvane::sim

namespace torvane::sim {
namespace {

TEST(LoggerInputs, WheelAndEngineSpeedsFollowTheSettingsPulseConstants) {
    VehicleState state;
    state.FrontWheelKmh = 100.0;
    state.RearWheelKmh = 100.0;
    state.EngineRpm = 10000.0;
    const struct {
        int PulseF, CmF, PulseR, Engine;
        double Front, Rear, Rpm;
    } cases[] = {
        {20, 182, 20, 0, 100.0, 100.0, 10000.0},
        {10, 182, 40, 1, 200.0, 50.0, 5000.0},
        {20, 91, 0, 2, 50.0, 0.0, 20000.0},
        {20, 182, 20, 7, 100.0, 100.0, 10000.0},
    };
    for (const auto& c : cases) {
        logdata::LogHeader setting = logdata::FreshSetting();
        setting.SetWord(logdata::SettingWord::PulseF, static_cast<std::int16_t>(c.PulseF));
        setting.SetWord(logdata::SettingWord::CmF, static_cast<std::int16_t>(c.CmF));
        setting.SetWord(logdata::SettingWord::PulseR, static_cast<std::int16_t>(c.PulseR));
        setting.SetWord(logdata::SettingWord::Engine, static_cast<std::int16_t>(c.Engine));
        const VehicleState measured = AsMeasured(state, setting);
        EXPECT_DOUBLE_EQ(measured.FrontWheelKmh, c.Front) << c.PulseF << "/" << c.CmF;
        EXPECT_DOUBLE_EQ(measured.RearWheelKmh, c.Rear) << c.PulseR;
        EXPECT_DOUBLE_EQ(measured.EngineRpm, c.Rpm) << c.Engine;
    }
}

} // namespace
} // namespace torvane::sim
