#pragma once
// LAYOUT.DAT images built by hand, byte by byte, to hold the store's own encoding against.

#include "layout/default_layout.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace torvane::testing {

class ByteImage {
public:
    ByteImage& U8(std::uint8_t value) {
        bytes.push_back(value);
        return *this;
    }
    ByteImage& I16(std::int16_t value) { return Little(static_cast<std::uint16_t>(value), 2); }
    ByteImage& I32(std::int32_t value) { return Little(static_cast<std::uint32_t>(value), 4); }
    ByteImage& Name(const std::string& name) {
        for (std::size_t i = 0; i < 20; ++i) {
            U8(i < name.size() ? static_cast<std::uint8_t>(name[i]) : 0);
        }
        return *this;
    }
    ByteImage& Append(const std::vector<std::uint8_t>& more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }
    std::vector<std::uint8_t> bytes;

private:
    ByteImage& Little(std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i) {
            U8(static_cast<std::uint8_t>(value >> (8 * i)));
        }
        return *this;
    }
};

struct StoredItem {
    std::uint8_t View, Color, Line, Point, Grid, Zoom;
    std::int16_t Top, Bottom;
    std::int32_t Max, Min;
};

inline std::vector<std::uint8_t> HeadBytes(std::int32_t shown, std::int32_t top,
                                           std::int32_t left) {
    return ByteImage().I32(shown).I32(top).I32(left).bytes;
}

inline std::vector<std::uint8_t> RecordBytes(const std::array<StoredItem, 16>& items,
                                             std::int16_t pixelsPerStep, std::int32_t msPerGrid,
                                             std::int32_t msPerStep, const std::string& name) {
    ByteImage image;
    for (const StoredItem& item : items) {
        image.U8(item.View).U8(item.Color).U8(item.Line).U8(item.Point).U8(item.Grid);
        image.U8(item.Zoom).I16(item.Top).I16(item.Bottom).I32(item.Max).I32(item.Min);
    }
    return image.I16(pixelsPerStep).I32(msPerGrid).I32(msPerStep).Name(name).bytes;
}

// The factory items as the program has them, to build images around.
inline std::array<StoredItem, 16> FactoryItems() {
    const graph::DisplaySet factory = layout::DefaultLayout();
    std::array<StoredItem, 16> items{};
    for (std::size_t i = 0; i < items.size(); ++i) {
        const graph::ItemDisplay& item = factory.Items[i];
        items[i] = {item.View, item.Color, item.Line,   item.Point, item.Grid,
                    item.Zoom, item.Top,   item.Bottom, item.Max,   item.Min};
    }
    return items;
}

inline std::vector<std::uint8_t> FactoryFileBytes() {
    return ByteImage()
        .Append(HeadBytes(0, 3000, 400))
        .Append(RecordBytes(FactoryItems(), 1, 10000, 100, "INITIALIZE"))
        .bytes;
}

} // namespace torvane::testing
