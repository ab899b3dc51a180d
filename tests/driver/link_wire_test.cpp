// The pieces under the link: endpoint texts, the frame layout byte for byte, and the rules for a
// unix socket file that is already there.

#include <filesystem>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "link/endpoint.h"
#include "link/records.h"
#include "link/socket.h"
#include "link/wire.h"
#include "link_test_support.h"

namespace torvane::link::test {
namespace {

TEST(LinkEndpoint, ParsesAndPrintsBothKindsDefaultsPerUserAndTakesTheTimeOut) {
    std::string error;
    const auto unixEndpoint = ParseEndpoint("unix:/run/user/7/torvane-logger.sock", error);
    ASSERT_TRUE(unixEndpoint);
    EXPECT_EQ(ToString(*unixEndpoint), "unix:/run/user/7/torvane-logger.sock");

    const auto tcpEndpoint = ParseEndpoint("tcp:127.0.0.1:65535", error);
    ASSERT_TRUE(tcpEndpoint);
    EXPECT_EQ(tcpEndpoint->Port, 65535);
    EXPECT_EQ(ToString(*tcpEndpoint), "tcp:127.0.0.1:65535");

    for (const char* bad :
         {"", "unix:", "tcp:127.0.0.1:", "tcp:127.0.0.1:65536", "tcp:127.0.0.1:80x",
          "tcp:0.0.0.0:5000", "tcp:localhost:5000", "/tmp/logger.sock"}) {
        error.clear();
        EXPECT_FALSE(ParseEndpoint(bad, error)) << bad;
        EXPECT_FALSE(error.empty()) << bad;
    }

    // The default is per user; the time-out comes from the environment.
    {
        const ScopedEnvironment runtime("XDG_RUNTIME_DIR", "/run/user/1234");
        EXPECT_EQ(DefaultEndpoint().Path, "/run/user/1234/torvane-logger.sock");
    }
    {
        const ScopedEnvironment runtime("XDG_RUNTIME_DIR", "");
        EXPECT_EQ(DefaultEndpoint().Path,
                  "/tmp/torvane-" + std::to_string(::geteuid()) + "/logger.sock");
    }
    {
        const ScopedEnvironment timeout("TORVANE_LOGGER_TIMEOUT_MS", "250");
        EXPECT_EQ(ExchangeTimeoutFromEnvironment(), std::chrono::milliseconds(250));
    }
    for (const char* ignored : {"0", "-5", "soon"}) {
        const ScopedEnvironment timeout("TORVANE_LOGGER_TIMEOUT_MS", ignored);
        EXPECT_EQ(ExchangeTimeoutFromEnvironment(), DefaultExchangeTimeout) << ignored;
    }
}

TEST(LinkWire, FrameAndRecordBytesAreLittleEndianInFieldOrder) {
    PayloadWriter payload;
    PutRecord(payload, TlmDownloadEntry{0x0102, -2, 0x0a0b0c0d, -16777216});
    std::vector<std::uint8_t> bytes;
    AppendFrame(Frame{MessageKind::TransferStart, true, 0x11223344, payload.Bytes()}, bytes);
    const std::vector<std::uint8_t> expected{12,   0,    0,    0,    // payload length
                                             7,    0x80,             // TransferStart, answer
                                             0x44, 0x33, 0x22, 0x11, // request id
                                             0x02, 0x01, 0xfe, 0xff, 0x0d, 0x0c,
                                             0x0b, 0x0a, 0x00, 0x00, 0x00, 0xff};
    EXPECT_EQ(bytes, expected);

    Frame frame;
    std::vector<std::uint8_t> partial(bytes.begin(), bytes.end() - 1);
    EXPECT_EQ(TakeFrame(partial, frame), FrameDecode::NeedMore);
    bytes.push_back(0x99); // the first byte of the next frame stays behind
    ASSERT_EQ(TakeFrame(bytes, frame), FrameDecode::Complete);
    EXPECT_EQ(bytes, std::vector<std::uint8_t>{0x99});
    EXPECT_EQ(frame.Kind, MessageKind::TransferStart);
    EXPECT_TRUE(frame.Answer);
    EXPECT_EQ(frame.Id, 0x11223344u);
    PayloadReader reader(frame.Payload);
    TlmDownloadEntry entry{};
    ASSERT_TRUE(GetRecord(reader, entry));
    EXPECT_TRUE(reader.Finished());
    EXPECT_EQ(entry.lngSize, -16777216);
}

TEST(LinkListener, SocketFileIsPrivateAndStaleOnesAreReplaced) {
    torvane::testing::TempFolder folder;
    Endpoint endpoint;
    endpoint.Path = (folder.Path() / "logger.sock").string();
    std::string error;
    {
        Listener live;
        ASSERT_TRUE(live.Open(endpoint, error)) << error;
        struct stat info {};
        ASSERT_EQ(::lstat(endpoint.Path.c_str(), &info), 0);
        EXPECT_TRUE(S_ISSOCK(info.st_mode));
        EXPECT_EQ(info.st_mode & 0777, 0600u);

        Listener second;
        EXPECT_FALSE(second.Open(endpoint, error));
        EXPECT_NE(error.find("another logger"), std::string::npos) << error;
    }
    EXPECT_FALSE(std::filesystem::exists(endpoint.Path)); // removed by its owner

    // A file left by a logger that died: bound once, nothing accepts on it, so it is replaced.
    {
        const int stale = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        endpoint.Path.copy(address.sun_path, sizeof address.sun_path - 1);
        ASSERT_EQ(::bind(stale, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ::close(stale);
    }
    ASSERT_TRUE(std::filesystem::is_socket(endpoint.Path));
    Listener replacing;
    EXPECT_TRUE(replacing.Open(endpoint, error)) << error;

    const Endpoint plain{Endpoint::Kind::Unix, (folder.Path() / "plain").string(), 0};
    torvane::testing::WriteText(plain.Path, "not a socket");
    Listener refused;
    EXPECT_FALSE(refused.Open(plain, error));
    EXPECT_EQ(torvane::testing::ReadText(plain.Path), "not a socket");
}

} // namespace
} // namespace torvane::link::test
