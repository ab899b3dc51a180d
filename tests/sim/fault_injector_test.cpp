// Faults laid over the device: they stand in for the device's answer N times, then the device
// answers cleanly again; a dropped link comes once, after N blocks.

#include "logger/fault_injector.h"
#include "logger_test_support.h"

#include <chrono>
#include <vector>

namespace torvane::sim {
namespace {

using Fault = FaultRule::Fault;

TEST(FaultInjector, SenseAndResultForTheNextNCallsThenCleanOnEntriesNamedAsTheDriver) {
    DeviceOnManualClock logger;
    logger.Run(2);
    FaultPlan plan;
    plan.Rules = {{Fault::Sense, 5, Entry::GetStatus, 2},
                  {Fault::Result, TLM_ERR_TIMEOUT, Entry::GetStatus, 1},
                  {Fault::Result, TLM_ERR_BUSY, Entry::LoggingControl, 1}};
    FaultInjector faulty(logger.device, plan);
    TlmStatus status{};
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(faulty.GetStatus(status), TLM_OK);
        EXPECT_EQ(status.bytSense, 5);
        EXPECT_EQ(status.bytState, TLM_STATE_ACQUIRING) << "the device's own state";
    }
    EXPECT_EQ(faulty.GetStatus(status), TLM_ERR_TIMEOUT);
    EXPECT_EQ(faulty.GetStatus(status), TLM_OK);
    EXPECT_EQ(status.bytSense, 0);

    EXPECT_EQ(faulty.LoggingControl(status, 1), TLM_ERR_BUSY);
    EXPECT_EQ(logger.device.State(), TLM_STATE_ACQUIRING) << "a faulty call never reaches it";
    EXPECT_EQ(faulty.LoggingControl(status, 1), TLM_OK);

    // Entry points are known by their driver names; a close cannot fail.
    EXPECT_EQ(EntryNamed("GetTheLogFile_reading"), Entry::TransferRead);
    EXPECT_EQ(EntryNamed("getstatus"), std::nullopt);
    EXPECT_EQ(EntryNamed("TLM_Close"), std::nullopt);
    EXPECT_EQ(EntryNamed("TLM_Open"), Entry::Hello);
    EXPECT_EQ(EntryNamed("GetTheSpecialData_raw"), Entry::SpecialData);
    // The command line's names, which scripts use, in the order the usage message gives them.
    EXPECT_EQ(EntryNames(), "TLM_Open TLM_Reset GetStatus GetTheNumberofFiles GetTheDownloadList "
                            "GetTheLogFile_start GetTheLogFile_reading GetTheLogFile_end "
                            "InitializeLogFile GetTheDetonationMap TSInitialize GetTheInitData "
                            "SendTheSettingData GetTheSettingData GetTheSignalCondition "
                            "GetTheSpecialData GetTheSpecialData_raw GetTheErrorInfo "
                            "LoggingControl ServiceModeCtrl");
}

TEST(FaultInjector, DropsTheLinkOnceAfterNBlocks) {
    DeviceOnManualClock logger(LoggerConfig{.BytesPerSecond = 0, .BlockSize = 1024});
    logger.device.AddRecordedRuns(1, 0.5, 2);
    logger.Run(2);
    logger.Stop();
    FaultInjector faulty(logger.device, FaultPlan{.Rules = {}, .DropAfterBlocks = 3});
    TlmStatus status{};
    TlmTransferBlock block{};
    std::vector<std::uint8_t> bytes;

    faulty.TransferStart(status, TlmDownloadEntry{1, 0, 0, 0}, block);
    for (int read = 1; read <= 3; ++read) {
        ASSERT_EQ(faulty.TransferRead(status, block, bytes), 0);
        EXPECT_EQ(faulty.DropLinkNow(), read == 3) << "after block " << read;
    }
    faulty.Closed(); // what the server does after dropping
    EXPECT_EQ(logger.device.State(), TLM_STATE_IDLE);

    faulty.TransferStart(status, TlmDownloadEntry{1, 0, 0, 0}, block);
    std::int32_t result = 0;
    while (result == 0 && status.bytSense == 0) {
        result = faulty.TransferRead(status, block, bytes);
        EXPECT_FALSE(faulty.DropLinkNow()) << "only once";
    }
    EXPECT_TRUE(logger.device.Memory().Files()[0].Done);
}

TEST(FaultInjector, DropAndDelayLetTheDeviceAnswerFirst) {
    DeviceOnManualClock logger;
    logger.Run(2);
    FaultPlan plan;
    plan.Rules = {{Fault::Drop, 0, Entry::SignalCondition, 1},
                  {Fault::Delay, 30, Entry::ErrorInfo, 1}};
    FaultInjector faulty(logger.device, plan);
    TlmStatus status{};
    TlmSignalCondition signal{};
    EXPECT_EQ(faulty.SignalCondition(status, signal), TLM_OK);
    EXPECT_TRUE(faulty.DropLinkNow());
    faulty.Closed();
    EXPECT_EQ(faulty.SignalCondition(status, signal), TLM_OK);
    EXPECT_FALSE(faulty.DropLinkNow()) << "once";

    std::vector<std::uint8_t> log(TLM_ERROR_INFO_SIZE, 0xFF);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(faulty.ErrorInfo(status, log), TLM_OK);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
    EXPECT_EQ(log[0], 0) << "the device's own log";
}

} // namespace
} // namespace torvane::sim
