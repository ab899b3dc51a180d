#pragma once
// A virtual logger on a hand-driven clock, and the few steps every logger test takes.

#include "logger/logger_device.h"
#include "logger/setting_file.h"
#include "manual_clock.h"

#include <gtest/gtest.h>

#include <vector>

namespace torvane::sim {

using namespace std::chrono_literals;

class DeviceOnManualClock {
public:
    explicit DeviceOnManualClock(LoggerConfig config = {})
        : device(config, clock) {}

    std::uint8_t StateAfter(MonotonicClock::Duration wait) {
        clock.Advance(wait);
        TlmStatus status{};
        device.GetStatus(status);
        return status.bytState;
    }

    // Past the power-on state; then a GetStatus every second for `seconds`, so the vehicle
    // keeps pace with the clock.
    void Run(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            StateAfter(1s);
        }
    }

    TlmStatus Stop() {
        TlmStatus status{};
        device.LoggingControl(status, 1);
        clock.Advance(StoppingTime);
        return status;
    }

    TlmStatus Send(const logdata::LogHeader& setting) {
        TlmStatus status{};
        device.SendSetting(status, logger::RecordOf(setting));
        return status;
    }

    // The whole file of number, block by block, and the status of its last read.
    std::vector<std::uint8_t> Download(std::int16_t number, TlmStatus& last) {
        TlmDownloadEntry entry{number, 0, 0, 0};
        TlmTransferBlock block{};
        device.TransferStart(last, entry, block);
        std::vector<std::uint8_t> bytes;
        for (int guard = 0; guard < 100000; ++guard) {
            const std::int32_t result = device.TransferRead(last, block, bytes);
            if (result != 0 || last.bytSense != 0) {
                break;
            }
        }
        TlmStatus endStatus{};
        device.TransferEnd(endStatus, block, block);
        return bytes;
    }

    ManualClock clock;
    LoggerDevice device;
};

} // namespace torvane::sim
