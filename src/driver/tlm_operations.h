#pragma once
// Every operation of the logger link, described once, beside tlm.h so that both ends of libtlm see
// it: the wire (link/operations.h: message kinds, the device's calls, the server's dispatch,
// libtlm's exchanges, the simulator's fault names) and core (logger::Driver, its libtlm binding,
// the scripted test driver). Adding an operation is one line here plus what the logger does for
// it.
//
//   PLAIN(Name, kind, entry point, (request values), (answer records))
//     The same shape on the wire and at the entry point: the request carries the values in
//     order, the answer the records in order, and the entry point is called as
//     Entry(status, value..., record...), integers by value and records by pointer. Core's
//     driver has the call Entry(status, value..., record&...) made from this line alone; it
//     takes at most one value and one record (logger/driver.h names them).
//   PLAIN_ON_WIRE(Name, kind, entry point, (request values), (answer records))
//     Plain on the wire, but the entry point says more or other: the transfer's start also
//     takes the file to write (a path the logger never sees), and its end passes one block in
//     and out through one pointer. Core's calls of these are written by hand.
//   SPECIAL(Name, kind, entry point, (device parameters))
//     A payload that a list of records cannot say (the download list's count that sizes the
//     answer, the transfer's block of bytes, the error log's fixed buffer); the wire, the entry
//     point and core's call are all written by hand. GetTheSpecialData_raw is not listed: it is
//     GetTheSpecialData's exchange handed back as bytes.
//
// The kind is the number on the wire (docs/logger-protocol.md); it never changes. Hello (1) and
// Close (2) belong to the link itself, not to the device, and are not listed (core's Open and
// Close are written by hand).

#include "tlm.h"

#include <cstdint>
#include <tuple>
#include <type_traits>

// clang-format off
#define TORVANE_TLM_OPERATIONS(PLAIN, PLAIN_ON_WIRE, SPECIAL)                                      \
    PLAIN(Reset, 3, TLM_Reset, (), ())                                                             \
    PLAIN(GetStatus, 4, GetStatus, (), ())                                                         \
    PLAIN(FileCount, 5, GetTheNumberofFiles, (), ())                                               \
    SPECIAL(DownloadList, 6, GetTheDownloadList, (std::span<TlmDownloadEntry> entries))            \
    PLAIN_ON_WIRE(TransferStart, 7, GetTheLogFile_start, (TlmDownloadEntry), (TlmTransferBlock))   \
    SPECIAL(TransferRead, 8, GetTheLogFile_reading,                                                \
            (TlmTransferBlock& block, std::vector<std::uint8_t>& bytes))                           \
    PLAIN_ON_WIRE(TransferEnd, 9, GetTheLogFile_end, (TlmTransferBlock), (TlmTransferBlock))       \
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
#define TORVANE_TLM_LIST(...) __VA_ARGS__

namespace torvane::tlm {

// A plain operation as a C++ call, the same on the device behind the link and in core's driver:
// (status, value..., record&...), integers by value and request records by const reference.
template <typename Value>
using RequestParameter = std::conditional_t<std::is_integral_v<Value>, Value, const Value&>;

template <typename Request, typename Answer> struct PlainCallOf;
template <typename... Values, typename... Records>
struct PlainCallOf<std::tuple<Values...>, std::tuple<Records...>> {
    using Type = std::int32_t(TlmStatus&, RequestParameter<Values>..., Records&...);
};
template <typename Request, typename Answer>
using PlainCall = typename PlainCallOf<Request, Answer>::Type;

} // namespace torvane::tlm
