#pragma once
// Sockets that only the user's own programs may use: they live in a folder no one else can enter,
// and each end asks the kernel who the other end runs as.

#include <filesystem>
#include <string>

namespace torvane::shell {

// XDG_RUNTIME_DIR when it is set; else /tmp/torvane-<uid>, made mode 0700 if missing. Empty,
// with a reason in error, when that folder is not one of this user's that only this user can
// enter (a name taken first by someone else).
std::filesystem::path PrivateRuntimeFolder(std::string& error);

// True when the other end of the connected unix socket runs as this process's user.
bool SameUserAtOtherEnd(int socketDescriptor);

} // namespace torvane::shell
