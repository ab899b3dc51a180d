#pragma once
// The wire side of the operations of tlm_operations.h. The message kinds, the device's calls, the
// server's dispatch, libtlm's exchanges and the simulator's fault names all come from that list.
// On the wire an operation is plain or special:
//
//   PLAIN(Name, kind, entry point, (request values), (answer records))
//     The request carries the values in order; the answer, after the common prefix, the records
//     in order. The device is called as Name(status, value..., record&...), integers by value
//     and records by const reference.
//   SPECIAL(Name, kind, entry point, (device parameters))
//     request_handler.cpp and the entry point code it by hand.

#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tlm.h"
#include "tlm_operations.h"

// The transfer's start and end are plain on the wire; only their entry points differ.
#define TORVANE_LINK_OPERATIONS(PLAIN, SPECIAL) TORVANE_TLM_OPERATIONS(PLAIN, PLAIN, SPECIAL)
#define TORVANE_LINK_LIST TORVANE_TLM_LIST

namespace torvane::link {

enum class MessageKind : std::uint16_t {
    Hello = 1,
    Close = 2,
#define TORVANE_LINK_KIND(Name, kind, ...) Name = kind,
    TORVANE_LINK_OPERATIONS(TORVANE_LINK_KIND, TORVANE_LINK_KIND)
#undef TORVANE_LINK_KIND
};

// One type per operation: op::ReadSetting::kind, ::entryPoint, and for a plain one its
// ::Request values and ::Answer records as tuples.
namespace op {
#define TORVANE_LINK_PLAIN(Name, kind_, Entry, Inputs, Outputs)                                    \
    struct Name {                                                                                  \
        static constexpr MessageKind kind = MessageKind::Name;                                     \
        static constexpr std::string_view entryPoint = #Entry;                                     \
        using Request = std::tuple<TORVANE_LINK_LIST Inputs>;                                      \
        using Answer = std::tuple<TORVANE_LINK_LIST Outputs>;                                      \
    };
#define TORVANE_LINK_SPECIAL(Name, kind_, Entry, Parameters)                                       \
    struct Name {                                                                                  \
        static constexpr MessageKind kind = MessageKind::Name;                                     \
        static constexpr std::string_view entryPoint = #Entry;                                     \
    };
TORVANE_LINK_OPERATIONS(TORVANE_LINK_PLAIN, TORVANE_LINK_SPECIAL)
#undef TORVANE_LINK_PLAIN
#undef TORVANE_LINK_SPECIAL
} // namespace op

struct OperationName {
    MessageKind Kind;
    std::string_view EntryPoint;
};

// The operations in the order of their kinds, with the entry point that sends each.
inline constexpr OperationName Operations[] = {
#define TORVANE_LINK_NAME(Name, ...) {op::Name::kind, op::Name::entryPoint},
    TORVANE_LINK_OPERATIONS(TORVANE_LINK_NAME, TORVANE_LINK_NAME)
#undef TORVANE_LINK_NAME
};

inline constexpr std::uint16_t LastMessageKind =
    static_cast<std::uint16_t>(std::size(Operations) + 2);

// A frame's kind is checked against a range, so the kinds must have no gaps.
consteval bool KindsFollowOn() {
    std::uint16_t expected = static_cast<std::uint16_t>(MessageKind::Close) + 1;
    for (const OperationName& operation : Operations) {
        if (static_cast<std::uint16_t>(operation.Kind) != expected++) {
            return false;
        }
    }
    return true;
}
static_assert(KindsFollowOn(), "message kinds run from 3 without a gap, in the table's order");

// The device's call of a plain operation: Name(status, value..., record&...).
template <typename Operation>
using DeviceCall = tlm::PlainCall<typename Operation::Request, typename Operation::Answer>;

} // namespace torvane::link
