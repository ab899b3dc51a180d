#include "logger/service_mode.h"

#include "layout/file_image.h"
#include "logger/driver_calls.h"
#include "logger/hex_dump.h"
#include "logger/link_messages.h"
#include "logger/wait_ready.h"
#include "shell/number_format.h"

#include <algorithm>
#include <vector>

namespace torvane::logger {
namespace {

using shell::buttons::Ok;

// A dump saved over a longer file keeps that file's tail; larger files than this are not
// taken apart.
constexpr std::size_t LargestFileUnderDump = 16u << 20;

} // namespace

bool ServiceMode::RunFunction(ServiceFunction function) {
    // OpenLogger's own message is the only one at opening.
    if (OpenLogger(link_, false) != 0) {
        return false;
    }
    std::int32_t result = GetLoggerStatus(link_);
    // The function runs once: the logger ends it by itself and the wait sees it idle again.
    if (result == 0 && link_.Status.bytError == 0) {
        result = ControlServiceMode(link_, static_cast<std::int16_t>(function));
        if (result == 0) {
            result = WaitLoggerReady(link_);
        }
    }
    const bool test = function != ServiceFunction::InitialConfiguration;
    if (result != 0 && !(test && result == results::OutOfOrder)) {
        ReportDriverError(link_, result, true);
    } else if (link_.Status.bytError != 0) {
        ShowErrorState();
    } else if (result == 0) {
        shell::ShowMessage(link_.Sink, "The setup was completed normally.", Ok,
                           shell::icons::Information);
    }
    const bool completed = result == 0 && link_.Status.bytError == 0;
    link_.Driver.Close(link_.Status);
    return completed;
}

void ServiceMode::ShowErrorState() {
    const TlmStatus& status = link_.Status;
    const std::array<std::uint8_t, 7> bytes = {
        status.bytSense, status.bytState,   status.bytError,  status.bytStatus3,
        status.bytFlags, status.bytStatus5, status.bytStatus6};
    dump_ = HexDump(bytes);
    shell::ShowMessage(link_.Sink,
                       "Error state. Error code = " +
                           shell::FormatNumber(status.bytError, shell::formats::TwoDigits),
                       Ok, shell::icons::Stop);
}

bool ServiceMode::ReadSpecialData() {
    std::int32_t result = OpenLogger(link_, false);
    if (result != 0) {
        return false;
    }
    result = GetLoggerStatus(link_);
    if (result == 0) {
        result = ReadSpecialDataRaw(link_, special_);
    }
    if (result == 0) {
        dump_ = HexDump(special_);
    } else {
        ReportDriverError(link_, result, true);
    }
    link_.Driver.Close(link_.Status);
    return result == 0;
}

bool ServiceMode::ReadErrorCode() {
    std::int32_t result = OpenLogger(link_, false);
    if (result != 0) {
        return false;
    }
    result = GetLoggerStatus(link_);
    if (result == 0) {
        result = ReadErrorInfo(link_, error_);
    }
    if (result == 0) {
        dump_ = HexDump(error_);
    } else {
        ReportDriverError(link_, result, true);
    }
    link_.Driver.Close(link_.Status);
    return result == 0;
}

shell::SteppedActivity* ServiceMode::StartHeatRun(HeatRunKind kind) {
    if (heatRun_) {
        return nullptr;
    }
    heatIndex_ = static_cast<int>(kind);
    heatRun_ =
        std::make_unique<HeatRun>(link_, kind, tempDir_, [this](std::span<const std::uint8_t> log) {
            std::copy(log.begin(), log.end(), error_.begin());
            dump_ = HexDump(error_);
        });
    return heatRun_.get();
}

void ServiceMode::RequestHeatRunEnd() {
    if (heatRun_) {
        heatRun_->RequestEnd();
    }
}

void ServiceMode::HeatRunEnded() {
    heatRun_.reset();
}

bool ServiceMode::Enabled(ServiceControl control, int index) const {
    if (control == ServiceControl::HeatEnd) {
        return heatRun_ != nullptr && index == heatIndex_;
    }
    return heatRun_ == nullptr;
}

std::span<const std::uint8_t> ServiceMode::Bytes(ServiceDump dump) const {
    if (dump == ServiceDump::SpecialData) {
        return special_;
    }
    return error_;
}

bool SaveDump(std::span<const std::uint8_t> bytes, const std::filesystem::path& file,
              shell::MessageSink& sink) {
    std::vector<std::uint8_t> image(bytes.begin(), bytes.end());
    layout::FileFailure failure;
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(file, error))) {
        auto old = layout::ReadFileImage(file, LargestFileUnderDump, failure);
        if (!old) {
            shell::ShowRunTimeError(sink, layout::DescribeFailure(failure));
            return false;
        }
        if (old->size() > image.size()) {
            image.insert(image.end(), old->begin() + static_cast<std::ptrdiff_t>(image.size()),
                         old->end());
        }
    }
    std::filesystem::path temporary = file;
    temporary += ".~tmp";
    if (!layout::ReplaceFileImage(file, temporary, image, failure)) {
        shell::ShowRunTimeError(sink, layout::DescribeFailure(failure));
        return false;
    }
    return true;
}

} // namespace torvane::logger
