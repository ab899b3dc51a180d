#include "items/line_palette.h"

namespace torvane::items {

std::optional<int> PaletteIndexAt(int x, int y) {
    if (x < 0 || y < 0 || x >= PaletteWidth || y >= PaletteHeight) {
        return std::nullopt;
    }
    return x / PaletteCellWidth + 1 + PaletteColumns * (y / PaletteCellHeight);
}

PaletteCell PaletteCellOf(int index) {
    if (index <= PaletteColumns) {
        return {index - 1, 0};
    }
    return {index - PaletteColumns - 1, 1};
}

bool LinePalette::PointAt(int x, int y) {
    const std::optional<int> index = PaletteIndexAt(x, y);
    if (!index || *index == color_) {
        return false;
    }
    color_ = *index;
    return true;
}

} // namespace torvane::items
