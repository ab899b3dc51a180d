#include "shell/common.h"

#include "byte_order.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace torvane::shell {

std::uint32_t ColorValue(int index) {
    constexpr std::array<std::uint32_t, 15> table{0x0000FF, 0x0000FF, 0x00A0FF, 0x00FFFF, 0x00FF00,
                                                  0xFFFF00, 0xFF0000, 0xFF00FF, 0x000080, 0x0080FF,
                                                  0x008080, 0x008000, 0x808000, 0x800000, 0x0F0F0F};
    if (index < 1 || index > 14) {
        return table[0];
    }
    return table[static_cast<std::size_t>(index)];
}

std::int64_t LeastCommonMultiple(std::int64_t a, std::int64_t b) {
    if (a == 0 || b == 0) {
        return 0;
    }
    const std::int64_t divisor = std::gcd(a, b);
    return b / divisor * a;
}

void DigitKey(int& key) {
    if (key != 8 && (key < '0' || key > '9')) {
        key = 0;
    }
}

std::int32_t BytesToHex(std::span<const std::uint8_t> bytes) {
    return static_cast<std::int32_t>(GetBigEndian<std::uint32_t>(bytes));
}

void LongToBytes(std::int32_t value, std::span<std::uint8_t> bytes) {
    PutBigEndian(bytes, static_cast<std::uint32_t>(value));
}

std::string BytesToString(std::span<const std::uint8_t> bytes) {
    const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
    return std::string(bytes.begin(), end);
}

} // namespace torvane::shell
