// torvane-logger-sim: the virtual logger. Builds the device from the command line, lays the
// faults over it and serves it on the endpoint until SIGINT or SIGTERM.

#include "link/server.h"
#include "logger/fault_injector.h"
#include "logger/logger_device.h"
#include "logger/simulator_options.h"

#include <csignal>
#include <iostream>

namespace {

torvane::link::Server* runningServer = nullptr;

extern "C" void StopServer(int) {
    if (runningServer != nullptr) {
        runningServer->Stop();
    }
}

void StopOnSignals() {
    struct sigaction action {};
    action.sa_handler = StopServer;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // A client that vanishes mid-answer must not end the logger.
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace

int main(int argc, char** argv) {
    using namespace torvane;
    const auto parsed = sim::ParseSimulatorOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (!parsed.Options) {
        (parsed.ExitCode == 0 ? std::cout : std::cerr) << parsed.Message;
        return parsed.ExitCode;
    }
    const sim::SimulatorOptions& options = *parsed.Options;

    sim::SteadyClock clock;
    sim::LoggerDevice device(options.Logger, clock);
    const int kept = device.AddRecordedRuns(options.Files, options.Minutes, options.Logger.Seed);
    if (kept < options.Files) {
        std::cerr << "torvane-logger-sim: the memory holds " << kept << " of the " << options.Files
                  << " runs asked for\n";
    }
    device.SetBroken(options.Broken);
    device.SetErrorCode(options.ErrorCode);
    sim::FaultInjector faulty(device, options.Faults);

    link::Server server;
    std::string error;
    if (!server.Listen(options.Endpoint, error)) {
        std::cerr << "torvane-logger-sim: can not listen on " << link::ToString(options.Endpoint)
                  << ": " << error << '\n';
        return 1;
    }
    runningServer = &server;
    StopOnSignals();
    std::cout << "listening on " << link::ToString(server.BoundEndpoint()) << std::endl;
    const bool served = server.Run(faulty);
    runningServer = nullptr;
    return served ? 0 : 1;
}
