// libtlm's link entry points against the real server and a scripted device: every record arrives
// field for field in both directions, transfers write exactly the device's bytes, and results and
// sense codes come through unchanged.

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

#include "link_test_support.h"
#include "tlm.h"

namespace torvane::link::test {
namespace {

using torvane::testing::ReadText;

class LinkEntryPoints : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(TLM_Open(&status), TLM_OK);
        opened = status;
    }
    void TearDown() override { TLM_Close(&status); }

    // bytDriver is the library's: no call may change it while the link is open.
    void ExpectHandleKept() const {
        EXPECT_TRUE(std::equal(std::begin(status.bytDriver), std::end(status.bytDriver),
                               std::begin(opened.bytDriver)));
    }

    ServedLogger logger;
    ScriptedDevice& device = logger.device;
    TlmStatus status{};
    TlmStatus opened{};
};

TEST_F(LinkEntryPoints, OpenAndRecordsFromTheDeviceArriveFieldForField) {
    EXPECT_EQ(device.opens.load(), 1);
    EXPECT_TRUE(SameLoggerStatus(status, device.status));
    EXPECT_NE(std::count(std::begin(status.bytDriver), std::end(status.bytDriver), 0), 16);
    device.status = OddRecord<TlmStatus>(20);
    TlmDetonationMap map{};
    TlmInitData initData{};
    TlmSettingData setting{};
    TlmSignalCondition signal{};
    TlmSpecialData special{};
    std::array<std::uint8_t, TLM_SPECIAL_DATA_SIZE> specialRaw{};
    std::array<std::uint8_t, TLM_ERROR_INFO_SIZE> errorInfo{};
    device.errorInfo.resize(TLM_ERROR_INFO_SIZE);
    for (std::size_t i = 0; i < device.errorInfo.size(); ++i) {
        device.errorInfo[i] = static_cast<std::uint8_t>(i * 7 + 3);
    }

    EXPECT_EQ(GetTheDetonationMap(&status, &map), TLM_OK);
    EXPECT_EQ(GetTheInitData(&status, -123456, &initData), TLM_OK);
    EXPECT_EQ(GetTheSettingData(&status, &setting), TLM_OK);
    EXPECT_EQ(GetTheSignalCondition(&status, &signal), TLM_OK);
    EXPECT_EQ(GetTheSpecialData(&status, &special), TLM_OK);
    EXPECT_EQ(GetTheSpecialData_raw(&status, specialRaw.data(), TLM_SPECIAL_DATA_SIZE), TLM_OK);
    EXPECT_EQ(GetTheErrorInfo(&status, errorInfo.data(), TLM_ERROR_INFO_SIZE), TLM_OK);

    EXPECT_TRUE(SameBytes(map, device.map));
    EXPECT_TRUE(SameBytes(initData, device.initData));
    EXPECT_EQ(device.indexAsked, -123456);
    EXPECT_TRUE(SameBytes(setting, device.setting));
    EXPECT_TRUE(SameBytes(signal, device.signal));
    EXPECT_TRUE(SameBytes(special, device.special));
    EXPECT_EQ(std::memcmp(specialRaw.data(), &device.special, TLM_SPECIAL_DATA_SIZE), 0);
    EXPECT_TRUE(std::equal(errorInfo.begin(), errorInfo.end(), device.errorInfo.begin()));
    EXPECT_TRUE(SameLoggerStatus(status, device.status));
    EXPECT_EQ(device.calls.back(), "ErrorInfo");
    ExpectHandleKept();
}

