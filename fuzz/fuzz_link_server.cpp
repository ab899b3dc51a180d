// libFuzzer target of the link on the virtual logger's side: the input is what a client sends,
// cut into frames as the server cuts them, and each request is answered by a real logger device
// (on a clock that moves a second each request and never sleeps).
//
// Beyond the sanitizers: no answer is larger than a frame may carry.

#include "fuzz_workspace.h"

#include "link/request_handler.h"
#include "logger/logger_device.h"

#include <cstdint>

namespace {

using namespace torvane;

class StepClock final : public sim::MonotonicClock {
public:
    Duration Now() override { return now_; }
    void SleepUntil(Duration time) override { now_ = std::max(now_, time); }
    void Step() { now_ += std::chrono::seconds(1); }

private:
    Duration now_{};
};

struct Logger {
    StepClock Clock;
    sim::LoggerDevice Device{
        {.MemoryBytes = 1 << 20, .BytesPerSecond = 0, .BlockSize = 4096, .StartAcquiring = false},
        Clock};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Logger logger;
    std::vector<std::uint8_t> buffer(data, data + size);
    TlmStatus status{};
    logger.Device.Open(status);
    for (;;) {
        link::Frame request;
        if (link::TakeFrame(buffer, request) != link::FrameDecode::Complete) {
            break;
        }
        if (request.Answer || request.Kind == link::MessageKind::Hello ||
            request.Kind == link::MessageKind::Close) {
            continue; // the server's own business, before any device call
        }
        logger.Clock.Step();
        link::PayloadWriter answer;
        if (link::AnswerRequest(logger.Device, status, request, answer)) {
            fuzz::Require(answer.Bytes().size() <= link::MaxPayload, "an answer fits a frame");
        }
    }
    logger.Device.Closed();
    return 0;
}
