// The table of operations against the wire as docs/logger-protocol.md gives it: every kind keeps
// its number and entry point, and the server's dispatch, built from the table, takes exactly
// each kind's request and gives exactly its answer.

#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "link/operations.h"
#include "link/request_handler.h"
#include "link_test_support.h"

namespace torvane::link::test {
namespace {

struct WireOperation {
    std::uint16_t Kind;
    std::string_view EntryPoint;
    std::string DeviceCall;
    std::size_t RequestBytes;
    // After the 12-byte prefix, for a request of zero bytes (a download list of no entries, a
    // transfer block that carries nothing).
    std::size_t AnswerBytes;
};

const std::vector<WireOperation>& DocumentedOperations() {
    static const std::vector<WireOperation> operations{
        {3, "TLM_Reset", "Reset", 0, 0},
        {4, "GetStatus", "GetStatus", 0, 0},
        {5, "GetTheNumberofFiles", "FileCount", 0, 0},
        {6, "GetTheDownloadList", "DownloadList", 2, 2},
        {7, "GetTheLogFile_start", "TransferStart", 12, 12},
        {8, "GetTheLogFile_reading", "TransferRead", 12, 16},
        {9, "GetTheLogFile_end", "TransferEnd", 12, 12},
        {10, "InitializeLogFile", "ClearFiles", 0, 0},
        {11, "GetTheDetonationMap", "DetonationMap", 0, 818},
        {12, "TSInitialize", "InitializeSensor", 2, 0},
        {13, "GetTheInitData", "InitData", 4, 4},
        {14, "SendTheSettingData", "SendSetting", 82, 0},
        {15, "GetTheSettingData", "ReadSetting", 0, 82},
        {16, "GetTheSignalCondition", "SignalCondition", 0, 24},
        {17, "GetTheSpecialData", "SpecialData", 0, 94},
        {18, "GetTheErrorInfo", "ErrorInfo", 0, 1022},
        {19, "LoggingControl", "LoggingControl", 4, 0},
        {20, "ServiceModeCtrl", "ServiceMode", 2, 0},
    };
    return operations;
}

TEST(LinkOperations, EveryKindKeepsItsNumberAndEntryPoint) {
    const auto& documented = DocumentedOperations();
    ASSERT_EQ(std::size(Operations), documented.size());
    for (std::size_t i = 0; i < documented.size(); ++i) {
        EXPECT_EQ(static_cast<std::uint16_t>(Operations[i].Kind), documented[i].Kind);
        EXPECT_EQ(Operations[i].EntryPoint, documented[i].EntryPoint);
    }
    EXPECT_EQ(LastMessageKind, 20);
    EXPECT_EQ(static_cast<std::uint16_t>(MessageKind::Hello), 1);
    EXPECT_EQ(static_cast<std::uint16_t>(MessageKind::Close), 2);
}

TEST(LinkOperations, DispatchCallsTheKindsDeviceCallAndTakesOnlyItsExactPayload) {
    ScriptedDevice device;
    TlmStatus status{};
    for (const WireOperation& operation : DocumentedOperations()) {
        SCOPED_TRACE(operation.DeviceCall);
        const auto kind = static_cast<MessageKind>(operation.Kind);
        device.calls.clear();
        PayloadWriter answer;
        const Frame request{kind, false, 1, std::vector<std::uint8_t>(operation.RequestBytes)};
        ASSERT_TRUE(AnswerRequest(device, status, request, answer));
        EXPECT_EQ(device.calls, std::vector<std::string>{operation.DeviceCall});
        EXPECT_EQ(answer.Bytes().size(), 12 + operation.AnswerBytes);

        // A byte more or one less is not this kind's request: the device never hears it and
        // nothing is answered.
        std::vector<std::size_t> wrongLengths{operation.RequestBytes + 1};
        if (operation.RequestBytes > 0) {
            wrongLengths.push_back(operation.RequestBytes - 1);
        }
        for (const std::size_t length : wrongLengths) {
            device.calls.clear();
            PayloadWriter refused;
            const Frame wrong{kind, false, 2, std::vector<std::uint8_t>(length)};
            EXPECT_FALSE(AnswerRequest(device, status, wrong, refused)) << length;
            EXPECT_TRUE(device.calls.empty()) << length;
            EXPECT_TRUE(refused.Bytes().empty()) << length;
        }
    }
    // Hello and Close belong to the link; the dispatch never answers them.
    for (const MessageKind linkKind : {MessageKind::Hello, MessageKind::Close}) {
        PayloadWriter answer;
        EXPECT_FALSE(AnswerRequest(device, status, Frame{linkKind, false, 3, {}}, answer));
    }
}

TEST(LinkOperations, ARequestedListSizesTheAnswerAndANegativeCountIsRefused) {
    ScriptedDevice device;
    device.entries = {OddRecord<TlmDownloadEntry>(8), OddRecord<TlmDownloadEntry>(9)};
    TlmStatus status{};
    PayloadWriter request;
    request.Put(std::int16_t{3});
    PayloadWriter answer;
    ASSERT_TRUE(AnswerRequest(device, status,
                              Frame{MessageKind::DownloadList, false, 1, request.Bytes()}, answer));
    EXPECT_EQ(device.countAsked, 3);
    EXPECT_EQ(answer.Bytes().size(), 12u + 2u + 3u * 12u);

    PayloadWriter negative;
    negative.Put(std::int16_t{-1});
    PayloadWriter refused;
    EXPECT_FALSE(AnswerRequest(
        device, status, Frame{MessageKind::DownloadList, false, 2, negative.Bytes()}, refused));
}

} // namespace
} // namespace torvane::link::test
