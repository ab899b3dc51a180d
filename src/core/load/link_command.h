#pragma once
// What a path handed to the program asks for, and the "LOAD" command that a second start of
// the program sends to the running one. The path is used whole: no quotes are taken off, and
// only its last three characters, upper-cased, decide what it is.

#include <string>
#include <string_view>

namespace torvane::load {

enum class FileKind {
    Other,          // no window opens
    LoggingFile,    // "RLG": a graph window (OpenLoggingWindow with the path)
    DetonationFile, // "DTO": a detonation map window on the file
};

// A name that merely ends in the letters, with no dot before them, counts too.
FileKind FileKindOf(std::string_view path);

inline constexpr std::string_view LoadCommand = "LOAD";

struct LinkAction {
    // False when the command is not "LOAD": the link reports it as refused.
    bool Accepted = false;
    FileKind Kind = FileKind::Other;
    std::string Path;

    friend bool operator==(const LinkAction&, const LinkAction&) = default;
};

// "LOAD" followed at once by the path. An accepted command with a path of any other kind
// opens nothing.
LinkAction LinkExecute(std::string_view command);

} // namespace torvane::load
