#pragma once
// A real virtual logger for the widget tests of the live logger windows: a simulator process on
// a private socket, libtlm pointed at it, and a sink that keeps what the operator was told.

#include "binding/tlm_driver.h"
#include "shell/message_sink.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"

#include <QtTest>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

namespace torvane::testing {

struct LiveLoggerDesk {
    explicit LiveLoggerDesk(std::vector<std::string> options) { Start(std::move(options)); }
    ~LiveLoggerDesk() { ::unsetenv("TORVANE_LOGGER"); }

    // Starts the logger and waits until it has initialised; true when it did.
    bool Start(std::vector<std::string> options) {
        const auto socket = Folder.Path() / "logger.sock";
        Logger = std::make_unique<SimulatorProcess>(TORVANE_LOGGER_SIM, socket, options);
        ::setenv("TORVANE_LOGGER", ("unix:" + socket.string()).c_str(), 1);
        for (int tries = 0; Logger->Listening() && tries < 100; ++tries) {
            TlmStatus status{};
            const bool ready = Driver.Open(status) == TLM_OK &&
                               Driver.GetStatus(status) == TLM_OK &&
                               status.bytState != TLM_STATE_INITIALIZING;
            Driver.Close(status);
            if (ready) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return false;
    }

    TempFolder Folder;
    std::unique_ptr<SimulatorProcess> Logger;
    binding::TlmDriver Driver;
    shell::RecordingSink Sink;
};

} // namespace torvane::testing
