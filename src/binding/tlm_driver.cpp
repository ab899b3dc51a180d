#include "binding/tlm_driver.h"

#include <limits>
#include <type_traits>

namespace torvane::binding {
namespace {

// The C calls take their lengths as narrow integers; a span longer than that is refused as the
// library refuses a bad length, rather than cut short.
template <typename Length> bool FitsIn(std::size_t size) {
    return size <= static_cast<std::size_t>(std::numeric_limits<Length>::max());
}

// Integers go to the C call by value, records by pointer.
template <typename Argument> auto Passed(Argument& argument) {
    if constexpr (std::is_integral_v<Argument>) {
        return argument;
    } else {
        return &argument;
    }
}

template <typename Entry, typename... Arguments>
std::int32_t Forward(Entry entry, TlmStatus& status, Arguments&... arguments) {
    return entry(&status, Passed(arguments)...);
}

} // namespace

#define TORVANE_TLM_DRIVER_FORWARD(Name, kind, Entry, Values, Records)                             \
    std::int32_t TlmDriver::Entry(TORVANE_DRIVER_PARAMETERS(Values, Records)) {                    \
        return Forward(::Entry, TORVANE_DRIVER_ARGUMENTS(Values, Records));                        \
    }
TORVANE_TLM_OPERATIONS(TORVANE_TLM_DRIVER_FORWARD, TORVANE_DRIVER_NOTHING, TORVANE_DRIVER_NOTHING)
#undef TORVANE_TLM_DRIVER_FORWARD

std::int32_t TlmDriver::Open(TlmStatus& status) {
    return TLM_Open(&status);
}

std::int32_t TlmDriver::Close(TlmStatus& status) {
    return TLM_Close(&status);
}

std::int32_t TlmDriver::GetTheDownloadList(TlmStatus& status, std::span<TlmDownloadEntry> entries) {
    if (!FitsIn<std::int16_t>(entries.size())) {
        return TLM_ERR_ARGUMENT;
    }
    return ::GetTheDownloadList(&status, static_cast<std::int16_t>(entries.size()), entries.data());
}

std::int32_t TlmDriver::GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                            const std::filesystem::path& file,
                                            TlmTransferBlock& block) {
    return ::GetTheLogFile_start(&status, &entry, file.c_str(), &block);
}

std::int32_t TlmDriver::GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) {
    return ::GetTheLogFile_reading(&status, &block);
}

std::int32_t TlmDriver::GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) {
    return ::GetTheLogFile_end(&status, &block);
}

std::int32_t TlmDriver::GetTheSpecialData_raw(TlmStatus& status, std::span<std::uint8_t> buffer) {
    if (!FitsIn<std::int32_t>(buffer.size())) {
        return TLM_ERR_ARGUMENT;
    }
    return ::GetTheSpecialData_raw(&status, buffer.data(),
                                   static_cast<std::int32_t>(buffer.size()));
}

std::int32_t TlmDriver::GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) {
    if (!FitsIn<std::int32_t>(buffer.size())) {
        return TLM_ERR_ARGUMENT;
    }
    return ::GetTheErrorInfo(&status, buffer.data(), static_cast<std::int32_t>(buffer.size()));
}

} // namespace torvane::binding
