// The whole road: libtlm talking to a real torvane-logger-sim process on a private socket, with
// faults given on the simulator's command line.

#include "support/simulator_process.h"
#include "support/temp_folder.h"
#include "tlm.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace torvane::sim {
namespace {

class SimulatorLink {
public:
    explicit SimulatorLink(std::vector<std::string> options)
        : process_(TORVANE_LOGGER_SIM, folder_ / "logger.sock", std::move(options)) {
        ::setenv("TORVANE_LOGGER", process_.Endpoint().c_str(), 1);
    }
    ~SimulatorLink() { ::unsetenv("TORVANE_LOGGER"); }

    bool Listening() const { return process_.Listening(); }

private:
    testing::TempFolder folder_;
    testing::SimulatorProcess process_;
};

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
