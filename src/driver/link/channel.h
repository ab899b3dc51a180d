#pragma once
// Whole frames over a socket. Bytes that arrive before a frame is complete stay in the inbox, so
// a receive that times out half-way loses nothing: the next one goes on from there.

#include <cstdint>
#include <utility>
#include <vector>

#include "socket.h"
#include "wire.h"

namespace torvane::link {

enum class FrameStatus {
    Ok,
    TimedOut,  // the deadline passed; the stream is still in step
    Lost,      // the peer closed, or the stream broke
    Malformed, // the peer sent something that is not a frame of ours
};

class Channel {
public:
    Channel() = default;
    explicit Channel(Socket socket)
        : socket_(std::move(socket)) {}

    bool IsOpen() const { return socket_.IsOpen(); }
    int Descriptor() const { return socket_.Descriptor(); }
    void Close();

    FrameStatus Send(const Frame& frame, Deadline deadline);
    FrameStatus Receive(Frame& frame, Deadline deadline);
    // True when part of a frame has arrived and the rest has not.
    bool HasPartialFrame() const { return !inbox_.empty(); }

private:
    Socket socket_;
    std::vector<std::uint8_t> inbox_;
};

} // namespace torvane::link
