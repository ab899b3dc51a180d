#pragma once
// The colour palette of the line dialog (frmTLM0013): fourteen cells of 30 x 25 pixels in two rows
// of seven, colour index 1 at the top left, and the cell that the frame marks.

#include <optional>

namespace torvane::items {

inline constexpr int PaletteCellWidth = 30;
inline constexpr int PaletteCellHeight = 25;
inline constexpr int PaletteColumns = 7;
inline constexpr int PaletteRows = 2;
inline constexpr int PaletteWidth = PaletteCellWidth * PaletteColumns;
inline constexpr int PaletteHeight = PaletteCellHeight * PaletteRows;
inline constexpr int PaletteColorCount = PaletteColumns * PaletteRows;

// The colour index under a point of the palette picture; none outside the picture.
std::optional<int> PaletteIndexAt(int x, int y);

struct PaletteCell {
    int Column = 0;
    int Row = 0;

    friend bool operator==(const PaletteCell&, const PaletteCell&) = default;
};
// Where the cell of a colour index stands. An index the palette has no cell for (a layout may
// hold 0, 15 or 16) lies outside the picture, so no cell shows the frame.
PaletteCell PaletteCellOf(int index);

// The chosen colour as the operator presses and drags over the palette.
class LinePalette {
public:
    explicit LinePalette(int color)
        : color_(color) {}
    int Color() const { return color_; }
    // A press, or a move with the left button down, at (x, y): true when the chosen cell changed
    // and the frame must be drawn again. Points outside the picture change nothing.
    bool PointAt(int x, int y);

private:
    int color_;
};

// Labels of the thickness options (optPt) and the style options (optLine), values 1 to 3.
inline constexpr const char* ThicknessLabels[] = {"1Pt", "3Pt", "6Pt"};
inline constexpr const char* StyleLabels[] = {"Solid", "Dotted", "Dashed"};

// What the line dialog edits: a colour index 1..14, a style and a thickness, each 1..3.
struct LineKind {
    int Color = 1;
    int Line = 1;
    int Point = 1;

    friend bool operator==(const LineKind&, const LineKind&) = default;
};

} // namespace torvane::items
