#include "logger/logger_device.h"

#include "logger/setting_file.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"
#include "vehicle/time_step.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

namespace torvane::sim {
namespace {

using logdata::SettingWord;

// A run is budgeted in 300 ms periods of 60 steps.
constexpr std::int64_t StepsPerPeriod = 300 / StepMs;
constexpr double PeriodMs = 300.0;

// Catching up is bounded per call so that no answer waits long enough for the client to time out
// (a few hundred ms at most). An idle logger skips the rest: only its live reading is wanted,
// and the vehicle simply rides on from where it was. A recording logger keeps the rest owed and
// falls behind the clock instead, so that its run loses no time.
constexpr std::int64_t MaxIdleStepsPerCall = 12'000;
constexpr std::int64_t MaxRecordingStepsPerCall = 120'000;

constexpr std::uint8_t FlagRecording = 0x01;
constexpr std::uint8_t FlagMemoryFull = 0x04;

constexpr std::string_view SerialNumber = "TVL-0001";
constexpr std::string_view ProgramName = "TORVANE LOGGER";
constexpr std::string_view ProgramNumber = "2";

template <std::size_t N> void PutText(std::uint8_t (&field)[N], std::string_view text) {
    std::memset(field, 0, N);
    std::memcpy(field, text.data(), std::min(N - 1, text.size()));
}

std::int16_t PresentMaps(const logdata::LogHeader& setting) {
    return static_cast<std::int16_t>((setting.Word(SettingWord::Deto1Time) != 0 ? 1 : 0) |
                                     (setting.Word(SettingWord::Deto2Time) != 0 ? 2 : 0));
}

} // namespace

LoggerDevice::LoggerDevice(const LoggerConfig& config, MonotonicClock& clock)
    : config_(config)
    , clock_(clock)
    , lastTick_(clock.Now())
    , vehicle_(config.Seed, ShiftEngineSpeed(logdata::FreshSetting()))
    , setting_(logdata::FreshSetting())
    , memory_(config.MemoryBytes) {
    config_.TimeScale =
        std::isfinite(config_.TimeScale) && config_.TimeScale > 0.0 ? config_.TimeScale : 1.0;
    PowerOn();
}

void LoggerDevice::PowerOn() {
    acquiring_ = config_.StartAcquiring;
    throttlePoints_ = {static_cast<std::int16_t>(setting_.ThClose()),
                       static_cast<std::int16_t>(setting_.ThOpen())};
    EnterBusy(TLM_STATE_INITIALIZING, InitialisingTime);
}

void LoggerDevice::SetBroken(bool broken) {
    if (broken) {
        Halt();
    }
    broken_ = broken;
}

void LoggerDevice::SetErrorCode(std::uint8_t code) {
    if (code != 0) {
        Halt();
    }
    errorCode_ = code;
}

void LoggerDevice::Halt() {
    CatchUp();
    FinishCapture();
    acquiring_ = false;
    transfer_.reset();
}

int LoggerDevice::AddRecordedRuns(int count, double minutes, std::uint64_t seed) {
    const logdata::LogHeader setting = DemoSetting();
    const std::int64_t perPeriod = BytesPer300Ms(config_.MemoryTable, setting);
    int kept = 0;
    for (int i = 0; i < count; ++i) {
        auto periods = static_cast<std::int64_t>(std::floor(minutes * 60'000.0 / PeriodMs));
        if (perPeriod > 0) {
            periods = std::min(periods, memory_.Free() / perPeriod);
        }
        if (periods <= 0) {
            break;
        }
        auto bytes = GenerateRunFile(setting, static_cast<double>(periods) * PeriodMs,
                                     seed + static_cast<std::uint64_t>(i));
        if (bytes.empty() || !memory_.Reserve(periods * perPeriod)) {
            break;
        }
        memory_.Keep(static_cast<std::int32_t>(periods * 300 / 1000), periods * perPeriod,
                     std::move(bytes));
        ++kept;
    }
    return kept;
}

std::uint8_t LoggerDevice::State() {
    if (busy_ && clock_.Now() >= busy_->Until) {
        busy_.reset();
    }
    if (busy_) {
        return busy_->State;
    }
    if (broken_) {
        return TLM_STATE_BROKEN;
    }
    if (transfer_) {
        return TLM_STATE_SENDING;
    }
    if (errorCode_ != 0) {
        return TLM_STATE_READY;
    }
    return acquiring_ ? TLM_STATE_ACQUIRING : TLM_STATE_IDLE;
}

void LoggerDevice::EnterBusy(std::uint8_t state, MonotonicClock::Duration length) {
    busy_ = Busy{state, clock_.Now() + length};
}

void LoggerDevice::EndStopping() {
    if (busy_ && busy_->State == TLM_STATE_READY) {
        busy_.reset();
    }
}

void LoggerDevice::CatchUp() {
    const auto now = clock_.Now();
    owedMs_ +=
        std::chrono::duration<double, std::milli>(now - lastTick_).count() * config_.TimeScale;
    lastTick_ = now;
    const bool mayRecord = State() == TLM_STATE_ACQUIRING;
    if (!mayRecord && capture_) {
        FinishCapture();
    }
    auto steps = static_cast<std::int64_t>(owedMs_ / static_cast<double>(StepMs));
    const std::int64_t limit = mayRecord ? MaxRecordingStepsPerCall : MaxIdleStepsPerCall;
    if (steps > limit) {
        steps = limit;
        if (!mayRecord) {
            owedMs_ = static_cast<double>(steps * StepMs);
        }
    }
    owedMs_ -= static_cast<double>(steps * StepMs);
    for (std::int64_t i = 0; i < steps; ++i) {
        const VehicleState state = AsMeasured(vehicle_.Step(), setting_);
        signals_.Observe(state);
        if (mayRecord) {
            if (!capture_) {
                TryStartCapture(state);
            }
            if (capture_) {
                RecordStep(state);
            }
        }
    }
}

void LoggerDevice::TryStartCapture(const VehicleState& state) {
    const bool started = ThrottleOf(state) >= setting_.Word(SettingWord::StartTh) &&
                         state.EngineRpm >= setting_.Word(SettingWord::StartNe) * 50.0;
    const std::int64_t perPeriod = BytesPer300Ms(config_.MemoryTable, setting_);
    if (!started || memory_.Free() < perPeriod) {
        return;
    }
    capture_ = std::make_unique<RunCapture>(setting_, FittedSensors(setting_));
    captureBytesPerPeriod_ = perPeriod;
    captureReserved_ = 0;
}

void LoggerDevice::RecordStep(const VehicleState& state) {
    if (capture_->Steps() % StepsPerPeriod == 0) {
        if (!memory_.Reserve(captureBytesPerPeriod_)) {
            FinishCapture(); // the memory is full
            return;
        }
        captureReserved_ += captureBytesPerPeriod_;
    }
    capture_->Record(state);
    detonation_.Observe(state, ThrottleOf(state));
}

int LoggerDevice::ThrottleOf(const VehicleState& state) const {
    const SensorReadings sensors(FittedSensors(setting_));
    return ThrottlePercent(sensors.ThrottleReading(state.ThrottlePercent), setting_);
}

void LoggerDevice::FinishCapture() {
    if (!capture_) {
        return;
    }
    const std::int32_t seconds = capture_->Seconds();
    auto bytes = capture_->Finish();
    capture_.reset();
    if (bytes.empty()) {
        memory_.Release(captureReserved_);
    } else {
        memory_.Keep(seconds, captureReserved_, std::move(bytes));
    }
    captureReserved_ = 0;
}

void LoggerDevice::StopAcquiring() {
    FinishCapture();
    if (acquiring_) {
        acquiring_ = false;
        EnterBusy(TLM_STATE_READY, StoppingTime);
    }
}

bool LoggerDevice::Accept(TlmStatus& status, Command command) {
    std::uint8_t sense = 0;
    if (!StateAccepts(State(), command)) {
        sense = SenseNotInThisState;
    } else if (errorCode_ != 0 && MakesLoggerAct(command)) {
        sense = SenseStoppedOnError;
    }
    if (sense != 0) {
        Answer(status, sense);
        return false;
    }
    return true;
}

std::int32_t LoggerDevice::Answer(TlmStatus& status, std::uint8_t sense) {
    const std::int64_t perPeriod = BytesPer300Ms(config_.MemoryTable, setting_);
    status.bytSense = sense;
    status.bytState = State();
    status.bytError = errorCode_;
    status.bytStatus3 =
        static_cast<std::uint8_t>(std::min<std::size_t>(memory_.Files().size(), 255));
    status.bytFlags = static_cast<std::uint8_t>(
        (capture_ ? FlagRecording : 0) | (memory_.AnyNotDownloaded() ? TLM_FLAG_DOWNLOAD : 0) |
        (perPeriod > 0 && memory_.Free() < perPeriod ? FlagMemoryFull : 0));
    status.bytStatus5 = static_cast<std::uint8_t>(
        memory_.Capacity() > 0 ? memory_.Used() * 100 / memory_.Capacity() : 0);
    status.bytStatus6 = 0;
    return TLM_OK;
}

std::int32_t LoggerDevice::Open(TlmStatus& status) {
    CatchUp();
    return Answer(status);
}

void LoggerDevice::Closed() {
    // A transfer in progress ends with its link; the file stays as it was, not downloaded.
    transfer_.reset();
}

std::int32_t LoggerDevice::Reset(TlmStatus& status) {
    CatchUp();
    FinishCapture();
    transfer_.reset();
    PowerOn();
    return Answer(status);
}

std::int32_t LoggerDevice::GetStatus(TlmStatus& status) {
    CatchUp();
    return Answer(status);
}

std::int32_t LoggerDevice::FileCount(TlmStatus& status) {
    CatchUp();
    if (!Accept(status, Command::FileCount)) {
        return 0;
    }
    Answer(status);
    return static_cast<std::int32_t>(memory_.Files().size());
}

std::int32_t LoggerDevice::DownloadList(TlmStatus& status, std::span<TlmDownloadEntry> entries) {
    CatchUp();
    if (!Accept(status, Command::DownloadList)) {
        return TLM_OK;
    }
    const auto& files = memory_.Files();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i] = i < files.size() ? files[i].Entry() : TlmDownloadEntry{};
    }
    return Answer(status);
}

std::int32_t LoggerDevice::TransferStart(TlmStatus& status, const TlmDownloadEntry& entry,
                                         TlmTransferBlock& block) {
    CatchUp();
    if (!Accept(status, Command::TransferStart)) {
        return TLM_OK;
    }
    // A number the logger does not hold is taken, and answered "not found" on the first read.
    Transfer transfer;
    transfer.Number = entry.intNumber;
    transfer.Entry = TlmDownloadEntry{entry.intNumber, 0, 0, 0};
    if (const LoggedFile* file = memory_.Find(entry.intNumber)) {
        transfer.Entry = file->Entry();
        transfer.Sender = std::make_unique<PacedTransfer>(file->Bytes, config_.BlockSize,
                                                          config_.BytesPerSecond, clock_);
    }
    block = transfer.Entry;
    transfer_ = std::move(transfer);
    EndStopping();
    return Answer(status);
}

std::int32_t LoggerDevice::TransferRead(TlmStatus& status, TlmTransferBlock& block,
                                        std::vector<std::uint8_t>& bytes) {
    CatchUp();
    if (!Accept(status, Command::TransferRead)) {
        return TLM_OK;
    }
    block = transfer_->Entry;
    block.lngSize = 0;
    PacedTransfer* sender = transfer_->Sender.get();
    if (sender == nullptr) {
        return Answer(status, TLM_SENSE_FILE_NOT_FOUND);
    }
    if (!sender->Complete()) {
        block.lngSize = static_cast<std::int32_t>(sender->SendNext(bytes));
        if (sender->Complete()) {
            if (LoggedFile* file = memory_.Find(transfer_->Number)) {
                file->Done = true;
            }
        }
    }
    Answer(status);
    return sender->Complete() ? 1 : 0;
}

std::int32_t LoggerDevice::TransferEnd(TlmStatus& status, const TlmTransferBlock& /*asked*/,
                                       TlmTransferBlock& block) {
    CatchUp();
    if (!Accept(status, Command::TransferEnd)) {
        return TLM_OK;
    }
    block = transfer_->Entry;
    block.lngSize = static_cast<std::int32_t>(transfer_->Sender ? transfer_->Sender->Sent() : 0);
    transfer_.reset();
    return Answer(status);
}

std::int32_t LoggerDevice::ClearFiles(TlmStatus& status) {
    CatchUp();
    if (!Accept(status, Command::ClearFiles)) {
        return TLM_OK;
    }
    memory_.Clear();
    detonation_.Clear();
    EnterBusy(TLM_STATE_WRITING_FLASH, FlashWriteTime);
    return Answer(status);
}

std::int32_t LoggerDevice::DetonationMap(TlmStatus& status, TlmDetonationMap& map) {
    CatchUp();
    if (!Accept(status, Command::DetonationMap)) {
        return TLM_OK;
    }
    map = detonation_.Map(PresentMaps(setting_));
    return Answer(status);
}

std::int32_t LoggerDevice::InitializeSensor(TlmStatus& status, std::int16_t kind) {
    CatchUp();
    if (!Accept(status, Command::InitializeSensor)) {
        return TLM_OK;
    }
    // The mechanic holds the throttle shut or wide open, and the bike stands with both
    // suspensions fully extended, while a point is taken.
    const SensorReadings sensors(FittedSensors(setting_));
    switch (kind) {
    case TLM_INIT_THROTTLE_CLOSED:
        throttlePoints_.intThClose =
            sensors.ThrottleReading(config_.ReversedThrottle ? 100.0 : 0.0);
        break;
    case TLM_INIT_THROTTLE_OPEN:
        throttlePoints_.intThOpen = sensors.ThrottleReading(config_.ReversedThrottle ? 0.0 : 100.0);
        break;
    case TLM_INIT_FRONT_SUSPENSION:
        setting_.SetWord(SettingWord::FrZero, sensors.FrontStrokeReading(0.0));
        break;
    case TLM_INIT_REAR_SUSPENSION:
        setting_.SetWord(SettingWord::RrZero, sensors.RearStrokeReading(0.0));
        break;
    case TLM_INIT_COMMIT_THROTTLE:
        if (throttlePoints_.intThClose >= throttlePoints_.intThOpen) {
            return Answer(status, SenseBadArgument);
        }
        setting_.SetWord(SettingWord::ThClose, throttlePoints_.intThClose);
        setting_.SetWord(SettingWord::ThOpen, throttlePoints_.intThOpen);
        break;
    default:
        return Answer(status, SenseBadArgument);
    }
    const bool suspension = kind == TLM_INIT_FRONT_SUSPENSION || kind == TLM_INIT_REAR_SUSPENSION;
    EnterBusy(suspension ? TLM_STATE_SUSPENSION_INIT : TLM_STATE_THROTTLE_INIT, SensorInitTime);
    return Answer(status);
}

std::int32_t LoggerDevice::InitData(TlmStatus& status, std::int32_t index, TlmInitData& data) {
    CatchUp();
    if (!Accept(status, Command::InitData)) {
        return TLM_OK;
    }
    if (index != 0) {
        return Answer(status, SenseBadArgument);
    }
    data = throttlePoints_;
    return Answer(status);
}

std::int32_t LoggerDevice::SendSetting(TlmStatus& status, const TlmSettingData& setting) {
    CatchUp();
    if (!Accept(status, Command::SendSetting)) {
        return TLM_OK;
    }
    // The sensor points are the logger's own, taught by sensor initialisation: a setting sent
    // from a window that read them before the mechanic retook them must not undo his work.
    logdata::LogHeader received = logger::HeaderOf(setting);
    for (SettingWord word :
         {SettingWord::ThClose, SettingWord::ThOpen, SettingWord::FrZero, SettingWord::RrZero}) {
        received.SetWord(word, setting_.Word(word));
    }
    setting_ = received;
    return Answer(status);
}

std::int32_t LoggerDevice::ReadSetting(TlmStatus& status, TlmSettingData& setting) {
    CatchUp();
    if (!Accept(status, Command::ReadSetting)) {
        return TLM_OK;
    }
    setting = logger::RecordOf(setting_);
    return Answer(status);
}

std::int32_t LoggerDevice::SignalCondition(TlmStatus& status, TlmSignalCondition& signal) {
    CatchUp();
    if (!Accept(status, Command::SignalCondition)) {
        return TLM_OK;
    }
    signal = signals_.Take(FittedSensors(setting_));
    return Answer(status);
}

std::int32_t LoggerDevice::SpecialData(TlmStatus& status, TlmSpecialData& special) {
    CatchUp();
    special = TlmSpecialData{};
    std::memcpy(special.bytHead, SerialNumber.data(), SerialNumber.size());
    PutText(special.bytProgramName, ProgramName);
    PutText(special.bytProgramNo, ProgramNumber);
    return Answer(status);
}

std::int32_t LoggerDevice::ErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) {
    CatchUp();
    // The log: a count of entries, then per entry the error code and the state it stopped in.
    std::fill(buffer.begin(), buffer.end(), std::uint8_t{0});
    if (errorCode_ != 0 && buffer.size() >= 3) {
        buffer[0] = 1;
        buffer[1] = errorCode_;
        buffer[2] = State();
    }
    return Answer(status);
}

