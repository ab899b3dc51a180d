// The link's unix sockets admit only the user's own programs: the private folder they live in,
// and the peer's user id checked by the program and by the logger. Another user is played by a
// child process that drops to "nobody", which needs root; without it those cases are skipped.

#include "link/socket.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

namespace torvane::link {
namespace {

namespace fs = std::filesystem;
using torvane::testing::TempFolder;

constexpr uid_t Nobody = 65534;

Deadline Soon() {
    return Clock::now() + std::chrono::seconds(2);
}

// Runs work in a child that has become another user; its exit status, or -1.
template <typename Work> pid_t AsAnotherUser(Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool dropped = ::setgid(Nobody) == 0 && ::setuid(Nobody) == 0;
        ::_exit(dropped ? work() : 99);
    }
    return child;
}

int ExitStatus(pid_t child) {
    int raw = 0;
    ::waitpid(child, &raw, 0);
    return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
}

class LinkPeerTest : public ::testing::Test {
protected:
    void SetUp() override {
        // Reachable by anyone, so that only the peer check stands between the users.
        fs::permissions(folder.Path(), fs::perms::all);
    }
    Endpoint At(const std::string& name) const {
        return {Endpoint::Kind::Unix, (folder / name).string(), 0};
    }
    static void RequireRoot() {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "another user can only be played as root";
        }
    }
    TempFolder folder;
};

TEST_F(LinkPeerTest, TheUsersOwnProgramIsAdmitted) {
    Listener listener;
    std::string error;
    ASSERT_TRUE(listener.Open(At("own.sock"), error)) << error;
    EXPECT_TRUE(Connect(At("own.sock"), Soon(), error).IsOpen()) << error;
    EXPECT_TRUE(listener.Accept().IsOpen());
}

TEST_F(LinkPeerTest, TheLoggerClosesOnAnotherUsersProgramUnheard) {
    RequireRoot();
    Listener listener;
    std::string error;
    ASSERT_TRUE(listener.Open(At("logger.sock"), error)) << error;
    fs::permissions(folder / "logger.sock", fs::perms::all);
    const pid_t child = AsAnotherUser([this] {
        std::string reason;
        return ConnectAnyone(At("logger.sock"), Soon(), reason).IsOpen() ? 0 : 1;
    });
    ASSERT_EQ(ExitStatus(child), 0) << "the other user could not even reach the socket";
    EXPECT_FALSE(listener.Accept().IsOpen());
}

TEST_F(LinkPeerTest, TheProgramRefusesALoggerOfAnotherUser) {
    RequireRoot();
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = AsAnotherUser([this, &ready] {
        Listener listener;
        std::string reason;
        if (!listener.Open(At("theirs.sock"), reason)) {
            return 1;
        }
        ::chmod((folder / "theirs.sock").c_str(), 0666);
        const char byte = 1;
        [[maybe_unused]] const auto written = ::write(ready[1], &byte, 1);
        ::pause();
        return 0;
    });
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    std::string error;
    EXPECT_FALSE(Connect(At("theirs.sock"), Soon(), error).IsOpen());
    EXPECT_NE(error.find("belongs to another user"), std::string::npos) << error;
    ::kill(child, SIGTERM);
    ExitStatus(child);
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST_F(LinkPeerTest, TheFallbackFolderIsPrivateOrRefused) {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime == nullptr || *runtime == '\0') {
        EXPECT_EQ(DefaultEndpoint().Path, PrivateFallbackFolder() + "/logger.sock");
    }
    std::string error;
    const auto made = folder / "private";
    EXPECT_TRUE(MakePrivateFolder(made.string(), error)) << error;
    EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(MakePrivateFolder(made.string(), error)) << error;

    fs::create_directory(folder / "open");
    fs::permissions(folder / "open", fs::perms::all);
    EXPECT_FALSE(MakePrivateFolder((folder / "open").string(), error));
    EXPECT_NE(error.find("is not a private folder of this user"), std::string::npos);
    fs::create_directory_symlink(made, folder / "link");
    EXPECT_FALSE(MakePrivateFolder((folder / "link").string(), error));
}

} // namespace
} // namespace torvane::link
