#pragma once
// Where the logger listens: "unix:PATH" (a stream socket file) or "tcp:127.0.0.1:PORT". TCP is
// accepted on the loopback address only, because the link carries no authentication: the
// per-user socket file, created mode 0600, and the peer's user id, checked on both ends of a
// unix link, are what keep other users away.

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace torvane::link {

struct Endpoint {
    enum class Kind { Unix, Tcp };
    Kind Kind = Kind::Unix;
    std::string Path;       // Unix
    std::uint16_t Port = 0; // Tcp; 0 when listening asks the system for a free port
};

// Parses "unix:PATH" or "tcp:127.0.0.1:PORT"; nullopt with a reason in error otherwise.
std::optional<Endpoint> ParseEndpoint(std::string_view text, std::string& error);
// The text that ParseEndpoint takes back.
std::string ToString(const Endpoint& endpoint);
// $XDG_RUNTIME_DIR/torvane-logger.sock, else logger.sock in the user's private folder
// PrivateFallbackFolder(): a predictable name in a shared folder could be taken first by another.
Endpoint DefaultEndpoint();
// /tmp/torvane-<uid>, made owner-only by MakePrivateFolder.
std::string PrivateFallbackFolder();
// Makes folder mode 0700 if missing; false with a reason when it is not a folder of this user
// that only this user can enter.
bool MakePrivateFolder(const std::string& folder, std::string& error);

// TORVANE_LOGGER if set (nullopt with a reason when it does not parse), else DefaultEndpoint().
std::optional<Endpoint> EndpointFromEnvironment(std::string& error);

inline constexpr std::chrono::milliseconds DefaultExchangeTimeout{5000};
// How long one exchange may take: TORVANE_LOGGER_TIMEOUT_MS when it holds a positive number of
// milliseconds, else DefaultExchangeTimeout.
std::chrono::milliseconds ExchangeTimeoutFromEnvironment();

} // namespace torvane::link