std::int32_t LoggerDevice::LoggingControl(TlmStatus& status, std::int32_t value) {
    CatchUp();
    if (!Accept(status, Command::LoggingControl)) {
        return TLM_OK;
    }
    if (value == 1) {
        StopAcquiring();
    } else if (value == 0) {
        if (errorCode_ != 0) {
            return Answer(status, SenseStoppedOnError);
        }
        acquiring_ = true;
        EndStopping();
    } else {
        return Answer(status, SenseBadArgument);
    }
    return Answer(status);
}

std::int32_t LoggerDevice::ServiceMode(TlmStatus& status, std::int16_t code) {
    CatchUp();
    if (!Accept(status, Command::ServiceMode)) {
        return TLM_OK;
    }
    switch (code) {
    case TLM_SERVICE_INITIAL_CONFIGURATION:
    case TLM_SERVICE_TEST1:
    case TLM_SERVICE_TEST2:
        EnterBusy(TLM_STATE_SERVICE, ServiceTime);
        break;
    case TLM_SERVICE_HEAT_RUN2:
    case TLM_SERVICE_HEAT_RUN3:
        // A heat run is the logger acquiring under the service function: the program reads
        // live signals and the detonation map while it runs and downloads what it recorded,
        // which it can only do if the logger answers as acquiring, not as busy.
        acquiring_ = true;
        EndStopping();
        break;
    default:
        return Answer(status, SenseBadArgument);
    }
    return Answer(status);
}

} // namespace torvane::sim
