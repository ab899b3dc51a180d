#pragma once
// Every operation of the link, described once. The message kinds, the device's calls, the
// server's dispatch, libtlm's exchanges and the simulator's fault names all come from this list,
// so adding an operation is one line here plus what the logger does for it.
//
//   PLAIN(Name, kind, entry point, (request values), (answer records))
//     The request carries the values in order; the answer, after the common prefix, the records
//     in order. The device is called as Name(status, value..., record&...), integers by value
//     and records by const reference.
//   SPECIAL(Name, kind, entry point, (device parameters))
//     A payload that a list of records cannot say (a count that sizes the answer, a block of
//     bytes, a fixed buffer); request_handler.cpp and the entry point code it by hand.
//
// The kind is the number on the wire (docs/logger-protocol.md); it never changes. Hello (1) and
// Close (2) belong to the link itself, not to the device, and are not listed.

#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tlm.h"

// clang-format off
#define TORVANE_LINK_OPERATIONS(PLAIN, SPECIAL)                                                    \
    PLAIN(Reset, 3, TLM_Reset, (), ())                                                             \
    PLAIN(GetStatus, 4, GetStatus, (), ())                                                         \
    PLAIN(FileCount, 5, GetTheNumberofFiles, (), ())                                               \
    SPECIAL(DownloadList, 6, GetTheDownloadList, (std::span<TlmDownloadEntry> entries))            \
    PLAIN(TransferStart, 7, GetTheLogFile_start, (TlmDownloadEntry), (TlmTransferBlock))           \
    SPECIAL(TransferRead, 8, GetTheLogFile_reading,                                                \
            (TlmTransferBlock& block, std::vector<std::uint8_t>& bytes))                           \
    PLAIN(TransferEnd, 9, GetTheLogFile_end, (TlmTransferBlock), (TlmTransferBlock))               \
    PLAIN(ClearFiles, 10, InitializeLogFile, (), ())                                               \
    PLAIN(DetonationMap, 11, GetTheDetonationMap, (), (TlmDetonationMap))                          \
    PLAIN(InitializeSensor, 12, TSInitialize, (std::int16_t), ())                                  \
    PLAIN(InitData, 13, GetTheInitData, (std::int32_t), (TlmInitData))                             \
    PLAIN(SendSetting, 14, SendTheSettingData, (TlmSettingData), ())                               \
    PLAIN(ReadSetting, 15, GetTheSettingData, (), (TlmSettingData))                                \
    PLAIN(SignalCondition, 16, GetTheSignalCondition, (), (TlmSignalCondition))                    \
    PLAIN(SpecialData, 17, GetTheSpecialData, (), (TlmSpecialData))                                \
    SPECIAL(ErrorInfo, 18, GetTheErrorInfo, (std::span<std::uint8_t> buffer))                      \
    PLAIN(LoggingControl, 19, LoggingControl, (std::int32_t), ())                                  \
    PLAIN(ServiceMode, 20, ServiceModeCtrl, (std::int16_t), ())
// clang-format on

// Takes the parentheses off one of the lists above.
#define TORVANE_LINK_LIST(...) __VA_ARGS__

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
template <typename Value>
using RequestParameter = std::conditional_t<std::is_integral_v<Value>, Value, const Value&>;

template <typename Request, typename Answer> struct DeviceCallOf;
template <typename... Values, typename... Records>
struct DeviceCallOf<std::tuple<Values...>, std::tuple<Records...>> {
    using Type = std::int32_t(TlmStatus&, RequestParameter<Values>..., Records&...);
};
template <typename Operation>
using DeviceCall =
    typename DeviceCallOf<typename Operation::Request, typename Operation::Answer>::Type;

} // namespace torvane::link
