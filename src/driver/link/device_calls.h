#pragma once
// What a logger does for each request of the link. The server of the wire protocol decodes a
// request, calls the matching function here and sends back its result and records; libtlm's
// entry points sit at the other end of the socket. The virtual logger implements this; tests
// implement it with scripted fakes.
//
// Calls come on one thread, for one client at a time. Every call fills the status bytes that the
// logger owns (bytSense to bytStatus6; bytDriver belongs to the client's library and is never
// seen here) and returns a TLM_ code of tlm.h, or for FileCount the number of files.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "tlm.h"

namespace torvane::link {

class DeviceCalls {
public:
    virtual ~DeviceCalls() = default;

    // A client opened a link (TLM_Open). Not called for a client that is turned away because
    // another holds the link.
    virtual std::int32_t Open(TlmStatus& status) = 0;
    // The link ended: TLM_Close, or the client vanished or the link broke. The device must be
    // usable by the next client: a transfer in progress is abandoned.
    virtual void Closed() = 0;

    virtual std::int32_t Reset(TlmStatus& status) = 0;
    virtual std::int32_t GetStatus(TlmStatus& status) = 0;
    virtual std::int32_t FileCount(TlmStatus& status) = 0;
    // entries.size() is the count the client asked for.
    virtual std::int32_t DownloadList(TlmStatus& status, std::span<TlmDownloadEntry> entries) = 0;

    // A transfer: the device sends the logging file (*.rlg bytes) of entry.intNumber in blocks.
    // ReadTransfer appends the next block to bytes and sets block.lngSize to its length; it
    // returns 0 while more is to come and a positive value with the last block.
    virtual std::int32_t StartTransfer(TlmStatus& status, const TlmDownloadEntry& entry,
                                       TlmTransferBlock& block) = 0;
    virtual std::int32_t ReadTransfer(TlmStatus& status, TlmTransferBlock& block,
                                      std::vector<std::uint8_t>& bytes) = 0;
    virtual std::int32_t EndTransfer(TlmStatus& status, TlmTransferBlock& block) = 0;

    virtual std::int32_t ClearFiles(TlmStatus& status) = 0;
    virtual std::int32_t DetonationMap(TlmStatus& status, TlmDetonationMap& map) = 0;
    virtual std::int32_t InitializeSensor(TlmStatus& status, std::int16_t kind) = 0;
    virtual std::int32_t InitData(TlmStatus& status, std::int32_t index, TlmInitData& data) = 0;
    virtual std::int32_t SendSetting(TlmStatus& status, const TlmSettingData& setting) = 0;
    virtual std::int32_t ReadSetting(TlmStatus& status, TlmSettingData& setting) = 0;
    virtual std::int32_t SignalCondition(TlmStatus& status, TlmSignalCondition& signal) = 0;
    virtual std::int32_t SpecialData(TlmStatus& status, TlmSpecialData& special) = 0;
    // buffer.size() is TLM_ERROR_INFO_SIZE.
    virtual std::int32_t ErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) = 0;
    virtual std::int32_t LoggingControl(TlmStatus& status, std::int32_t value) = 0;
    virtual std::int32_t ServiceMode(TlmStatus& status, std::int16_t code) = 0;

    // Asked by the server after every answer it has sent: true makes it drop the link at once,
    // as a pulled cable would (a fault the virtual logger can inject).
    virtual bool DropLinkNow() { return false; }
};

} // namespace torvane::link
