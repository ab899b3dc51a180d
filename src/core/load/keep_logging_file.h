#pragma once
// Keeping a window's logging file somewhere else: the copy to the operator's chosen path and
// the removal of a downloaded working copy, each telling the operator what went wrong.

#include "shell/message_sink.h"

#include <filesystem>

namespace torvane::load {

// Copies the file over whatever stands at the target. False after the failure was reported.
bool CopyLoggingFile(const std::filesystem::path& file, const std::filesystem::path& target,
                     shell::MessageSink& sink);

// Deletes the file; one that is gone already is no failure. False after the failure was
// reported.
bool DeleteLoggingFile(const std::filesystem::path& file, shell::MessageSink& sink);

} // namespace torvane::load
