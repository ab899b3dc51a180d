#include "cli/work_folders.h"

#include "shell/replacing_file.h"

#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <mutex>
#include <random>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace torvane::cli {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view Prefix = "torvane-cli-";

struct Registry {
    std::mutex Lock;
    std::vector<fs::path> Folders;
};

Registry& Registered() {
    static Registry registry;
    return registry;
}

sigset_t TerminationSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

// The process id in "torvane-cli-<pid>-<random>"; 0 when the name is not of that form.
pid_t OwnerOf(const std::string& name) {
    if (name.rfind(Prefix, 0) != 0) {
        return 0;
    }
    const char* first = name.data() + Prefix.size();
    const char* last = name.data() + name.size();
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(first, last, pid);
    if (error != std::errc{} || end == last || *end != '-' || pid <= 0) {
        return 0;
    }
    return pid;
}

bool Runs(pid_t pid) {
    return ::kill(pid, 0) == 0 || errno == EPERM;
}

} // namespace

void TakeTerminationSignals() {
    const sigset_t signals = TerminationSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] {
        int signal = 0;
        while (::sigwait(&signals, &signal) != 0) {
        }
        {
            const std::lock_guard lock(Registered().Lock);
            for (const fs::path& folder : Registered().Folders) {
                std::error_code ignored;
                fs::remove_all(folder, ignored);
            }
        }
        shell::RemoveUnfinishedReplacements();
        // Ended by the signal itself, so that the caller sees how the command ended.
        ::signal(signal, SIG_DFL);
        ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
        ::raise(signal);
    }).detach();
}

void RemoveStaleWorkFolders(const fs::path& base) {
    std::error_code error;
    for (fs::directory_iterator it(base, error), end; !error && it != end; it.increment(error)) {
        const pid_t pid = OwnerOf(it->path().filename().string());
        struct stat status {};
        // Only folders of this user: another user's are not ours to judge.
        if (pid == 0 || ::lstat(it->path().c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
            status.st_uid != ::geteuid() || Runs(pid)) {
            continue;
        }
        std::error_code ignored;
        fs::remove_all(it->path(), ignored);
    }
}

fs::path MakeWorkFolder() {
    std::error_code error;
    const fs::path base = fs::temp_directory_path(error);
    if (error) {
        return {};
    }
    RemoveStaleWorkFolders(base);
    std::random_device entropy;
    const std::string stem = std::string(Prefix) + std::to_string(::getpid()) + "-";
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path candidate = base / (stem + std::to_string(entropy()));
        // Registered before it exists, so that a signal in between still finds it.
        {
            const std::lock_guard lock(Registered().Lock);
            Registered().Folders.push_back(candidate);
        }
        // mkdir is false when the name exists, so two runs never share a folder.
        if (::mkdir(candidate.c_str(), 0700) == 0) {
            return candidate;
        }
        const std::lock_guard lock(Registered().Lock);
        Registered().Folders.pop_back();
        if (errno != EEXIST) {
            break;
        }
    }
    return {};
}

void RemoveWorkFolder(const fs::path& folder) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    const std::lock_guard lock(Registered().Lock);
    std::erase(Registered().Folders, folder);
}

} // namespace torvane::cli
