#include "cli/cli_support.h"

#include "shell/regular_file.h"

#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>

namespace torvane::cli {

int StderrSink::Show(const shell::Message& message) {
    std::string text = message.Text;
    for (char& c : text) {
        if (c == '\r') {
            c = '\n';
        }
    }
    // "\r\n" became two line ends; keep one.
    for (std::size_t at = text.find("\n\n"); at != std::string::npos; at = text.find("\n\n")) {
        text.erase(at, 1);
    }
    std::cerr << text << '\n';
    switch (message.Buttons) {
    case shell::buttons::YesNo:
    case shell::buttons::YesNoCancel:
        return answerYes_ ? shell::answers::Yes : shell::answers::No;
    case shell::buttons::OkCancel:
        return answerYes_ ? shell::answers::Ok : shell::answers::Cancel;
    default:
        return shell::answers::Ok;
    }
}

Environment LoadEnvironment(shell::MessageSink& sink) {
    Environment environment{shell::AppPaths::Resolve(shell::AppPaths::ProcessInputs()), {}};
    environment.Paths.MakeFolders();
    logger::LoadLafTable(environment.Laf, environment.Paths.InitDir(), sink);
    return environment;
}

std::optional<std::vector<std::uint8_t>> ReadBinaryFile(const std::filesystem::path& file,
                                                        std::size_t maxBytes) {
    std::error_code error;
    auto bytes = shell::ReadRegularFile(file, maxBytes + 1, error);
    if (!bytes || bytes->size() > maxBytes) {
        return std::nullopt;
    }
    return bytes;
}

nlohmann::json JsonNumber(double value) {
    if (std::isfinite(value) && value == std::trunc(value) && std::fabs(value) < 9.0e15) {
        return static_cast<std::int64_t>(value);
    }
    return value;
}

int Fail(const std::string& message) {
    std::cerr << message << '\n';
    return 1;
}

} // namespace torvane::cli
