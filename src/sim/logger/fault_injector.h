#pragma once
// Faults of the link, laid over any device: a sense code or a result code on the next N calls
// of an entry point, a link that drops right after answering them or that answers them late,
// and a link that drops after N blocks of a transfer. A call faulted with a code does not reach
// the device: it is refused (sense) or fails (result) before the device acts, and its status
// bytes are the device's present ones. A dropped or a late call is answered by the device.

#include "link/device_calls.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace torvane::sim {

// A fault's target: the operation of the link (operations.h), or Hello for TLM_Open.
using Entry = link::MessageKind;

// The entry point names of tlm.h that faults may name, as the command line gives them:
// "TLM_Open", "GetStatus", "GetTheLogFile_reading", ...; GetTheSpecialData_raw sends the same
// request as GetTheSpecialData and names it too. nullopt for any other name (TLM_Close is not
// faulted: it must always free the logger).
std::optional<Entry> EntryNamed(std::string_view name);
// Every name EntryNamed takes, for messages.
std::string_view EntryNames();

struct FaultRule {
    enum class Fault { Sense, Result, Drop, Delay };
    Fault Kind = Fault::Sense;
    std::int32_t Code = 0; // the sense byte, the result returned, or the delay in ms
    sim::Entry Entry = sim::Entry::GetStatus;
    int Times = 1;
};

struct FaultPlan {
    std::vector<FaultRule> Rules; // the first rule of an entry with calls left applies
    // Drop the link once, right after this many blocks of a transfer went out.
    std::optional<int> DropAfterBlocks;
};

class FaultInjector final : public link::DeviceCalls {
public:
    FaultInjector(link::DeviceCalls& device, FaultPlan plan);

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
    bool DropLinkNow() override;

private:
    // The fault due on this call of entry, if any; it is used up.
    std::optional<std::int32_t> Fault(Entry entry, TlmStatus& status);
    // Calls the device unless a fault is due; then answers the fault instead.
    template <typename Call> std::int32_t Pass(Entry entry, TlmStatus& status, Call call);
    // The same for a call that the injector only passes on: device_.*call(status, arguments...).
    template <typename Method, typename... Arguments>
    std::int32_t Forward(Entry entry, Method call, TlmStatus& status, Arguments&&... arguments);

    link::DeviceCalls& device_;
    FaultPlan plan_;
    int blocksSent_ = 0;
    bool dropDue_ = false;
    bool dropped_ = false;
};

} // namespace torvane::sim
