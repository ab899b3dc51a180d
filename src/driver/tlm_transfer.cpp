// The transfer of a logging file: GetTheLogFile_start opens the caller's file and asks the
// logger for the file, each GetTheLogFile_reading appends the block that arrives, and
// GetTheLogFile_end closes both. The file is left as written; the caller keeps or deletes it.

#include "link_call.h"

namespace op = torvane::link::op;
using torvane::link::PayloadReader;
using torvane::tlm::CallLink;
using torvane::tlm::Link;
using torvane::tlm::Request;
using torvane::tlm::RequestPlain;
using torvane::tlm::TransferState;

extern "C" TLM_API int32_t GetTheLogFile_start(TlmStatus* status, TlmDownloadEntry* entry,
                                               const char* path, TlmTransferBlock* block) {
    const bool valid = entry != nullptr && path != nullptr && block != nullptr;
    return CallLink(status, valid, [&](Link& link) {
        if (link.Transfer == TransferState::Running || link.Transfer == TransferState::Complete) {
            return TLM_ERR_SEQUENCE;
        }
        if (link.Client.IsBroken()) {
            return TLM_ERR_LINK_LOST;
        }
        link.Transfer = TransferState::NotBegun;
        if (!link.File.Create(path)) {
            return TLM_TRANSFER_FILE_FAILED;
        }
        TlmTransferBlock started{};
        const std::int32_t result =
            RequestPlain<op::TransferStart>(link, *status, {*entry}, started);
        if (link.Client.LastExchangeAnswered()) {
            *block = started;
        }
        if (result != TLM_OK) {
            link.File.Finish();
            return result;
        }
        link.Transfer = TransferState::Running;
        return TLM_OK;
    });
}

extern "C" TLM_API int32_t GetTheLogFile_reading(TlmStatus* status, TlmTransferBlock* block) {
    return CallLink(status, block != nullptr, [&](Link& link) {
        if (link.Transfer != TransferState::Running) {
            return TLM_ERR_SEQUENCE;
        }
        TlmTransferBlock received{};
        std::uint32_t length = 0;
        const auto readBlock = [&](PayloadReader& reader) {
            torvane::link::GetRecord(reader, received);
            if (!reader.Get(length)) {
                return false;
            }
            const auto bytes = reader.GetBytes(length);
            if (!reader.Finished()) {
                return false;
            }
            link.File.Write(bytes);
            return true;
        };
        const std::int32_t result = Request<op::TransferRead>(link, *status, readBlock, *block);
        if (!link.Client.LastExchangeAnswered()) {
            return result;
        }
        *block = received;
        // What arrived is what the file got, whatever the device's record said.
        block->lngSize = static_cast<int32_t>(length);
        if (result > 0) {
            link.Transfer = TransferState::Complete;
        }
        return result;
    });
}

extern "C" TLM_API int32_t GetTheLogFile_end(TlmStatus* status, TlmTransferBlock* block) {
    return CallLink(status, block != nullptr, [&](Link& link) {
        const TransferState state = link.Transfer;
        link.Transfer = TransferState::None;
        if (state == TransferState::None) {
            return TLM_ERR_SEQUENCE;
        }
        if (state == TransferState::NotBegun) {
            // The start failed and said so; the device has no transfer to end.
            return TLM_TRANSFER_ENDED_EARLY;
        }
        TlmTransferBlock ended{};
        const std::int32_t result = RequestPlain<op::TransferEnd>(link, *status, {*block}, ended);
        const bool answered = link.Client.LastExchangeAnswered();
        if (answered) {
            *block = ended;
        }
        if (!link.File.Finish()) {
            return TLM_TRANSFER_FILE_FAILED;
        }
        // A link failure gives the device's failure here: a time-out code would read as -3,
        // which callers take for success.
        if (!answered || (result != TLM_OK && result != TLM_TRANSFER_ENDED_EARLY)) {
            return TLM_TRANSFER_END_FAILED;
        }
        return state == TransferState::Complete ? result : TLM_TRANSFER_ENDED_EARLY;
    });
}
