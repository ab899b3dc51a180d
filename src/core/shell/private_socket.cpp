#include "shell/private_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace torvane::shell {

std::filesystem::path PrivateRuntimeFolder(std::string& error) {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime != '\0') {
        return runtime;
    }
    const std::string folder = "/tmp/torvane-" + std::to_string(::geteuid());
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        error = "cannot make " + folder + ": " + std::strerror(errno);
        return {};
    }
    struct stat info {};
    if (::lstat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode) ||
        info.st_uid != ::geteuid() || (info.st_mode & 077) != 0) {
        error = folder + " is not a private folder of this user";
        return {};
    }
    return folder;
}

bool SameUserAtOtherEnd(int socketDescriptor) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socketDescriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == ::geteuid();
}

} // namespace torvane::shell
