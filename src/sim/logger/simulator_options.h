#pragma once
// The command line of torvane-logger-sim, parsed into one struct so that a test can check it
// without starting a process.

#include "link/endpoint.h"
#include "logger/fault_injector.h"
#include "logger/logger_device.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace torvane::sim {

struct SimulatorOptions {
    link::Endpoint Endpoint;
    LoggerConfig Logger;
    int Files = 0; // recorded runs held at start
    double Minutes = 5.0;
    FaultPlan Faults;
    bool Broken = false;
    std::uint8_t ErrorCode = 0;
};

struct ParsedOptions {
    std::optional<SimulatorOptions> Options; // set when the simulator should run
    int ExitCode = 0;                        // otherwise: 0 after --help, 2 after a mistake
    std::string Message;                     // help text or the mistake, for the operator
};

// args: the arguments after the program's name.
ParsedOptions ParseSimulatorOptions(const std::vector<std::string>& args);

} // namespace torvane::sim
