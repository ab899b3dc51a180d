// The scripted driver's plain calls, made from the operations list rather than written one by
// one: what the logger tests of the coming windows will lean on.

#include "support/scripted_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace torvane::logger {
namespace {

using ::testing::ElementsAre;

TEST(ScriptedDriverTest, PlainCallsRecordTheirIntegerAndExchangeRecordsWithTheLogger) {
    ScriptedDriver driver;
    TlmStatus status{};
    driver.initData = {12, 900};
    driver.setting.intLapOn = 1;

    TlmInitData data{};
    EXPECT_EQ(driver.GetTheInitData(status, 3, data), TLM_OK);
    EXPECT_EQ(data.intThOpen, 900);
    EXPECT_EQ(driver.TSInitialize(status, TLM_INIT_REAR_SUSPENSION), TLM_OK);
    EXPECT_EQ(driver.LoggingControl(status, 1), TLM_OK);
    EXPECT_THAT(driver.calls,
                ElementsAre(RecordedCall{Call::GetTheInitData, 3},
                            RecordedCall{Call::TSInitialize, TLM_INIT_REAR_SUSPENSION},
                            RecordedCall{Call::LoggingControl, 1}));
    EXPECT_EQ(CallName(Call::TLM_Reset), "TLM_Reset");
    EXPECT_EQ(CallName(Call::GetTheSpecialData_raw), "GetTheSpecialData_raw");

    // A sent setting becomes the logger's only when the logger takes it; a refused one leaves
    // the logger's own, which a read then hands back.
    TlmSettingData sent{};
    sent.intLapOn = 0;
    driver.Script(Call::SendTheSettingData, {{.Result = TLM_ERR_SENSE, .Sense = 3}});
    EXPECT_EQ(driver.SendTheSettingData(status, sent), TLM_ERR_SENSE);
    EXPECT_EQ(status.bytSense, 3);
    TlmSettingData read{};
    EXPECT_EQ(driver.GetTheSettingData(status, read), TLM_OK);
    EXPECT_EQ(read.intLapOn, 1);
    EXPECT_EQ(driver.SendTheSettingData(status, sent), TLM_OK);
    EXPECT_EQ(driver.GetTheSettingData(status, read), TLM_OK);
    EXPECT_EQ(read.intLapOn, 0);
}

TEST(ScriptedDriverTest, FileCountAndClearingFollowTheScriptedFiles) {
    ScriptedDriver driver;
    TlmStatus status{};
    driver.files = {TlmDownloadEntry{1, 0, 60, 100}, TlmDownloadEntry{2, 0, 60, 100}};
    EXPECT_EQ(driver.GetTheNumberofFiles(status), 2);

    driver.Script(Call::InitializeLogFile, {{.Result = TLM_ERR_BUSY}});
    EXPECT_EQ(driver.InitializeLogFile(status), TLM_ERR_BUSY);
    EXPECT_EQ(driver.GetTheNumberofFiles(status), 2);
    EXPECT_EQ(driver.InitializeLogFile(status), TLM_OK);
    EXPECT_EQ(driver.GetTheNumberofFiles(status), 0);

    driver.Script(Call::GetTheNumberofFiles, {{.Result = TLM_ERR_TIMEOUT}});
    EXPECT_EQ(driver.GetTheNumberofFiles(status), TLM_ERR_TIMEOUT);
}

} // namespace
} // namespace torvane::logger
