#include "logger/fault_injector.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace torvane::sim {
namespace {

struct NamedEntry {
    std::string_view name;
    Entry entry;
};

constexpr std::array<NamedEntry, 20> EntryTable{{
    {"TLM_Open", Entry::Open},
    {"TLM_Reset", Entry::Reset},
    {"GetStatus", Entry::GetStatus},
    {"GetTheNumberofFiles", Entry::FileCount},
    {"GetTheDownloadList", Entry::DownloadList},
    {"GetTheLogFile_start", Entry::StartTransfer},
    {"GetTheLogFile_reading", Entry::ReadTransfer},
    {"GetTheLogFile_end", Entry::EndTransfer},
    {"InitializeLogFile", Entry::ClearFiles},
    {"GetTheDetonationMap", Entry::DetonationMap},
    {"TSInitialize", Entry::InitializeSensor},
    {"GetTheInitData", Entry::InitData},
    {"SendTheSettingData", Entry::SendSetting},
    {"GetTheSettingData", Entry::ReadSetting},
    {"GetTheSignalCondition", Entry::SignalCondition},
    {"GetTheSpecialData", Entry::SpecialData},
    {"GetTheSpecialData_raw", Entry::SpecialData},
    {"GetTheErrorInfo", Entry::ErrorInfo},
    {"LoggingControl", Entry::LoggingControl},
    {"ServiceModeCtrl", Entry::ServiceMode},
}};

} // namespace

std::optional<Entry> EntryNamed(std::string_view name) {
    const auto found = std::find_if(EntryTable.begin(), EntryTable.end(),
                                    [name](const NamedEntry& named) { return named.name == name; });
    return found == EntryTable.end() ? std::nullopt : std::optional(found->entry);
}

std::string_view EntryNames() {
    static const std::string names = [] {
        std::string joined;
        for (const NamedEntry& named : EntryTable) {
            joined += joined.empty() ? "" : " ";
            joined += named.name;
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
        std::find_if(plan_.rules.begin(), plan_.rules.end(),
                     [entry](const FaultRule& r) { return r.entry == entry && r.times > 0; });
    if (rule == plan_.rules.end()) {
        return std::nullopt;
    }
    --rule->times;
    // The status bytes of a faulty answer are the device's present ones.
    device_.GetStatus(status);
    if (rule->kind == FaultRule::Kind::Sense) {
        status.bytSense = static_cast<std::uint8_t>(rule->code);
        return TLM_OK;
    }
    return rule->code;
}

template <typename Call>
std::int32_t FaultInjector::Pass(Entry entry, TlmStatus& status, Call call) {
    if (const auto fault = Fault(entry, status)) {
        return *fault;
    }
    return call();
}

std::int32_t FaultInjector::Open(TlmStatus& status) {
    return Pass(Entry::Open, status, [&] { return device_.Open(status); });
}

void FaultInjector::Closed() {
    dropDue_ = false;
    device_.Closed();
}

std::int32_t FaultInjector::Reset(TlmStatus& status) {
    return Pass(Entry::Reset, status, [&] { return device_.Reset(status); });
}

std::int32_t FaultInjector::GetStatus(TlmStatus& status) {
    return Pass(Entry::GetStatus, status, [&] { return device_.GetStatus(status); });
}

std::int32_t FaultInjector::FileCount(TlmStatus& status) {
    return Pass(Entry::FileCount, status, [&] { return device_.FileCount(status); });
}

std::int32_t FaultInjector::DownloadList(TlmStatus& status, std::span<TlmDownloadEntry> entries) {
    return Pass(Entry::DownloadList, status, [&] { return device_.DownloadList(status, entries); });
}

std::int32_t FaultInjector::StartTransfer(TlmStatus& status, const TlmDownloadEntry& entry,
                                          TlmTransferBlock& block) {
    return Pass(Entry::StartTransfer, status, [&] {
        const std::int32_t result = device_.StartTransfer(status, entry, block);
        blocksSent_ = 0;
        dropDue_ = !dropped_ && plan_.dropAfterBlocks == 0;
        return result;
    });
}

std::int32_t FaultInjector::ReadTransfer(TlmStatus& status, TlmTransferBlock& block,
                                         std::vector<std::uint8_t>& bytes) {
    return Pass(Entry::ReadTransfer, status, [&] {
        const std::int32_t result = device_.ReadTransfer(status, block, bytes);
        if (result >= 0 && block.lngSize > 0 && ++blocksSent_ == plan_.dropAfterBlocks) {
            dropDue_ = !dropped_;
        }
        return result;
    });
}

// The end of a transfer is the one call whose failure must not leave the device where it was: a
// logger that kept sending (state 3) after its end failed would hold every later wait for
// readiness for ever. So the device ends the transfer and only its answer is faulted.
std::int32_t FaultInjector::EndTransfer(TlmStatus& status, TlmTransferBlock& block) {
    const std::int32_t ended = device_.EndTransfer(status, block);
    if (const auto fault = Fault(Entry::EndTransfer, status)) {
        return *fault;
    }
    return ended;
}

std::int32_t FaultInjector::ClearFiles(TlmStatus& status) {
    return Pass(Entry::ClearFiles, status, [&] { return device_.ClearFiles(status); });
}

std::int32_t FaultInjector::DetonationMap(TlmStatus& status, TlmDetonationMap& map) {
    return Pass(Entry::DetonationMap, status, [&] { return device_.DetonationMap(status, map); });
}

std::int32_t FaultInjector::InitializeSensor(TlmStatus& status, std::int16_t kind) {
    return Pass(Entry::InitializeSensor, status,
                [&] { return device_.InitializeSensor(status, kind); });
}

std::int32_t FaultInjector::InitData(TlmStatus& status, std::int32_t index, TlmInitData& data) {
    return Pass(Entry::InitData, status, [&] { return device_.InitData(status, index, data); });
}

std::int32_t FaultInjector::SendSetting(TlmStatus& status, const TlmSettingData& setting) {
    return Pass(Entry::SendSetting, status, [&] { return device_.SendSetting(status, setting); });
}

std::int32_t FaultInjector::ReadSetting(TlmStatus& status, TlmSettingData& setting) {
    return Pass(Entry::ReadSetting, status, [&] { return device_.ReadSetting(status, setting); });
}

std::int32_t FaultInjector::SignalCondition(TlmStatus& status, TlmSignalCondition& signal) {
    return Pass(Entry::SignalCondition, status,
                [&] { return device_.SignalCondition(status, signal); });
}

std::int32_t FaultInjector::SpecialData(TlmStatus& status, TlmSpecialData& special) {
    return Pass(Entry::SpecialData, status, [&] { return device_.SpecialData(status, special); });
}

std::int32_t FaultInjector::ErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) {
    return Pass(Entry::ErrorInfo, status, [&] { return device_.ErrorInfo(status, buffer); });
}

std::int32_t FaultInjector::LoggingControl(TlmStatus& status, std::int32_t value) {
    return Pass(Entry::LoggingControl, status,
                [&] { return device_.LoggingControl(status, value); });
}

std::int32_t FaultInjector::ServiceMode(TlmStatus& status, std::int16_t code) {
    return Pass(Entry::ServiceMode, status, [&] { return device_.ServiceMode(status, code); });
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
