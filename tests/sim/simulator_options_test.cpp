// The simulator's command line, parsed without starting it.

#include "logger/simulator_options.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace torvane::sim {
namespace {

TEST(SimulatorOptions, TakesEveryOptionAndRefusesMistakesWithAReason) {
    testing::TempFolder folder;
    testing::WriteText(folder / "MT.DAT", std::string(56, '\x02'));
    // clang-format off
    const auto parsed = ParseSimulatorOptions({
        "--socket", "tcp:127.0.0.1:4567", "--time-scale", "10", "--files", "3",
        "--minutes", "2.5", "--seed", "99", "--mt", (folder / "MT.DAT").string(), "--rate", "0",
        "--drop-after-blocks", "4", "--sense", "9", "--on", "GetStatus", "--times", "3",
        "--result", "-3", "--on", "GetTheLogFile_reading", "--drop", "--on", "GetTheErrorInfo",
        "--delay", "250", "--on", "GetTheSignalCondition", "--times", "2", "--error-state", "17",
        "--broken", "--idle"});
    // clang-format on
    ASSERT_TRUE(parsed.Options) << parsed.Message;
    const SimulatorOptions& options = *parsed.Options;
    EXPECT_EQ(options.Endpoint.Port, 4567);
    EXPECT_EQ(options.Logger.TimeScale, 10.0);
    EXPECT_EQ(options.Files, 3);
    EXPECT_EQ(options.Minutes, 2.5);
    EXPECT_EQ(options.Logger.Seed, 99u);
    EXPECT_EQ(options.Logger.MemoryTable[0], 2);
    EXPECT_EQ(options.Logger.BytesPerSecond, 0);
    EXPECT_EQ(options.Faults.DropAfterBlocks, 4);
    ASSERT_EQ(options.Faults.Rules.size(), 4u);
    const FaultRule& sense = options.Faults.Rules[0];
    EXPECT_EQ(sense.Kind, FaultRule::Fault::Sense);
    EXPECT_EQ(sense.Code, 9);
    EXPECT_EQ(sense.Entry, Entry::GetStatus);
    EXPECT_EQ(sense.Times, 3);
    const FaultRule& result = options.Faults.Rules[1];
    EXPECT_EQ(result.Kind, FaultRule::Fault::Result);
    EXPECT_EQ(result.Code, -3);
    EXPECT_EQ(result.Entry, Entry::TransferRead);
    EXPECT_EQ(result.Times, 1) << "--times applies to its own rule only";
    EXPECT_EQ(options.Faults.Rules[2].Kind, FaultRule::Fault::Drop);
    EXPECT_EQ(options.Faults.Rules[2].Entry, Entry::ErrorInfo);
    const FaultRule& delay = options.Faults.Rules[3];
    EXPECT_EQ(delay.Kind, FaultRule::Fault::Delay);
    EXPECT_EQ(delay.Code, 250);
    EXPECT_EQ(delay.Entry, Entry::SignalCondition);
    EXPECT_EQ(delay.Times, 2);
    EXPECT_EQ(options.ErrorCode, 17);
    EXPECT_TRUE(options.Broken);
    EXPECT_FALSE(options.Logger.StartAcquiring);

    // Mistakes are refused with a reason.
    testing::WriteText(folder / "short.dat", "12345");
    const std::vector<std::vector<std::string>> mistakes{
        {"--time-scale", "0"},
        {"--time-scale", "fast"},
        {"--rate", "-1"},
        {"--files", "-2"},
        {"--sense", "5"},                      // no entry point
        {"--sense", "0", "--on", "GetStatus"}, // 0 is clean, not a fault
        {"--sense", "5", "--on", "NoSuchCall"},
        {"--on", "GetStatus"}, // nothing to put on it
        {"--result", "-3", "--on", "GetStatus", "--on", "TLM_Reset"},
        {"--socket", "tcp:10.0.0.1:80"}, // loopback only
        {"--mt", (folder / "missing.dat").string()},
        {"--mt", (folder / "short.dat").string()},
        {"--error-state", "300"},
        {"--frobnicate"},
    };
    for (const auto& args : mistakes) {
        const auto refused = ParseSimulatorOptions(args);
        EXPECT_FALSE(refused.Options) << args[0];
        EXPECT_EQ(refused.ExitCode, 2) << args[0];
        EXPECT_FALSE(refused.Message.empty()) << args[0];
    }
    const auto help = ParseSimulatorOptions({"--help"});
    EXPECT_FALSE(help.Options);
    EXPECT_EQ(help.ExitCode, 0);
    EXPECT_NE(help.Message.find("--drop-after-blocks"), std::string::npos);
}

} // namespace
} // namespace torvane::sim
