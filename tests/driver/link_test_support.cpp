#include "link_test_support.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace torvane::link::test {

bool SameLoggerStatus(const TlmStatus& a, const TlmStatus& b) {
    const auto* left = reinterpret_cast<const std::uint8_t*>(&a) + sizeof a.bytDriver;
    const auto* right = reinterpret_cast<const std::uint8_t*>(&b) + sizeof b.bytDriver;
    return std::equal(left, left + sizeof(TlmStatus) - sizeof a.bytDriver, right);
}

std::int32_t ScriptedDevice::Answer(const char* call, TlmStatus& s) {
    calls.emplace_back(call);
    const int stall = stallNextCallMs.exchange(0);
    if (stall > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(stall));
    }
    // The device owns everything but bytDriver; writing all of it shows that the server keeps
    // the library's part away from the device and the wire.
    s = status;
    return result;
}

std::int32_t ScriptedDevice::TransferRead(TlmStatus& s, TlmTransferBlock& block,
                                          std::vector<std::uint8_t>& bytes) {
    blockAsked = block;
    ++reads_;
    const std::int32_t given = Answer("TransferRead", s);
    if (nextBlock_ < blocks.size()) {
        bytes = blocks[nextBlock_++];
    }
    // A record that disagrees with the bytes: the library must report what arrived.
    block = OddRecord<TlmTransferBlock>(static_cast<unsigned>(10 + nextBlock_));
    block.lngSize = -1;
    if (given != TLM_OK) {
        return given;
    }
    return nextBlock_ == blocks.size() ? 1 : 0;
}

ScopedEnvironment::ScopedEnvironment(const char* name, const std::string& value)
    : name_(name) {
    if (const char* old = std::getenv(name)) {
        hadValue_ = true;
        saved_ = old;
    }
    ::setenv(name, value.c_str(), 1);
}

ScopedEnvironment::~ScopedEnvironment() {
    if (hadValue_) {
        ::setenv(name_.c_str(), saved_.c_str(), 1);
    } else {
        ::unsetenv(name_.c_str());
    }
}

ServedLogger::ServedLogger(Transport transport)
    : timeoutVariable_("TORVANE_LOGGER_TIMEOUT_MS", std::to_string(Timeout.count())) {
    Endpoint endpoint;
    if (transport == Transport::Unix) {
        endpoint.Path = (folder_.Path() / "logger.sock").string();
    } else {
        endpoint.Kind = Endpoint::Kind::Tcp;
    }
    server_.SetTimeout(Timeout);
    std::string error;
    if (!server_.Listen(endpoint, error)) {
        throw std::runtime_error("the test logger cannot listen: " + error);
    }
    endpointVariable_.emplace("TORVANE_LOGGER", ToString(server_.BoundEndpoint()));
    thread_ = std::thread([this] { server_.Run(device); });
}

ServedLogger::~ServedLogger() {
    Stop();
}

void ServedLogger::Stop() {
    server_.Stop();
    if (thread_.joinable()) {
        thread_.join();
    }
}

bool Eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace torvane::link::test
