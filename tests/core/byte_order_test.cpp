// The one byte-order helper under every file format and the link: fields at any offset, of any
// width and sign, written and read back without disturbing their neighbours.

#include "byte_order.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace torvane {
namespace {

TEST(ByteOrder, LittleEndianFieldsSitAtTheirOffsetLowestByteFirstWhateverTheirSign) {
    std::array<std::uint8_t, 16> bytes{};
    bytes.fill(0xEE);
    PutLittleEndian(bytes, 1, std::int16_t{-2});
    PutLittleEndian(bytes, 3, std::uint32_t{0x12345678});
    PutLittleEndian(bytes, 7, std::uint64_t{0x0102030405060708});
    EXPECT_EQ(bytes,
              (std::array<std::uint8_t, 16>{0xEE, 0xFE, 0xFF, 0x78, 0x56, 0x34, 0x12, 0x08, 0x07,
                                            0x06, 0x05, 0x04, 0x03, 0x02, 0x01, 0xEE}));

    EXPECT_EQ(GetLittleEndian<std::int16_t>(bytes, 1), -2);
    EXPECT_EQ(GetLittleEndian<std::uint16_t>(bytes, 1), 0xFFFE);
    EXPECT_EQ(GetLittleEndian<std::int32_t>(bytes, 3), 0x12345678);
    EXPECT_EQ(GetLittleEndian<std::uint64_t>(bytes, 7), 0x0102030405060708u);
    // The offset defaults to 0; a read may span fields that were written apart.
    EXPECT_EQ(GetLittleEndian<std::uint8_t>(bytes), 0xEE);
    EXPECT_EQ(GetLittleEndian<std::int32_t>(bytes, 12), static_cast<std::int32_t>(0xEE010203));
}

TEST(ByteOrder, BigEndianFieldsTakeTheirWidthFromTheBytes) {
    EXPECT_EQ(GetBigEndian<std::uint32_t>(std::array<std::uint8_t, 3>{0x01, 0x02, 0x03}),
              0x010203u);
    // Wider than the result: only the last bytes survive.
    EXPECT_EQ(GetBigEndian<std::uint16_t>(std::array<std::uint8_t, 3>{0x01, 0x02, 0x03}), 0x0203u);
    EXPECT_EQ(GetBigEndian<std::uint32_t>(std::span<const std::uint8_t>{}), 0u);

    std::array<std::uint8_t, 6> bytes{};
    bytes.fill(0xEE);
    PutBigEndian(bytes, std::uint32_t{0x0A0B0C0D});
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{0x00, 0x00, 0x0A, 0x0B, 0x0C, 0x0D}));
    PutBigEndian(std::span(bytes).first(2), std::uint32_t{0x0A0B0C0D});
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{0x0C, 0x0D, 0x0A, 0x0B, 0x0C, 0x0D}));
}

} // namespace
} // namespace torvane
