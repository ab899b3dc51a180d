#include "logger/link_messages.h"

#include "shell/number_format.h"

#include <optional>
#include <string_view>

namespace torvane::logger {
namespace {

using shell::buttons::Ok;
using shell::icons::Stop;

// The state texts; nullopt shows nothing. An empty text is meant: it reports the pending
// run-time error.
std::optional<std::string_view> StateText(std::uint8_t state) {
    switch (state) {
    case TLM_STATE_INITIALIZING:
        return "Now logger is initializing.";
    case TLM_STATE_ACQUIRING:
        return "Now acquiring data.";
    case TLM_STATE_SENDING:
        return "Now logging data is transmitting.";
    case TLM_STATE_WRITING_FLASH:
        return "Now writing the flash memory.";
    case TLM_STATE_THROTTLE_INIT:
        return "Now throttle initializing.";
    case TLM_STATE_SUSPENSION_INIT:
        return "Now suspention initializing.";
    case TLM_STATE_SERVICE:
        return "Now service mode is running.";
    case 224:
    case 225:
        return "";
    case TLM_STATE_BROKEN:
        return "Logger is out of order.";
    default:
        return std::nullopt;
    }
}

} // namespace

std::string SenseErrorText(std::uint8_t sense) {
    return "Sence code error. Error code = " +
           shell::FormatNumber(sense, shell::formats::ThreeDigits);
}

void ShowSenseError(shell::MessageSink& sink, std::uint8_t sense) {
    shell::ShowMessage(sink, SenseErrorText(sense), Ok, Stop);
}

void ReportDriverError(LoggerLink& link, std::int32_t result, bool keepOpen) {
    switch (result) {
    case TLM_ERR_NOT_CONNECTED:
    case TLM_ERR_OPEN_FAILED:
    case TLM_ERR_TIMEOUT:
    case TLM_ERR_PROTOCOL:
    case TLM_ERR_ARGUMENT:
    case TLM_ERR_BUSY:
    case TLM_ERR_LINK_LOST:
    case TLM_ERR_NOT_OPEN:
    case TLM_ERR_SEQUENCE:
        // -1 is told as 1001, -16 as 1016.
        shell::ShowMessage(link.Sink,
                           "USB device error. Error code = " +
                               shell::FormatNumber(1000 - result, shell::formats::PaddedCode),
                           Ok, Stop);
        break;
    case TLM_ERR_SENSE:
        ShowSenseError(link.Sink, link.Status.bytSense);
        break;
    default:
        break;
    }
    if (!keepOpen) {
        link.Driver.Close(link.Status);
    }
}

void ShowLoggerState(LoggerLink& link) {
    if (const auto text = StateText(link.Status.bytState)) {
        shell::ShowMessage(link.Sink, *text, Ok, Stop);
    }
}

void FinishLink(LoggerLink& link, std::int32_t result) {
    if (result < 0) {
        ReportDriverError(link, result, false);
    } else {
        link.Driver.Close(link.Status);
    }
}

} // namespace torvane::logger
