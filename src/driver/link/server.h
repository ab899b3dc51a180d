#pragma once
// The logger's end of the link: listens on an endpoint and serves one client at a time, turning
// each request into a DeviceCalls function and its result into the answer.
//
//     link::Server server;
//     std::string error;
//     if (!server.Listen(endpoint, error)) { report error; }
//     server.Run(device); // until Stop()
//
// A second client that connects while one holds the link is answered "busy" and closed. A client
// that closes, vanishes, stalls in the middle of a frame or sends a malformed frame ends its link:
// the device hears Closed() and the server accepts the next client.

#include <chrono>
#include <memory>
#include <string>

#include "device_calls.h"
#include "endpoint.h"

namespace torvane::link {

class Server {
public:
    Server();
    ~Server(); // closes the listener and removes the socket file it created
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Opens the endpoint. A unix socket file is created mode 0600; a stale file that nobody
    // listens on is replaced, one with a live listener is left alone (false). For tcp, port 0
    // takes a free port: see BoundEndpoint().
    bool Listen(const Endpoint& endpoint, std::string& error);
    // The endpoint clients reach, with the actual port of a tcp listener.
    const Endpoint& BoundEndpoint() const { return bound_; }

    // How long a frame may take to arrive or to be sent once begun; by default
    // ExchangeTimeoutFromEnvironment().
    void SetTimeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

    // Serves clients until Stop(); returns at once if Stop() came first. The device is called
    // on this thread only. On Stop() the link is ended (the device hears Closed()) and the
    // listener closed, its socket file removed. False if there was no listener or it failed.
    bool Run(DeviceCalls& device);

    // Makes Run() return soon, after the device call in progress if there is one. Safe from any
    // thread and from a signal handler; stays in force once called.
    void Stop() noexcept;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
    Endpoint bound_;
    std::chrono::milliseconds timeout_;
};

} // namespace torvane::link
