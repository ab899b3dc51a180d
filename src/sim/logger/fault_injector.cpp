#include "logger/fault_injector.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <utility>

namespace torvane::sim {
namespace {

// Faults name entry points; the link's table knows the entry point of each operation. The two
// that are not in it: the open, which is the hello, and the raw identity read, which sends the
// identity request.
constexpr std::string_view OpenName = "TLM_Open";
constexpr std::string_view RawSpecialDataName = "GetTheSpecialData_raw";

} // namespace

std::optional<Entry> EntryNamed(std::string_view name) {
    if (name == OpenName) {
        return Entry::Hello;
    }
    if (name == RawSpecialDataName) {
        return Entry::SpecialData;
    }
    for (const link::OperationName& operation : link::Operations) {
        if (operation.EntryPoint == name) {
            return operation.Kind;
        }
    }
    return std::nullopt;
}

std::string_view EntryNames() {
    static const std::string names = [] {
        std::string joined(OpenName);
        for (const link::OperationName& operation : link::Operations) {
            joined += " ";
            joined += operation.EntryPoint;
            if (operation.Kind == Entry::SpecialData) {
                joined += " ";
                joined += RawSpecialDataName;
            }
        }
        return joined;
    }();
    return names;
}

FaultInjector::FaultInjector(link::DeviceCalls& device, FaultPlan plan)
    : device_(device)
    , plan_(std::move(plan)) {
}

std::optional<std::int32_t> FaultInjector::Fault(Entry entry, TlmStatus& status) {
    const auto rule =
        std::find_if(plan_.Rules.begin(), plan_.Rules.end(),
                     [entry](const FaultRule& r) { return r.Entry == entry && r.Times > 0; });
    if (rule == plan_.Rules.end()) {
        return std::nullopt;
    }
    --rule->Times;
    switch (rule->Kind) {
    case FaultRule::Fault::Drop:
        // Answered first: the cable is pulled once the answer is out.
        dropDue_ = true;
        return std::nullopt;
    case FaultRule::Fault::Delay:
        // A slow or stalled logger: the server serves one client on one thread, so nothing
        // else is answered meanwhile, as on a real link.
        std::this_thread::sleep_for(std::chrono::milliseconds(rule->Code));
        return std::nullopt;
    case FaultRule::Fault::Sense:
    case FaultRule::Fault::Result:
        break;
    }
    // The status bytes of a faulty answer are the device's present ones.
    device_.GetStatus(status);
    if (rule->Kind == FaultRule::Fault::Sense) {
        status.bytSense = static_cast<std::uint8_t>(rule->Code);
        return TLM_OK;
    }
    return rule->Code;
}

template <typename Call>
std::int32_t FaultInjector::Pass(Entry entry, TlmStatus& status, Call call) {
    if (const auto fault = Fault(entry, status)) {
        return *fault;
    }
    return call();
}

template <typename Method, typename... Arguments>
std::int32_t FaultInjector::Forward(Entry entry, Method call, TlmStatus& status,
                                    Arguments&&... arguments) {
    return Pass(entry, status,
                [&] { return (device_.*call)(status, std::forward<Arguments>(arguments)...); });
}

std::int32_t FaultInjector::Open(TlmStatus& status) {
    return Pass(Entry::Hello, status, [&] { return device_.Open(status); });
}

void FaultInjector::Closed() {
    dropDue_ = false;
    device_.Closed();
}

std::int32_t FaultInjector::Reset(TlmStatus& status) {
    return Forward(Entry::Reset, &DeviceCalls::Reset, status);
}

std::int32_t FaultInjector::GetStatus(TlmStatus& status) {
    return Forward(Entry::GetStatus, &DeviceCalls::GetStatus, status);
}

std::int32_t FaultInjector::FileCount(TlmStatus& status) {
    return Forward(Entry::FileCount, &DeviceCalls::FileCount, status);
}

std::int32_t FaultInjector::DownloadList(TlmStatus& status, std::span<TlmDownloadEntry> entries) {
    return Forward(Entry::DownloadList, &DeviceCalls::DownloadList, status, entries);
}

std::int32_t FaultInjector::TransferStart(TlmStatus& status, const TlmDownloadEntry& entry,
                                          TlmTransferBlock& block) {
    return Pass(Entry::TransferStart, status, [&] {
        const std::int32_t result = device_.TransferStart(status, entry, block);
        blocksSent_ = 0;
        dropDue_ = !dropped_ && plan_.DropAfterBlocks == 0;
        return result;
    });
}

std::int32_t FaultInjector::TransferRead(TlmStatus& status, TlmTransferBlock& block,
                                         std::vector<std::uint8_t>& bytes) {
    return Pass(Entry::TransferRead, status, [&] {
        const std::int32_t result = device_.TransferRead(status, block, bytes);
        if (result >= 0 && block.lngSize > 0 && ++blocksSent_ == plan_.DropAfterBlocks) {
            dropDue_ = !dropped_;
        }
        return result;
    });
}

// The end of a transfer is the one call whose failure must not leave the device where it was: a
// logger that kept sending (state 3) after its end failed would hold every later wait for
// readiness for ever. So the device ends the transfer and only its answer is faulted.
std::int32_t FaultInjector::TransferEnd(TlmStatus& status, const TlmTransferBlock& asked,
                                        TlmTransferBlock& block) {
    const std::int32_t ended = device_.TransferEnd(status, asked, block);
    if (const auto fault = Fault(Entry::TransferEnd, status)) {
        return *fault;
    }
    return ended;
}

std::int32_t FaultInjector::ClearFiles(TlmStatus& status) {
    return Forward(Entry::ClearFiles, &DeviceCalls::ClearFiles, status);
}

std::int32_t FaultInjector::DetonationMap(TlmStatus& status, TlmDetonationMap& map) {
    return Forward(Entry::DetonationMap, &DeviceCalls::DetonationMap, status, map);
}

std::int32_t FaultInjector::InitializeSensor(TlmStatus& status, std::int16_t kind) {
    return Forward(Entry::InitializeSensor, &DeviceCalls::InitializeSensor, status, kind);
}

std::int32_t FaultInjector::InitData(TlmStatus& status, std::int32_t index, TlmInitData& data) {
    return Forward(Entry::InitData, &DeviceCalls::InitData, status, index, data);
}

std::int32_t FaultInjector::SendSetting(TlmStatus& status, const TlmSettingData& setting) {
    return Forward(Entry::SendSetting, &DeviceCalls::SendSetting, status, setting);
}

std::int32_t FaultInjector::ReadSetting(TlmStatus& status, TlmSettingData& setting) {
    return Forward(Entry::ReadSetting, &DeviceCalls::ReadSetting, status, setting);
}

std::int32_t FaultInjector::SignalCondition(TlmStatus& status, TlmSignalCondition& signal) {
    return Forward(Entry::SignalCondition, &DeviceCalls::SignalCondition, status, signal);
}

std::int32_t FaultInjector::SpecialData(TlmStatus& status, TlmSpecialData& special) {
    return Forward(Entry::SpecialData, &DeviceCalls::SpecialData, status, special);
}

std::int32_t FaultInjector::ErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) {
    return Forward(Entry::ErrorInfo, &DeviceCalls::ErrorInfo, status, buffer);
}

std::int32_t FaultInjector::LoggingControl(TlmStatus& status, std::int32_t value) {
    return Forward(Entry::LoggingControl, &DeviceCalls::LoggingControl, status, value);
}

std::int32_t FaultInjector::ServiceMode(TlmStatus& status, std::int16_t code) {
    return Forward(Entry::ServiceMode, &DeviceCalls::ServiceMode, status, code);
}

bool FaultInjector::DropLinkNow() {
    if (dropDue_) {
        dropDue_ = false;
        dropped_ = true;
        return true;
    }
    return device_.DropLinkNow();
}

} // namespace torvane::sim
