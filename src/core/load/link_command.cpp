#include "load/link_command.h"

#include <algorithm>

namespace torvane::load {

FileKind FileKindOf(std::string_view path) {
    std::string tail(path.substr(path.size() - std::min<std::size_t>(path.size(), 3)));
    // ASCII upper-casing only: the extensions compared against are plain letters.
    std::ranges::transform(tail, tail.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    if (tail == "RLG") {
        return FileKind::LoggingFile;
    }
    if (tail == "DTO") {
        return FileKind::DetonationFile;
    }
    return FileKind::Other;
}

LinkAction LinkExecute(std::string_view command) {
    if (!command.starts_with(LoadCommand)) {
        return {};
    }
    const std::string_view path = command.substr(LoadCommand.size());
    LinkAction action{true, FileKindOf(path), {}};
    if (action.Kind != FileKind::Other) {
        action.Path = std::string(path);
    }
    return action;
}

} // namespace torvane::load
