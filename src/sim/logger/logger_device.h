#pragma once
// The virtual logger: the device behind the link, driven by the wire-protocol server exactly as
// the hardware would be. A vehicle runs continuously at the time scale; while the logger
// acquires and the setting's start conditions hold it records a run, which becomes a file when
// acquisition stops or the memory is full. Time comes from an injected monotonic clock: the
// vehicle, the busy states and the link rate all follow it, so tests move time by hand.
//
// Nothing happens between two calls: each call first brings the vehicle and the busy states up
// to the clock's present, then acts. Command acceptance by state is in command_policy.h.

#include "link/device_calls.h"
#include "logdata/log_header.h"
#include "logger/command_policy.h"
#include "logger/detonation_counter.h"
#include "logger/logger_inputs.h"
#include "logger/logging_memory.h"
#include "logger/memory_table.h"
#include "logger/monotonic_clock.h"
#include "logger/paced_transfer.h"
#include "logger/run_capture.h"
#include "vehicle/vehicle_model.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace torvane::sim {

struct LoggerConfig {
    // Vehicle time per clock time: 10 records ten minutes of riding in one minute.
    double TimeScale = 1.0;
    std::uint64_t Seed = 1;
    sim::MemoryTable MemoryTable = DefaultMemoryTable();
    std::int64_t MemoryBytes = LoggingMemoryBytes;
    // Link payload rate of a transfer; 0 is unlimited.
    std::int64_t BytesPerSecond = 1'000'000;
    std::size_t BlockSize = 32 * 1024;
    // After power-on and reset: acquiring (as on the bike) or idle.
    bool StartAcquiring = true;
    // The throttle sensor is fitted the wrong way round: the points that sensor initialisation
    // takes come out in the wrong order.
    bool ReversedThrottle = false;
};

// How long the passing states last, in clock time whatever the time scale: they are what an
// operator (or a client polling every 700 ms) sees, not part of the ride.
inline constexpr MonotonicClock::Duration InitialisingTime = std::chrono::milliseconds(1000);
inline constexpr MonotonicClock::Duration FlashWriteTime = std::chrono::milliseconds(1000);
inline constexpr MonotonicClock::Duration SensorInitTime = std::chrono::milliseconds(300);
inline constexpr MonotonicClock::Duration StoppingTime = std::chrono::milliseconds(300);
inline constexpr MonotonicClock::Duration ServiceTime = std::chrono::milliseconds(2000);

class LoggerDevice final : public link::DeviceCalls {
public:
    // Powers on: initialising for a moment, then acquiring or idle. The setting is the fresh
    // record.
    LoggerDevice(const LoggerConfig& config, MonotonicClock& clock);

    // Faults of the hardware itself. Both survive a reset: a broken logger comes back broken.
    void SetBroken(bool broken);
    void SetErrorCode(std::uint8_t code);

    // Files recorded before the link was opened: count runs of the given length from seeds
    // seed, seed + 1, ... under the demonstration setting, as far as the memory holds them.
    // Returns how many were kept.
    int AddRecordedRuns(int count, double minutes, std::uint64_t seed);

    std::uint8_t State();
    const LoggingMemory& Memory() const { return memory_; }
    const logdata::LogHeader& Setting() const { return setting_; }
    bool Recording() const { return capture_ != nullptr; }

    std::int32_t Open(TlmStatus& status) override;
    void Closed() override;
    std::int32_t Reset(TlmStatus& status) override;
    std::int32_t GetStatus(TlmStatus& status) override;
    std::int32_t FileCount(TlmStatus& status) override;
    std::int32_t DownloadList(TlmStatus& status, std::span<TlmDownloadEntry> entries) override;
    std::int32_t TransferStart(TlmStatus& status, const TlmDownloadEntry& entry,
                               TlmTransferBlock& block) override;
    std::int32_t TransferRead(TlmStatus& status, TlmTransferBlock& block,
                              std::vector<std::uint8_t>& bytes) override;
    std::int32_t TransferEnd(TlmStatus& status, const TlmTransferBlock& asked,
                             TlmTransferBlock& block) override;
    std::int32_t ClearFiles(TlmStatus& status) override;
    std::int32_t DetonationMap(TlmStatus& status, TlmDetonationMap& map) override;
    std::int32_t InitializeSensor(TlmStatus& status, std::int16_t kind) override;
    std::int32_t InitData(TlmStatus& status, std::int32_t index, TlmInitData& data) override;
    std::int32_t SendSetting(TlmStatus& status, const TlmSettingData& setting) override;
    std::int32_t ReadSetting(TlmStatus& status, TlmSettingData& setting) override;
    std::int32_t SignalCondition(TlmStatus& status, TlmSignalCondition& signal) override;
    std::int32_t SpecialData(TlmStatus& status, TlmSpecialData& special) override;
    std::int32_t ErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) override;
    std::int32_t LoggingControl(TlmStatus& status, std::int32_t value) override;
    std::int32_t ServiceMode(TlmStatus& status, std::int16_t code) override;

private:
    struct Busy {
        std::uint8_t State = 0;
        MonotonicClock::Duration Until{};
    };
    struct Transfer {
        std::int16_t Number = 0;
        TlmDownloadEntry Entry{};
        std::unique_ptr<PacedTransfer> Sender; // null: no such file
    };

    // Brings busy states and the vehicle up to now. Every call starts here.
    void CatchUp();
    void OnStep(const VehicleState& state);
    void TryStartCapture(const VehicleState& state);
    void RecordStep(const VehicleState& state);
    void FinishCapture();
    void StopAcquiring();
    // Stops everything at once, as a fault does: no passing state.
    void Halt();
    // The throttle opening as the logger works it out from its own calibration.
    int ThrottleOf(const VehicleState& state) const;
    void EnterBusy(std::uint8_t state, MonotonicClock::Duration length);
    // The moment after acquisition stopped (state 7) ends early when a command that it takes
    // starts something else: a transfer, or acquisition again.
    void EndStopping();
    void PowerOn();

    // Takes the call if the present state (and an error stop) allows it; otherwise fills the
    // status with the refusal's sense code and returns false.
    bool Accept(TlmStatus& status, Command command);
    std::int32_t Answer(TlmStatus& status, std::uint8_t sense = 0);

    LoggerConfig config_;
    MonotonicClock& clock_;
    MonotonicClock::Duration lastTick_{};
    double owedMs_ = 0.0;

    VehicleModel vehicle_;
    SignalAccumulator signals_;
    DetonationCounter detonation_;
    std::unique_ptr<RunCapture> capture_;
    std::int64_t captureBytesPerPeriod_ = 0;
    std::int64_t captureReserved_ = 0;

    logdata::LogHeader setting_;
    TlmInitData throttlePoints_{};
    LoggingMemory memory_;
    std::optional<Transfer> transfer_;

    bool acquiring_ = false;
    std::optional<Busy> busy_;
    bool broken_ = false;
    std::uint8_t errorCode_ = 0;
};

} // namespace torvane::sim