TEST_F(LinkEntryPoints, ArgumentsReachTheDeviceAndTheFileListComesBackFieldForField) {
    const TlmSettingData setting = OddRecord<TlmSettingData>(30);
    EXPECT_EQ(SendTheSettingData(&status, &setting), TLM_OK);
    EXPECT_TRUE(SameBytes(device.settingSent, setting));
    EXPECT_EQ(TSInitialize(&status, -32001), TLM_OK);
    EXPECT_EQ(device.kindAsked, -32001);
    EXPECT_EQ(LoggingControl(&status, 0x7f3e2d1c), TLM_OK);
    EXPECT_EQ(device.loggingValue, 0x7f3e2d1c);
    EXPECT_EQ(ServiceModeCtrl(&status, TLM_SERVICE_HEAT_RUN3), TLM_OK);
    EXPECT_EQ(device.serviceCode, TLM_SERVICE_HEAT_RUN3);
    EXPECT_EQ(TLM_Reset(&status), TLM_OK);
    EXPECT_EQ(InitializeLogFile(&status), TLM_OK);
    EXPECT_EQ(GetStatus(&status), TLM_OK);
    EXPECT_EQ(device.calls,
              (std::vector<std::string>{"Open", "SendSetting", "InitializeSensor", "LoggingControl",
                                        "ServiceMode", "Reset", "ClearFiles", "GetStatus"}));
    ExpectHandleKept();

    // The file count and the download list.
    device.fileCount = 3;
    for (unsigned i = 0; i < 3; ++i) {
        device.entries.push_back(OddRecord<TlmDownloadEntry>(40 + i));
    }
    EXPECT_EQ(GetTheNumberofFiles(&status), 3);
    std::array<TlmDownloadEntry, 3> entries{};
    EXPECT_EQ(GetTheDownloadList(&status, 3, entries.data()), TLM_OK);
    EXPECT_EQ(device.countAsked, 3);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_TRUE(SameBytes(entries[i], device.entries[i])) << "entry " << i;
    }
    EXPECT_EQ(GetTheDownloadList(&status, 0, nullptr), TLM_OK);
}

TEST_F(LinkEntryPoints, ResultsAndSenseCodesPassThrough) {
    device.result = TLM_ERR_SENSE;
    device.status.bytSense = 9;
    TlmSettingData setting{};
    EXPECT_EQ(GetTheSettingData(&status, &setting), TLM_ERR_SENSE);
    EXPECT_EQ(status.bytSense, 9);
    EXPECT_TRUE(SameBytes(setting, device.setting)); // the record travels with any result

    device.result = TLM_OK;
    device.status.bytSense = TLM_SENSE_FILE_NOT_FOUND;
    device.status.bytState = TLM_STATE_BROKEN;
    EXPECT_EQ(GetStatus(&status), TLM_OK);
    EXPECT_EQ(status.bytSense, TLM_SENSE_FILE_NOT_FOUND);
    EXPECT_EQ(status.bytState, TLM_STATE_BROKEN);
    ExpectHandleKept();
}

TEST_F(LinkEntryPoints, TransferWritesExactlyTheDevicesBytes) {
    device.blocks = {{1, 2, 3, 0, 255}, {}, std::vector<std::uint8_t>(70000, 0xa5), {9}};
    const auto path = logger.Folder() / "LGGR0001.rlg";
    TlmDownloadEntry entry = OddRecord<TlmDownloadEntry>(50);
    TlmTransferBlock block{};

    ASSERT_EQ(GetTheLogFile_start(&status, &entry, path.c_str(), &block), TLM_OK);
    EXPECT_TRUE(SameBytes(device.entryAsked, entry));
    EXPECT_TRUE(SameBytes(block, device.startBlock));
    std::vector<std::int32_t> sizes;
    std::int32_t result = 0;
    while (result == 0) {
        const TlmTransferBlock sent = block;
        result = GetTheLogFile_reading(&status, &block);
        EXPECT_TRUE(SameBytes(device.blockAsked, sent));
        sizes.push_back(block.lngSize);
    }
    EXPECT_EQ(result, 1);
    EXPECT_EQ(sizes, (std::vector<std::int32_t>{5, 0, 70000, 1}));
    const TlmTransferBlock sent = block;
    EXPECT_EQ(GetTheLogFile_end(&status, &block), TLM_OK);
    EXPECT_TRUE(SameBytes(device.blockAsked, sent));

    std::string expected;
    for (const auto& bytes : device.blocks) {
        expected.append(bytes.begin(), bytes.end());
    }
    EXPECT_EQ(ReadText(path), expected);
}

