#pragma once
// Runs a real program, without a shell in between, and captures its exit status, stdout and
// stderr. Output goes through temporary files so that a chatty child can never block on a pipe.

#include "support/temp_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace torvane::testing {

struct ProcessResult {
    int Status = -1;
    std::string Out;
    std::string Err;
};

// The pointers that exec wants for texts, ending in a null pointer; they point into texts.
inline std::vector<char*> NullTerminated(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// Runs program with args; environment entries are "NAME=value" and are added to (or override)
// this process's own environment. Standard input is /dev/null.
inline ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& args,
                                const std::vector<std::string>& environment = {}) {
    const auto stem =
        std::filesystem::temp_directory_path() / ("torvane-process-" + std::to_string(::getpid()));
    const auto outFile = std::filesystem::path(stem.string() + ".out");
    const auto errFile = std::filesystem::path(stem.string() + ".err");

    std::vector<std::string> environmentEntries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto name = text.substr(0, text.find('=') + 1);
        bool overridden = false;
        for (const auto& added : environment) {
            overridden = overridden || added.starts_with(name);
        }
        if (!overridden) {
            environmentEntries.push_back(text);
        }
    }
    environmentEntries.insert(environmentEntries.end(), environment.begin(), environment.end());

    std::vector<std::string> argStrings{program};
    argStrings.insert(argStrings.end(), args.begin(), args.end());
    std::vector<char*> argv = NullTerminated(argStrings);
    std::vector<char*> envp = NullTerminated(environmentEntries);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    posix_spawn_file_actions_addopen(&actions, 2, errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    ProcessResult result;
    pid_t child = 0;
    const int spawned =
        ::posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned == 0) {
        int raw = 0;
        while (::waitpid(child, &raw, 0) < 0 && errno == EINTR) {
        }
        result.Status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }
    result.Out = ReadText(outFile);
    result.Err = ReadText(errFile);
    std::error_code ignored;
    std::filesystem::remove(outFile, ignored);
    std::filesystem::remove(errFile, ignored);
    return result;
}

} // namespace torvane::testing
