#pragma once
// The operating system's part of the link: non-blocking stream sockets whose every wait ends at
// a deadline, a listener, and a wake-up that a signal handler may use. Everything above this
// file is portable C++.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "endpoint.h"

namespace torvane::link {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

enum class IoStatus {
    Ok,
    TimedOut, // nothing moved before the deadline; the stream is still in step
    Lost,     // closed by the peer, failed, or cut off in the middle of a send
};

class Socket {
public:
    Socket() = default;
    explicit Socket(int descriptor)
        : descriptor_(descriptor) {}
    ~Socket();
    Socket(Socket&& other) noexcept;
    Socket& operator=(Socket&& other) noexcept;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    bool IsOpen() const { return descriptor_ >= 0; }
    int Descriptor() const { return descriptor_; }
    void Close();

    // Sends every byte before the deadline.
    IoStatus SendAll(std::span<const std::uint8_t> bytes, Deadline deadline);
    // Waits until the deadline for bytes to arrive, then appends what is there (up to limit).
    IoStatus ReceiveSome(std::vector<std::uint8_t>& buffer, std::size_t limit, Deadline deadline);

private:
    int descriptor_ = -1;
};

// Connects before the deadline; a closed socket with the reason in error when nothing listens
// there, the time ran out, or a unix socket's listener runs as another user.
Socket Connect(const Endpoint& endpoint, Deadline deadline, std::string& error);
// Connect without the check of the listener's user: only to ask whether anything listens.
Socket ConnectAnyone(const Endpoint& endpoint, Deadline deadline, std::string& error);

class Listener {
public:
    Listener() = default;
    ~Listener() { Close(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    bool Open(const Endpoint& endpoint, std::string& error);
    const Endpoint& Bound() const { return bound_; }
    int Descriptor() const { return socket_.Descriptor(); }
    // A waiting client, or a closed socket if none is there.
    Socket Accept();
    // Stops listening and removes the socket file that Open created.
    void Close();

private:
    Socket socket_;
    Endpoint bound_;
    std::string ownedPath_;
};

// A self-pipe: Notify() makes Descriptor() readable. Notify() is async-signal-safe.
class WakeSignal {
public:
    WakeSignal();
    ~WakeSignal();
    WakeSignal(const WakeSignal&) = delete;
    WakeSignal& operator=(const WakeSignal&) = delete;

    void Notify() noexcept;
    int Descriptor() const { return readEnd_; }

private:
    int readEnd_ = -1;
    int writeEnd_ = -1;
};

// Waits until one of the descriptors (negative ones are skipped) can be read, or until the
// deadline if there is one. Bit i of the result is set when descriptors[i] is readable (or
// closed); 0 means the deadline passed.
std::uint32_t WaitReadable(std::span<const int> descriptors, std::optional<Deadline> deadline);

} // namespace torvane::link