TEST_F(LinkEntryPoints, TransferStartAndEndFailuresAFullDiskIncluded) {
    TlmDownloadEntry entry{};
    TlmTransferBlock block{};
    const auto path = logger.Folder() / "LGGR0002.rlg";

    // A path that cannot be created: -1 before the device is asked; the end has nothing to end.
    const auto unreachable = logger.Folder() / "missing" / "LGGR0002.rlg";
    EXPECT_EQ(GetTheLogFile_start(&status, &entry, unreachable.c_str(), &block), -1);
    EXPECT_EQ(std::count(device.calls.begin(), device.calls.end(), "TransferStart"), 0);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), -3);

    // The device refusing: its own result.
    device.result = -2;
    EXPECT_EQ(GetTheLogFile_start(&status, &entry, path.c_str(), &block), -2);
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), TLM_ERR_SEQUENCE);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), -3);
    device.result = TLM_OK;

    // Ended before the last block: -3, with the part that came left in the file.
    device.blocks = {{1, 2}, {3}};
    ASSERT_EQ(GetTheLogFile_start(&status, &entry, path.c_str(), &block), TLM_OK);
    EXPECT_EQ(GetTheLogFile_start(&status, &entry, path.c_str(), &block), TLM_ERR_SEQUENCE);
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), 0);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), -3);
    EXPECT_EQ(ReadText(path), std::string("\x01\x02"));

    // The device failing the end: -2, whatever code it gave.
    device.blocks = {{7}};
    device.endResult = TLM_ERR_SENSE;
    ASSERT_EQ(GetTheLogFile_start(&status, &entry, path.c_str(), &block), TLM_OK);
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), 1);
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), TLM_ERR_SEQUENCE);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), -2);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), TLM_ERR_SEQUENCE);

    // A transfer to a full disk fails the end.
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full here";
    }
    device.endResult = TLM_OK;
    device.blocks = {std::vector<std::uint8_t>(100000, 1)};
    ASSERT_EQ(GetTheLogFile_start(&status, &entry, "/dev/full", &block), TLM_OK);
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), 1);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), -1);
}

TEST_F(LinkEntryPoints, NullArgumentsAndWrongLengthsAreRefusedBeforeAnyExchange) {
    TlmStatus* const none = nullptr;
    TlmDownloadEntry entry{};
    TlmTransferBlock block{};
    std::array<std::uint8_t, TLM_ERROR_INFO_SIZE> buffer{};
    const std::size_t callsBefore = device.calls.size();

    EXPECT_EQ(TLM_Open(none), TLM_ERR_ARGUMENT);
    EXPECT_EQ(GetStatus(none), TLM_ERR_ARGUMENT);
    EXPECT_EQ(GetTheDownloadList(&status, 2, nullptr), TLM_ERR_ARGUMENT);
    EXPECT_EQ(GetTheDownloadList(&status, -1, &entry), TLM_ERR_ARGUMENT);
    EXPECT_EQ(GetTheLogFile_start(&status, &entry, nullptr, &block), TLM_ERR_ARGUMENT);
    EXPECT_EQ(GetTheLogFile_reading(&status, nullptr), TLM_ERR_ARGUMENT);
    EXPECT_EQ(SendTheSettingData(&status, nullptr), TLM_ERR_ARGUMENT);
    EXPECT_EQ(GetTheSpecialData_raw(&status, buffer.data(), TLM_SPECIAL_DATA_SIZE - 1),
              TLM_ERR_ARGUMENT);
    EXPECT_EQ(GetTheErrorInfo(&status, buffer.data(), 1000), TLM_ERR_ARGUMENT);
    EXPECT_EQ(device.calls.size(), callsBefore);
    EXPECT_EQ(GetStatus(&status), TLM_OK); // and the link is as good as before
}

TEST_F(LinkEntryPoints, ClosedCopiedOrZeroedStatusHoldsNoLink) {
    const TlmStatus copy = status;
    ASSERT_EQ(TLM_Close(&status), TLM_OK);
    EXPECT_TRUE(Eventually([&] { return device.closes.load() == 1; }));
    EXPECT_EQ(GetStatus(&status), TLM_ERR_NOT_OPEN);
    EXPECT_EQ(TLM_Close(&status), TLM_ERR_NOT_OPEN);

    // A copy taken while open names a link that has ended, even after a new one takes its slot.
    TlmStatus reopened{};
    ASSERT_EQ(TLM_Open(&reopened), TLM_OK);
    TlmStatus stale = copy;
    EXPECT_EQ(GetStatus(&stale), TLM_ERR_NOT_OPEN);

    TlmStatus zeroed{};
    EXPECT_EQ(GetTheNumberofFiles(&zeroed), TLM_ERR_NOT_OPEN);
    EXPECT_EQ(TLM_Close(&reopened), TLM_OK);
}

} // namespace
} // namespace torvane::link::test
