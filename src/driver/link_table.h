#pragma once
// The open links of libtlm. A caller's TlmStatus carries only a handle in bytDriver: a magic, the
// slot and the serial number of the link in a table inside the library. A serial is never used
// twice, so a status from a closed link, a copy of one, or bytes that were never a handle find
// nothing, rather than someone else's link.

#include <cstdint>
#include <memory>
#include <mutex>

#include "download_file.h"
#include "link/client.h"
#include "tlm.h"

namespace torvane::tlm {

// Where a transfer is, as GetTheLogFile_start/_reading/_end see it.
enum class TransferState {
    None,     // no transfer on this link yet, or the last one was ended
    NotBegun, // _start failed; _end has nothing to end
    Running,  // the device is sending blocks
    Complete, // the last block arrived
};

struct Link {
    std::mutex Mutex; // one call at a time per link; held for the whole exchange
    link::Client Client;
    TransferState Transfer = TransferState::None;
    DownloadFile File;
};

// Stores the link and writes its handle into status.bytDriver. False when the table is full.
bool RegisterLink(std::shared_ptr<Link> link, TlmStatus& status);
// The link that status names, or null.
std::shared_ptr<Link> FindLink(const TlmStatus& status);
// Takes the link out of the table and clears status.bytDriver; null if status names none.
std::shared_ptr<Link> RemoveLink(TlmStatus& status);

} // namespace torvane::tlm
