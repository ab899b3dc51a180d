// POSIX sockets. Descriptors are non-blocking and close-on-exec; every wait is a poll() that ends
// at the caller's deadline, restarted after a signal with the time that is left.

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

#include "socket.h"

namespace torvane::link {
namespace fs = std::filesystem;
namespace {

constexpr int Backlog = 4;

std::string SystemError(const char* what) {
    return std::string(what) + ": " + std::strerror(errno);
}

int MillisecondsLeft(std::optional<Deadline> deadline) {
    if (!deadline) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, 1'000'000));
}

// poll() on one descriptor; true when events came before the deadline.
bool WaitFor(int descriptor, short events, Deadline deadline) {
    for (;;) {
        pollfd entry{descriptor, events, 0};
        const int ready = ::poll(&entry, 1, MillisecondsLeft(deadline));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

int NewSocket(int domain) {
    return ::socket(domain, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

// Fills address for endpoint; false if a unix path does not fit.
bool ToAddress(const Endpoint& endpoint, sockaddr_storage& storage, socklen_t& length) {
    std::memset(&storage, 0, sizeof storage);
    if (endpoint.Kind == Endpoint::Kind::Unix) {
        auto& address = reinterpret_cast<sockaddr_un&>(storage);
        if (endpoint.Path.empty() || endpoint.Path.size() >= sizeof address.sun_path) {
            return false;
        }
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, endpoint.Path.data(), endpoint.Path.size());
        length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + endpoint.Path.size() + 1);
        return true;
    }
    auto& address = reinterpret_cast<sockaddr_in&>(storage);
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.Port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    length = sizeof address;
    return true;
}

} // namespace

Socket::~Socket() {
    Close();
}

Socket::Socket(Socket&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {
}

Socket& Socket::operator=(Socket&& other) noexcept {
    if (this != &other) {
        Close();
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

void Socket::Close() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
        descriptor_ = -1;
    }
}

IoStatus Socket::SendAll(std::span<const std::uint8_t> bytes, Deadline deadline) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        // MSG_NOSIGNAL: a peer that went away must give EPIPE here, not kill the process.
        const ssize_t count =
            ::send(descriptor_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count > 0) {
            sent += static_cast<std::size_t>(count);
            continue;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            if (WaitFor(descriptor_, POLLOUT, deadline)) {
                continue;
            }
            // Half a frame on the wire puts the stream out of step for good.
            return sent == 0 ? IoStatus::TimedOut : IoStatus::Lost;
        }
        return IoStatus::Lost;
    }
    return IoStatus::Ok;
}

IoStatus Socket::ReceiveSome(std::vector<std::uint8_t>& buffer, std::size_t limit,
                             Deadline deadline) {
    const std::size_t start = buffer.size();
    buffer.resize(start + limit);
    for (;;) {
        const ssize_t count = ::recv(descriptor_, buffer.data() + start, limit, 0);
        if (count > 0) {
            buffer.resize(start + static_cast<std::size_t>(count));
            return IoStatus::Ok;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK) &&
            WaitFor(descriptor_, POLLIN, deadline)) {
            continue;
        }
        buffer.resize(start);
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return IoStatus::TimedOut;
        }
        return IoStatus::Lost;
    }
}

