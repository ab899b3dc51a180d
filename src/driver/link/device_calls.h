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

#include "operations.h"
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

    // One call per operation of operations.h, named after it: a plain one is
    // Name(status, request values..., answer records&...), e.g.
    //   std::int32_t ReadSetting(TlmStatus& status, TlmSettingData& setting);
    //   std::int32_t InitData(TlmStatus& status, std::int32_t index, TlmInitData& data);
    // and a special one takes the parameters the table gives it:
    //   DownloadList: entries.size() is the count the client asked for.
    //   TransferRead: appends the next block of the logging file (*.rlg bytes) to bytes and sets
    //     block.lngSize to its length; returns 0 while more is to come and a positive value with
    //     the last block.
    //   ErrorInfo: buffer.size() is TLM_ERROR_INFO_SIZE.
    // A transfer sends the logging file of the entry given to TransferStart, in blocks.
#define TORVANE_DEVICE_PLAIN(Name, ...) virtual DeviceCall<op::Name> Name = 0;
#define TORVANE_DEVICE_SPECIAL(Name, kind, Entry, Parameters)                                      \
    virtual std::int32_t Name(TlmStatus& status, TORVANE_LINK_LIST Parameters) = 0;
    TORVANE_LINK_OPERATIONS(TORVANE_DEVICE_PLAIN, TORVANE_DEVICE_SPECIAL)
#undef TORVANE_DEVICE_PLAIN
#undef TORVANE_DEVICE_SPECIAL

    // Asked by the server after every answer it has sent: true makes it drop the link at once,
    // as a pulled cable would (a fault the virtual logger can inject).
    virtual bool DropLinkNow() {
        return false;
    }
};

} // namespace torvane::link
