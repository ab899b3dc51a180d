// The link when things go wrong: nothing listening, a second client, a device that stalls or
// drops the link, and bytes that are not frames. No call may hang and the server must live on.

#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "link/socket.h"
#include "link/wire.h"
#include "link_test_support.h"
#include "tlm.h"

namespace torvane::link::test {
namespace {

using std::chrono::milliseconds;

// Sends bytes on a fresh connection and waits until the server closes it.
bool ServerHangsUpAfter(const Endpoint& endpoint, const std::vector<std::uint8_t>& bytes) {
    std::string error;
    Socket raw = Connect(endpoint, Clock::now() + milliseconds(500), error);
    if (!raw.IsOpen() || raw.SendAll(bytes, Clock::now() + milliseconds(500)) != IoStatus::Ok) {
        return false;
    }
    const Deadline deadline = Clock::now() + ServedLogger::Timeout * 4;
    std::vector<std::uint8_t> ignored;
    while (Clock::now() < deadline) {
        if (raw.ReceiveSome(ignored, 4096, deadline) == IoStatus::Lost) {
            return true;
        }
    }
    return false;
}

std::vector<std::uint8_t> HelloBytes(std::uint16_t version) {
    PayloadWriter hello;
    hello.Put(ProtocolMagic);
    hello.Put(version);
    std::vector<std::uint8_t> bytes;
    AppendFrame(Frame{MessageKind::Hello, false, 1, std::move(hello.Bytes())}, bytes);
    return bytes;
}

TEST(LinkFaults, NothingListeningOrARefusingDeviceIsNoLinkAndTcpWorksLikeUnix) {
    torvane::testing::TempFolder folder;
    const ScopedEnvironment nowhere("TORVANE_LOGGER",
                                    "unix:" + (folder.Path() / "nobody.sock").string());
    TlmStatus status{};
    EXPECT_EQ(TLM_Open(&status), TLM_ERR_NOT_CONNECTED);
    EXPECT_EQ(GetStatus(&status), TLM_ERR_NOT_OPEN);

    {
        const ScopedEnvironment garbled("TORVANE_LOGGER", "usb:0");
        EXPECT_EQ(TLM_Open(&status), TLM_ERR_NOT_CONNECTED);
    }

    // A device that refuses the open gives its own result and holds no link.
    ServedLogger logger;
    logger.device.result = TLM_ERR_BUSY;
    EXPECT_EQ(TLM_Open(&status), TLM_ERR_BUSY);
    EXPECT_EQ(GetStatus(&status), TLM_ERR_NOT_OPEN);
    logger.device.result = TLM_OK;
    EXPECT_EQ(TLM_Open(&status), TLM_OK);
    EXPECT_EQ(TLM_Close(&status), TLM_OK);

    // The same link works over tcp on the loopback.
    ServedLogger tcp(ServedLogger::Transport::Tcp);
    EXPECT_NE(tcp.BoundEndpoint().Port, 0);
    tcp.device.fileCount = 12;
    ASSERT_EQ(TLM_Open(&status), TLM_OK);
    EXPECT_EQ(GetTheNumberofFiles(&status), 12);
    EXPECT_EQ(TLM_Close(&status), TLM_OK);
}

TEST(LinkFaults, SecondClientIsTurnedAwayWhileTheFirstWorksOn) {
    ServedLogger logger;
    TlmStatus first{};
    TlmStatus second{};
    ASSERT_EQ(TLM_Open(&first), TLM_OK);
    EXPECT_EQ(TLM_Open(&second), TLM_ERR_OPEN_FAILED);
    EXPECT_EQ(GetStatus(&second), TLM_ERR_NOT_OPEN);
    EXPECT_EQ(GetStatus(&first), TLM_OK);
    EXPECT_EQ(logger.device.opens.load(), 1);

    ASSERT_EQ(TLM_Close(&first), TLM_OK);
    EXPECT_EQ(TLM_Open(&second), TLM_OK); // a closed link frees the logger at once
    EXPECT_EQ(TLM_Close(&second), TLM_OK);
}

TEST(LinkFaults, StallingDeviceTimesOutAndTheNextCallStillWorks) {
    ServedLogger logger;
    TlmStatus status{};
    ASSERT_EQ(TLM_Open(&status), TLM_OK);
    logger.device.stallNextCallMs = static_cast<int>(ServedLogger::Timeout.count() * 3 / 2);
    logger.device.fileCount = 4;

    EXPECT_EQ(GetTheNumberofFiles(&status), TLM_ERR_TIMEOUT);

    // The late answer of the stalled call arrives first and is dropped by its request id.
    logger.device.fileCount = 5;
    EXPECT_EQ(GetTheNumberofFiles(&status), 5);
    EXPECT_EQ(GetTheNumberofFiles(&status), 5);
    EXPECT_EQ(TLM_Close(&status), TLM_OK);
}

TEST(LinkFaults, DroppedLinkMidTransferIsLostUntilClosed) {
    ServedLogger logger;
    logger.device.blocks = {{1}, {2}, {3}, {4}};
    logger.device.dropAfterReads = 2;
    const auto path = logger.Folder() / "LGGR0003.rlg";
    TlmStatus status{};
    ASSERT_EQ(TLM_Open(&status), TLM_OK);
    TlmDownloadEntry entry{};
    TlmTransferBlock block{};
    ASSERT_EQ(GetTheLogFile_start(&status, &entry, path.c_str(), &block), TLM_OK);
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), 0);
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), 0); // answered, then the cable is pulled
    EXPECT_EQ(GetTheLogFile_reading(&status, &block), TLM_ERR_LINK_LOST);
    EXPECT_TRUE(Eventually([&] { return logger.device.closes.load() == 1; }));

    EXPECT_EQ(GetStatus(&status), TLM_ERR_LINK_LOST);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), -2);
    EXPECT_EQ(torvane::testing::ReadText(path), std::string("\x01\x02"));
    EXPECT_EQ(TLM_Close(&status), TLM_OK);
    EXPECT_EQ(GetStatus(&status), TLM_ERR_NOT_OPEN);

    logger.device.dropAfterReads = -1;
    ASSERT_EQ(TLM_Open(&status), TLM_OK);
    EXPECT_EQ(logger.device.opens.load(), 2);
    EXPECT_EQ(GetStatus(&status), TLM_OK);
    EXPECT_EQ(TLM_Close(&status), TLM_OK);
}