// The other end of a unix link must run as this user: a logger or program of another user could
// read or forge what the link carries. TCP has no peer to ask, and stays on the loopback.
bool SameUserAtOtherEnd(const Socket& socket, const Endpoint& endpoint) {
    if (endpoint.Kind != Endpoint::Kind::Unix) {
        return true;
    }
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket.Descriptor(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == ::geteuid();
}

Socket Connect(const Endpoint& endpoint, Deadline deadline, std::string& error) {
    Socket socket = ConnectAnyone(endpoint, deadline, error);
    if (socket.IsOpen() && !SameUserAtOtherEnd(socket, endpoint)) {
        error = endpoint.Path + " belongs to another user";
        return {};
    }
    return socket;
}

Socket ConnectAnyone(const Endpoint& endpoint, Deadline deadline, std::string& error) {
    sockaddr_storage address{};
    socklen_t length = 0;
    if (!ToAddress(endpoint, address, length)) {
        error = "the socket path is empty or too long";
        return {};
    }
    Socket socket(NewSocket(address.ss_family));
    if (!socket.IsOpen()) {
        error = SystemError("socket");
        return {};
    }
    const auto* target = reinterpret_cast<const sockaddr*>(&address);
    int result = ::connect(socket.Descriptor(), target, length);
    // A unix listener whose backlog is full says EAGAIN instead of queueing: try again shortly.
    while (result != 0 && errno == EAGAIN && Clock::now() < deadline) {
        ::poll(nullptr, 0, 10);
        result = ::connect(socket.Descriptor(), target, length);
    }
    if (result == 0) {
        return socket;
    }
    if (errno != EINPROGRESS && errno != EINTR) {
        error = SystemError("connect");
        return {};
    }
    if (!WaitFor(socket.Descriptor(), POLLOUT, deadline)) {
        error = "connect: timed out";
        return {};
    }
    int failure = 0;
    socklen_t failureSize = sizeof failure;
    if (::getsockopt(socket.Descriptor(), SOL_SOCKET, SO_ERROR, &failure, &failureSize) != 0 ||
        failure != 0) {
        errno = failure;
        error = SystemError("connect");
        return {};
    }
    return socket;
}

void Listener::Close() {
    socket_.Close();
    if (!ownedPath_.empty()) {
        ::unlink(ownedPath_.c_str());
        ownedPath_.clear();
    }
}

bool Listener::Open(const Endpoint& endpoint, std::string& error) {
    sockaddr_storage address{};
    socklen_t length = 0;
    if (!ToAddress(endpoint, address, length)) {
        error = "the socket path is empty or too long";
        return false;
    }
    Socket socket(NewSocket(address.ss_family));
    if (!socket.IsOpen()) {
        error = SystemError("socket");
        return false;
    }
    const auto* target = reinterpret_cast<const sockaddr*>(&address);
    if (endpoint.Kind == Endpoint::Kind::Unix &&
        fs::path(endpoint.Path).parent_path() == PrivateFallbackFolder() &&
        !MakePrivateFolder(PrivateFallbackFolder(), error)) {
        return false;
    }
    if (endpoint.Kind == Endpoint::Kind::Tcp) {
        const int on = 1;
        ::setsockopt(socket.Descriptor(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    }
    if (::bind(socket.Descriptor(), target, length) != 0) {
        if (endpoint.Kind != Endpoint::Kind::Unix || errno != EADDRINUSE) {
            error = SystemError("bind");
            return false;
        }
        // A socket file is there. It is stale if nothing accepts on it (a logger that crashed);
        // a live logger keeps it, and anything that is not a socket is never removed.
        struct stat info {};
        if (::lstat(endpoint.Path.c_str(), &info) != 0 || !S_ISSOCK(info.st_mode)) {
            error = endpoint.Path + " exists and is not a socket";
            return false;
        }
        std::string probeError;
        if (ConnectAnyone(endpoint, Clock::now() + std::chrono::milliseconds(500), probeError)
                .IsOpen()) {
            error = "another logger is listening on " + endpoint.Path;
            return false;
        }
        ::unlink(endpoint.Path.c_str());
        if (::bind(socket.Descriptor(), target, length) != 0) {
            error = SystemError("bind");
            return false;
        }
    }
    if (endpoint.Kind == Endpoint::Kind::Unix) {
        ownedPath_ = endpoint.Path;
        // No client can connect before listen(), so tightening the mode here leaves no gap.
        if (::chmod(endpoint.Path.c_str(), S_IRUSR | S_IWUSR) != 0) {
            error = SystemError("chmod");
            return false;
        }
    }
    if (::listen(socket.Descriptor(), Backlog) != 0) {
        error = SystemError("listen");
        return false;
    }
    bound_ = endpoint;
    if (endpoint.Kind == Endpoint::Kind::Tcp) {
        sockaddr_in actual{};
        socklen_t actualSize = sizeof actual;
        if (::getsockname(socket.Descriptor(), reinterpret_cast<sockaddr*>(&actual), &actualSize) !=
            0) {
            error = SystemError("getsockname");
            return false;
        }
        bound_.Port = ntohs(actual.sin_port);
    }
    socket_ = std::move(socket);
    return true;
}

Socket Listener::Accept() {
    for (;;) {
        const int descriptor =
            ::accept4(socket_.Descriptor(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (descriptor < 0 && errno == EINTR) {
            continue;
        }
        Socket client(descriptor);
        if (client.IsOpen() && !SameUserAtOtherEnd(client, bound_)) {
            continue; // another user's program: closed unheard
        }
        return client;
    }
}

WakeSignal::WakeSignal() {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_NONBLOCK | O_CLOEXEC) == 0) {
        readEnd_ = ends[0];
        writeEnd_ = ends[1];
    }
}

WakeSignal::~WakeSignal() {
    if (readEnd_ >= 0) {
        ::close(readEnd_);
        ::close(writeEnd_);
    }
}

void WakeSignal::Notify() noexcept {
    if (writeEnd_ >= 0) {
        const int saved = errno; // a signal handler must leave errno as it found it
        const char byte = 1;
        // A full pipe already wakes the reader, so a failed write loses nothing.
        [[maybe_unused]] const ssize_t written = ::write(writeEnd_, &byte, 1);
        errno = saved;
    }
}

std::uint32_t WaitReadable(std::span<const int> descriptors, std::optional<Deadline> deadline) {
    std::vector<pollfd> entries;
    for (const int descriptor : descriptors) {
        entries.push_back(pollfd{descriptor, POLLIN, 0}); // negative descriptors are ignored
    }
    for (;;) {
        const int ready = ::poll(entries.data(), entries.size(), MillisecondsLeft(deadline));
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        std::uint32_t readable = 0;
        for (std::size_t i = 0; i < entries.size() && ready > 0; ++i) {
            if (entries[i].revents != 0) {
                readable |= 1u << i;
            }
        }
        return readable;
    }
}

} // namespace torvane::link
