#pragma once
// The password that opens service mode: compared exactly, case and blanks included.

#include <string_view>

namespace torvane::logger {

inline constexpr std::string_view ServicePassword = "zenfieldaudit";

inline bool OpensServiceMode(std::string_view typed) {
    return typed == ServicePassword;
}

} // namespace torvane::logger