TEST(LinkFaults, ClientThatVanishesFreesTheLogger) {
    ServedLogger logger;
    std::string error;
    {
        Socket raw = Connect(logger.BoundEndpoint(), Clock::now() + milliseconds(500), error);
        ASSERT_TRUE(raw.IsOpen()) << error;
        ASSERT_EQ(raw.SendAll(HelloBytes(ProtocolVersion), Clock::now() + milliseconds(500)),
                  IoStatus::Ok);
        std::vector<std::uint8_t> answer;
        EXPECT_EQ(raw.ReceiveSome(answer, 256, Clock::now() + milliseconds(500)), IoStatus::Ok);
        EXPECT_TRUE(Eventually([&] { return logger.device.opens.load() == 1; }));
    } // the socket closes without a goodbye
    EXPECT_TRUE(Eventually([&] { return logger.device.closes.load() == 1; }));
    TlmStatus status{};
    EXPECT_EQ(TLM_Open(&status), TLM_OK);
    EXPECT_EQ(TLM_Close(&status), TLM_OK);
}

TEST(LinkFaults, MalformedFramesEndTheLinkAndNeverTheServer) {
    ServedLogger logger;
    const Endpoint& endpoint = logger.BoundEndpoint();
    const std::vector<std::uint8_t> hugeLength{0xff, 0xff, 0xff, 0x7f, 1, 0, 1, 0, 0, 0};
    const std::vector<std::uint8_t> unknownKind{0, 0, 0, 0, 0x77, 0x00, 1, 0, 0, 0};
    const std::vector<std::uint8_t> truncated{6, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0x54};

    EXPECT_TRUE(ServerHangsUpAfter(endpoint, hugeLength));
    EXPECT_TRUE(ServerHangsUpAfter(endpoint, unknownKind));
    EXPECT_TRUE(ServerHangsUpAfter(endpoint, truncated)); // and stalls: the time-out ends it
    EXPECT_TRUE(ServerHangsUpAfter(endpoint, HelloBytes(ProtocolVersion + 1)));
    EXPECT_EQ(logger.device.opens.load(), 0);

    // After a good hello: a request with a payload that does not fit its kind, then an answer
    // sent as if it were a request.
    std::vector<std::uint8_t> shortSetting = HelloBytes(ProtocolVersion);
    AppendFrame(Frame{MessageKind::SendSetting, false, 2, {1, 2, 3}}, shortSetting);
    EXPECT_TRUE(ServerHangsUpAfter(endpoint, shortSetting));
    std::vector<std::uint8_t> answerAsRequest = HelloBytes(ProtocolVersion);
    AppendFrame(Frame{MessageKind::GetStatus, true, 2, {}}, answerAsRequest);
    EXPECT_TRUE(ServerHangsUpAfter(endpoint, answerAsRequest));
    EXPECT_TRUE(Eventually([&] { return logger.device.closes.load() == 2; }));
    EXPECT_EQ(logger.device.calls, (std::vector<std::string>{"Open", "Open"}));

    TlmStatus status{};
    ASSERT_EQ(TLM_Open(&status), TLM_OK);
    EXPECT_EQ(GetStatus(&status), TLM_OK);
    EXPECT_EQ(TLM_Close(&status), TLM_OK);
}

TEST(LinkFaults, StoppingTheServerEndsTheLinkItHolds) {
    ServedLogger logger;
    TlmStatus status{};
    ASSERT_EQ(TLM_Open(&status), TLM_OK);
    logger.Stop(); // from this thread, while the server's waits for the next request
    EXPECT_EQ(logger.device.closes.load(), 1);
    EXPECT_EQ(GetStatus(&status), TLM_ERR_LINK_LOST);
    EXPECT_EQ(TLM_Close(&status), TLM_OK);
    EXPECT_EQ(TLM_Open(&status), TLM_ERR_NOT_CONNECTED); // and the socket file is gone
}

} // namespace
} // namespace torvane::link::test
