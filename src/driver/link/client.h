#pragma once
// The library's end of the link: a hello at open, then one request and its answer per call.
// Results are the TLM_ codes of tlm.h.
//
// A request that times out leaves the link usable: its late answer is recognised by its request
// id and dropped when the next call reads. A link that is lost, or that carries something that is
// not an answer of ours, is broken for good: every later call says TLM_ERR_LINK_LOST at once.

#include <chrono>
#include <cstdint>
#include <functional>

#include "channel.h"
#include "endpoint.h"
#include "tlm.h"
#include "wire.h"

namespace torvane::link {

class Client {
public:
    // Connects and says hello. TLM_ERR_NOT_CONNECTED when nothing listens, TLM_ERR_OPEN_FAILED
    // when a logger answers but turns the link down (busy, another protocol version),
    // TLM_ERR_TIMEOUT when it does not answer; else the device's result of its open, with the
    // status bytes it gave.
    std::int32_t Open(const Endpoint& endpoint, std::chrono::milliseconds timeout,
                      TlmStatus& status);

    // Reads the outputs that follow the common prefix of an answer; false if they do not fit.
    using OutputReader = std::function<bool(PayloadReader&)>;

    // Sends one request and waits for its answer. On an answer, the status bytes (not bytDriver)
    // are copied into status, readOutputs reads the rest, and the device's result is returned.
    std::int32_t Exchange(MessageKind kind, PayloadWriter& request, TlmStatus& status,
                          const OutputReader& readOutputs = {});

    // Says goodbye when the link still works, then closes the socket in any case.
    void Close();

    bool IsBroken() const { return broken_; }
    // True when the last Exchange got its answer, so that its result is the device's and not a
    // code of the link (the two share one range).
    bool LastExchangeAnswered() const { return answered_; }

private:
    std::int32_t Break(std::int32_t result);

    Channel channel_;
    std::chrono::milliseconds timeout_{DefaultExchangeTimeout};
    std::uint32_t lastId_ = 0;
    bool broken_ = false;
    bool answered_ = false;
};

} // namespace torvane::link
