#pragma once
// A real virtual-logger process on a private socket, for tests that take the whole road from
// libtlm (or the CLI) to the device. It is started with the given options, is waited for until
// it says it listens, and is stopped (or killed) when the object goes away.

#include "support/run_process.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace torvane::testing {

class SimulatorProcess {
public:
    // socketPath: where the simulator listens; program: the simulator binary.
    SimulatorProcess(const std::string& program, const std::filesystem::path& socketPath,
                     std::vector<std::string> options = {})
        : endpoint_("unix:" + socketPath.string()) {
        int pipeEnds[2] = {-1, -1};
        if (::pipe(pipeEnds) != 0) {
            return;
        }
        std::vector<std::string> args{program, "--socket", endpoint_};
        args.insert(args.end(), options.begin(), options.end());
        std::vector<char*> argv = NullTerminated(args);

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], 1);
        // Its messages come to us too, not to the test runner: a test that dies without stopping
        // the simulator must not leave the runner waiting for the end of the output it shares.
        posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], 2);
        posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
        const int spawned =
            ::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(pipeEnds[1]);
        output_ = pipeEnds[0];
        if (spawned != 0) {
            pid_ = -1;
            return;
        }
        listening_ = WaitForLine("listening", std::chrono::seconds(20));
    }

    ~SimulatorProcess() {
        Stop();
        if (output_ >= 0) {
            ::close(output_);
        }
    }

    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // True once the simulator said that it listens.
    bool Listening() const { return listening_; }
    // The value for TORVANE_LOGGER.
    const std::string& Endpoint() const { return endpoint_; }
    // "TORVANE_LOGGER=..." for a child process's environment.
    std::string EnvironmentEntry() const { return "TORVANE_LOGGER=" + endpoint_; }
    // Everything the simulator printed so far.
    const std::string& Output() const { return text_; }

    // Ends the process abruptly, as a pulled cable or a crash would.
    void Kill() { End(SIGKILL); }
    // Asks the process to end and waits for it.
    void Stop() { End(SIGTERM); }

private:
    bool WaitForLine(const std::string& word, std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (text_.find(word) == std::string::npos) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0) {
                return false;
            }
            pollfd poller{output_, POLLIN, 0};
            if (::poll(&poller, 1, static_cast<int>(left.count())) <= 0) {
                return false;
            }
            char buffer[512];
            const auto got = ::read(output_, buffer, sizeof buffer);
            if (got <= 0) {
                return false;
            }
            text_.append(buffer, static_cast<std::size_t>(got));
        }
        return true;
    }

    void End(int signal) {
        if (pid_ <= 0) {
            return;
        }
        ::kill(pid_, signal);
        int status = 0;
        for (int waited = 0; waited < 100; ++waited) {
            if (::waitpid(pid_, &status, WNOHANG) == pid_) {
                pid_ = -1;
                return;
            }
            ::usleep(50'000);
        }
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, &status, 0);
        pid_ = -1;
    }

    std::string endpoint_;
    pid_t pid_ = -1;
    int output_ = -1;
    bool listening_ = false;
    std::string text_;
};

} // namespace torvane::testing
