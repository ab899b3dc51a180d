#pragma once
// The common frame of libtlm's link entry points: the argument checks come first, then the
// handle in the status, then the exchange under the link's lock. Nothing thrown inside crosses
// the C boundary.

#include <cstdint>
#include <exception>
#include <mutex>
#include <tuple>
#include <type_traits>

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
        std::lock_guard lock(link->Mutex);
        return body(*link);
    } catch (const std::exception&) {
        // Only allocation can throw here; the link itself is untouched.
        return TLM_ERR_PROTOCOL;
    }
}

// One exchange of an operation of any shape: the request's payload is the given values
// (integers or records), and readOutputs (none if empty) reads what follows the answer's prefix.
template <typename Operation, typename... Inputs>
std::int32_t Request(Link& link, TlmStatus& status, const link::Client::OutputReader& readOutputs,
                     const Inputs&... inputs) {
    link::PayloadWriter request;
    link::PutAll(request, inputs...);
    return link.Client.Exchange(Operation::kind, request, status, readOutputs);
}

// One exchange of a plain operation: values are its request, records receive its answer, both in
// the order of operations.h.
template <typename Operation, typename... Records>
std::int32_t RequestPlain(Link& link, TlmStatus& status, const typename Operation::Request& values,
                          Records&... records) {
    static_assert(std::is_same_v<std::tuple<Records...>, typename Operation::Answer>,
                  "the records of the operation's answer, in order");
    const auto readRecords = [&records...](link::PayloadReader& reader) {
        return link::GetAll(reader, records...);
    };
    return std::apply(
        [&](const auto&... value) {
            return Request<Operation>(link, status, readRecords, value...);
        },
        values);
}

} // namespace torvane::tlm
