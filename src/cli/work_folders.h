#pragma once
// The private work folders of torvane-cli in $TMPDIR ("torvane-cli-<pid>-<random>"): removed when
// the command ends, when it is interrupted (SIGINT, SIGTERM), and, for a process that died
// without a chance to clean up, by the next command that starts.

#include <filesystem>

namespace torvane::cli {

// Blocks SIGINT and SIGTERM in every thread to come and takes them in one thread of its own,
// which removes the registered folders and the unfinished replacements of files (nothing
// half-written stays beside its target) and then ends the process by the same signal. Called
// first in main, before any other thread exists.
void TakeTerminationSignals();

// Makes a new owner-only work folder, registered for removal on a signal; empty on failure.
// Stale folders of processes that no longer run are removed first.
std::filesystem::path MakeWorkFolder();

// Removes a folder made by MakeWorkFolder and forgets it.
void RemoveWorkFolder(const std::filesystem::path& folder);

// The stale work folders in base, of processes of this user that no longer run, are removed.
void RemoveStaleWorkFolders(const std::filesystem::path& base);

} // namespace torvane::cli
