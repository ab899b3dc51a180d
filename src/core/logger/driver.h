#pragma once
// The logger driver as core sees it: one call per link entry point of libtlm, with the driver's
// own records and codes (tlm.h). Core never links libtlm; the program hands it a driver that
// does (src/binding), and tests hand it a scripted one.
//
// Every call fills `status` and returns the driver's code: TLM_OK, a negative TLM_ERR_..., or,
// for GetTheNumberofFiles, the number of files. The logging-file decompressor is not here: it
// needs no link and has its own interface (logdata::LogFileDecompressor).

#include "tlm.h"
#include "tlm_operations.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <tuple>

// A plain operation's call, made from its line in tlm_operations.h and named by its entry point:
// Entry(status, value..., record&...), integers by value and request records by const reference.
#define TORVANE_DRIVER_CALL(Values, Records)                                                       \
    ::torvane::tlm::PlainCall<std::tuple<TORVANE_TLM_LIST Values>,                                 \
                              std::tuple<TORVANE_TLM_LIST Records>>
// What a driver declares to carry every plain operation. A declaration through a function type
// cannot say `override`; it overrides all the same, and a driver that missed one stays abstract.
#define TORVANE_DRIVER_OVERRIDE(Name, kind, Entry, Values, Records)                                \
    TORVANE_DRIVER_CALL(Values, Records) Entry;
#define TORVANE_DRIVER_NOTHING(...)
#define TORVANE_DRIVER_PLAIN_OVERRIDES                                                             \
    TORVANE_TLM_OPERATIONS(TORVANE_DRIVER_OVERRIDE, TORVANE_DRIVER_NOTHING, TORVANE_DRIVER_NOTHING)

// A definition of a plain call spells its parameters out: `status`, then `value` for its request
// value and `record` for its answer record where it has them. Core's calls take at most one of
// each; a longer list fails to compile here (see tlm_operations.h).
#define TORVANE_DRIVER_PARAMETERS(Values, Records)                                                 \
    TlmStatus& status TORVANE_DRIVER_VALUE Values TORVANE_DRIVER_RECORD Records
#define TORVANE_DRIVER_VALUE(...) __VA_OPT__(, ::torvane::tlm::RequestParameter<__VA_ARGS__> value)
#define TORVANE_DRIVER_RECORD(...)                                                                 \
    __VA_OPT__(, ::torvane::logger::AnswerRecord<__VA_ARGS__>& record)
// The same parameters as the arguments of a call.
#define TORVANE_DRIVER_ARGUMENTS(Values, Records)                                                  \
    status TORVANE_DRIVER_VALUE_ARGUMENT Values TORVANE_DRIVER_RECORD_ARGUMENT Records
#define TORVANE_DRIVER_VALUE_ARGUMENT(...) __VA_OPT__(, value)
#define TORVANE_DRIVER_RECORD_ARGUMENT(...) __VA_OPT__(, record)

namespace torvane::logger {

// One record, so that a list of two answer records fails where it is named.
template <typename Record> using AnswerRecord = Record;

class Driver {
public:
    virtual ~Driver() = default;

    virtual std::int32_t Open(TlmStatus& status) = 0;
    virtual std::int32_t Close(TlmStatus& status) = 0;

    // Every plain operation of tlm_operations.h, named by its entry point (TLM_Reset's call is
    // TLM_Reset, unlike Open and Close).
#define TORVANE_DRIVER_PURE(Name, kind, Entry, Values, Records)                                    \
    virtual TORVANE_DRIVER_CALL(Values, Records) Entry = 0;
    TORVANE_TLM_OPERATIONS(TORVANE_DRIVER_PURE, TORVANE_DRIVER_NOTHING, TORVANE_DRIVER_NOTHING)
#undef TORVANE_DRIVER_PURE

    // The rest take what the table cannot say.
    // Fills every element of entries; their number is the count asked for.
    virtual std::int32_t GetTheDownloadList(TlmStatus& status,
                                            std::span<TlmDownloadEntry> entries) = 0;
    virtual std::int32_t GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                             const std::filesystem::path& file,
                                             TlmTransferBlock& block) = 0;
    virtual std::int32_t GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) = 0;
    virtual std::int32_t GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) = 0;
    // The buffer's size is the length given to the driver.
    virtual std::int32_t GetTheSpecialData_raw(TlmStatus& status,
                                               std::span<std::uint8_t> buffer) = 0;
    virtual std::int32_t GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) = 0;
};

} // namespace torvane::logger
