#pragma once
// What every torvane-cli command shares: messages to stderr, the program's folders and air/fuel
// table, binary file reading, and numbers for JSON.

#include "logger/laf_table.h"
#include "shell/app_paths.h"
#include "shell/message_sink.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace torvane::cli {

// Prints each message on stderr. Questions are answered No (or OK where that is the only
// button) unless the operator said --yes.
class StderrSink : public shell::MessageSink {
public:
    explicit StderrSink(bool answerYes = false)
        : answerYes_(answerYes) {}
    int Show(const shell::Message& message) override;

private:
    bool answerYes_;
};

// The program's folders (TORVANE_HOME, else beside the program, else per user), made if need
// be, and the air/fuel table read from INT.
struct Environment {
    shell::AppPaths Paths;
    logger::LafTable Laf;
};
Environment LoadEnvironment(shell::MessageSink& sink);

// The whole file, or nothing when it cannot be read, is no regular file or holds more than
// maxBytes.
std::optional<std::vector<std::uint8_t>> ReadBinaryFile(const std::filesystem::path& file,
                                                        std::size_t maxBytes);

// A whole number as a JSON integer, anything else as the shortest double that reads back.
nlohmann::json JsonNumber(double value);

// Reports a failure of the command itself (bad arguments, unreadable input) on stderr.
int Fail(const std::string& message);

} // namespace torvane::cli
