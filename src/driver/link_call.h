#pragma once
// The common frame of libtlm's link entry points: the argument checks come first, then the
// handle in the status, then the exchange under the link's lock. Nothing thrown inside crosses
// the C boundary.

#include <cstdint>
#include <exception>
#include <mutex>

#include "link/messages.h"
#include "link_table.h"
#include "tlm.h"

namespace torvane::tlm {

// body(Link&) runs with the link locked and gives the result.
template <typename Body>
std::int32_t CallLink(TlmStatus* status, bool argumentsValid, Body&& body) noexcept {
    if (status == nullptr || !argumentsValid) {
        return TLM_ERR_ARGUMENT;
    }
    try {
        const std::shared_ptr<Link> link = FindLink(*status);
        if (link == nullptr) {
            return TLM_ERR_NOT_OPEN;
        }
        std::lock_guard lock(link->mutex);
        return body(*link);
    } catch (const std::exception&) {
        // Only allocation can throw here; the link itself is untouched.
        return TLM_ERR_PROTOCOL;
    }
}

// One request whose inputs are the given values (integers or records), with the outputs read by
// readOutputs (none if empty).
template <typename... Inputs>
std::int32_t Request(Link& link, TlmStatus& status, link::MessageKind kind,
                     const link::Client::OutputReader& readOutputs, const Inputs&... inputs) {
    link::PayloadWriter request;
    link::PutAll(request, inputs...);
    return link.client.Exchange(kind, request, status, readOutputs);
}

// An output reader that fills one record of the caller's.
template <typename Record> link::Client::OutputReader Into(Record& record) {
    return [&record](link::PayloadReader& reader) {
        return link::GetAll(reader, record);
    };
}

} // namespace torvane::tlm
