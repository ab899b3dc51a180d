#include "endpoint.h"

#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

namespace torvane::link {
namespace {

constexpr std::string_view UnixPrefix = "unix:";
constexpr std::string_view TcpPrefix = "tcp:";
constexpr std::string_view Loopback = "127.0.0.1:";

template <typename Number> bool ParseNumber(std::string_view text, Number& value) {
    const char* end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, value);
    return failure == std::errc() && stop == end && !text.empty();
}

} // namespace

std::optional<Endpoint> ParseEndpoint(std::string_view text, std::string& error) {
    Endpoint endpoint;
    if (text.starts_with(UnixPrefix)) {
        endpoint.Kind = Endpoint::Kind::Unix;
        endpoint.Path = std::string(text.substr(UnixPrefix.size()));
        if (endpoint.Path.empty()) {
            error = "\"unix:\" needs a socket path";
            return std::nullopt;
        }
        return endpoint;
    }
    if (text.starts_with(TcpPrefix)) {
        const std::string_view address = text.substr(TcpPrefix.size());
        if (!address.starts_with(Loopback)) {
            error = "a tcp endpoint must be on 127.0.0.1";
            return std::nullopt;
        }
        endpoint.Kind = Endpoint::Kind::Tcp;
        if (!ParseNumber(address.substr(Loopback.size()), endpoint.Port)) {
            error = "a tcp endpoint needs a port from 0 to 65535";
            return std::nullopt;
        }
        return endpoint;
    }
    error = "the endpoint must be \"unix:PATH\" or \"tcp:127.0.0.1:PORT\"";
    return std::nullopt;
}

std::string ToString(const Endpoint& endpoint) {
    if (endpoint.Kind == Endpoint::Kind::Unix) {
        return std::string(UnixPrefix) + endpoint.Path;
    }
    return std::string(TcpPrefix) + std::string(Loopback) + std::to_string(endpoint.Port);
}

std::string PrivateFallbackFolder() {
    return "/tmp/torvane-" + std::to_string(::geteuid());
}

Endpoint DefaultEndpoint() {
    Endpoint endpoint;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime != '\0') {
        endpoint.Path = std::string(runtime) + "/torvane-logger.sock";
    } else {
        endpoint.Path = PrivateFallbackFolder() + "/logger.sock";
    }
    return endpoint;
}

bool MakePrivateFolder(const std::string& folder, std::string& error) {
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        error = "cannot make " + folder + ": " + std::strerror(errno);
        return false;
    }
    // A name taken first by someone else (a link, another user's folder, an open one) is not
    // private, whatever it holds.
    struct stat info {};
    if (::lstat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode) ||
        info.st_uid != ::geteuid() || (info.st_mode & 077) != 0) {
        error = folder + " is not a private folder of this user";
        return false;
    }
    return true;
}

std::optional<Endpoint> EndpointFromEnvironment(std::string& error) {
    const char* text = std::getenv("TORVANE_LOGGER");
    if (text == nullptr || *text == '\0') {
        return DefaultEndpoint();
    }
    return ParseEndpoint(text, error);
}

std::chrono::milliseconds ExchangeTimeoutFromEnvironment() {
    const char* text = std::getenv("TORVANE_LOGGER_TIMEOUT_MS");
    std::int64_t milliseconds = 0;
    if (text != nullptr && ParseNumber(std::string_view(text), milliseconds) && milliseconds > 0) {
        return std::chrono::milliseconds(milliseconds);
    }
    return DefaultExchangeTimeout;
}

} // namespace torvane::link
