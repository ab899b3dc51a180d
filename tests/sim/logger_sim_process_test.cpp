// The whole road: libtlm talking to a real torvane-logger-sim process on a private socket, with
// faults given on the simulator's command line.

#include "rlg_container.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"
#include "tlm.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace torvane::sim {
namespace {

using namespace std::chrono_literals;

class SimulatorLink {
public:
    explicit SimulatorLink(std::vector<std::string> options)
        : process_(TORVANE_LOGGER_SIM, folder_ / "logger.sock", std::move(options)) {
        ::setenv("TORVANE_LOGGER", process_.Endpoint().c_str(), 1);
    }
    ~SimulatorLink() { ::unsetenv("TORVANE_LOGGER"); }

    bool Listening() const { return process_.Listening(); }
    const testing::TempFolder& Folder() const { return folder_; }

    // Opens a link and waits until the logger has finished initialising.
    TlmStatus OpenReady() {
        TlmStatus status{};
        EXPECT_EQ(TLM_Open(&status), TLM_OK);
        for (int poll = 0; poll < 50 && status.bytState == TLM_STATE_INITIALIZING; ++poll) {
            std::this_thread::sleep_for(100ms);
            GetStatus(&status);
        }
        return status;
    }

private:
    testing::TempFolder folder_;
    testing::SimulatorProcess process_;
};

TEST(LoggerSimProcess, DownloadSurvivesALinkDroppedMidTransfer) {
    SimulatorLink link(
        {"--files", "1", "--minutes", "5", "--rate", "0", "--drop-after-blocks", "2"});
    ASSERT_TRUE(link.Listening());
    TlmStatus status = link.OpenReady();
    ASSERT_EQ(LoggingControl(&status, 1), TLM_OK);
    ASSERT_EQ(GetTheNumberofFiles(&status), 1);
    TlmDownloadEntry entry{};
    ASSERT_EQ(GetTheDownloadList(&status, 1, &entry), TLM_OK);
    ASSERT_GT(entry.lngSize, 2 * 32768) << "the file must take more than two blocks";

    const std::string path = (link.Folder() / "first.rlg").string();
    TlmTransferBlock block{};
    ASSERT_EQ(GetTheLogFile_start(&status, &entry, path.c_str(), &block), TLM_OK);
    std::int32_t result = 0;
    for (int read = 0; read < 10 && result == 0; ++read) {
        result = GetTheLogFile_reading(&status, &block);
    }
    EXPECT_LT(result, 0) << "the link went down after the second block";
    GetTheLogFile_end(&status, &block);
    TLM_Close(&status);

    status = link.OpenReady();
    EXPECT_EQ(status.bytState, TLM_STATE_IDLE) << "the transfer was abandoned with the link";
    const std::string again = (link.Folder() / "again.rlg").string();
    ASSERT_EQ(GetTheLogFile_start(&status, &entry, again.c_str(), &block), TLM_OK);
    std::int64_t total = 0;
    do {
        result = GetTheLogFile_reading(&status, &block);
        total += block.lngSize;
    } while (result == 0 && status.bytSense == 0);
    EXPECT_GT(result, 0);
    EXPECT_EQ(total, entry.lngSize);
    EXPECT_EQ(GetTheLogFile_end(&status, &block), TLM_OK);
    ASSERT_EQ(GetTheDownloadList(&status, 1, &entry), TLM_OK);
    EXPECT_NE(entry.intDone, 0);
    TLM_Close(&status);

    rlg::HeaderBytes header{};
    rlg::DeployStats stats;
    EXPECT_EQ(rlg::Deploy(again, link.Folder().Path(), 1, header, stats), TLM_DECOMP_OK);
    EXPECT_EQ(stats.streamCount, 12);
}

// A result fault on the next call, and the error state, both given on the command line.
TEST(LoggerSimProcess, ResultFaultOnceAndTheErrorStateShowInTheStatus) {
    SimulatorLink stopped({"--error-state", "33", "--result", "-6", "--on", "GetStatus"});
    ASSERT_TRUE(stopped.Listening());
    TlmStatus status{};
    ASSERT_EQ(TLM_Open(&status), TLM_OK);
    EXPECT_EQ(GetStatus(&status), TLM_ERR_BUSY);
    EXPECT_EQ(GetStatus(&status), TLM_OK) << "once only";
    EXPECT_EQ(status.bytError, 33);
    TLM_Close(&status);
}

} // namespace
} // namespace torvane::sim
