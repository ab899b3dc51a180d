#pragma once
// Where the comments of a graph window stand in its picture. A comment's anchor follows its
// trace: the column from the anchor time and the layer's TimeOffset, the row from the anchor
// value and the item's band (its Top moves with drags and zoom). The text stands at a fixed
// pixel offset from the anchor, joined to it by a leader with an arrow head on the anchor.

#include "graph/comment_list.h"
#include "graph/window_state.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::graph {

// The size of picGraph: W columns and H rows, the time band included.
struct PictureSize {
    std::int32_t Width = 0;
    std::int32_t Height = 0;
};

// A comment's text takes this many columns a byte of its local 8-bit encoding, and this many
// rows.
inline constexpr std::int32_t CommentPixelsPerByte = 6;
inline constexpr std::int32_t CommentTextHeight = 12;

// Length of a text in bytes of the local 8-bit encoding (UTF-8 here).
std::size_t AnsiLength(std::string_view text);

// The display and scale of the item a comment names; both null when the layer holds no such
// item (a computed item that is gone, a slot of another channel).
struct CommentItem {
    const ItemDisplay* Display = nullptr;
    const ScaleRecord* Scale = nullptr;
    explicit operator bool() const { return Display != nullptr && Scale != nullptr; }
};
CommentItem FindCommentItem(const GraphWindowState& state, int layer, int slot, int channel);

// Row of an axis value in the item's band, and the axis value of a row; nothing for a scale
// without height.
std::optional<std::int64_t> AnchorRow(const ItemDisplay& display, const ScaleRecord& scale,
                                      double value);
std::optional<std::int32_t> AnchorValue(const ItemDisplay& display, const ScaleRecord& scale,
                                        std::int32_t row);

// Row of a comment's anchor; nothing when its item is not there.
std::optional<std::int64_t> CommentAnchorY(const GraphWindowState& state,
                                           const CommentRecord& comment);

// The two ends of the arrow head's lines, which start at the anchor. The head's angle follows
// the leader's slope; a leader that goes left, or straight down, turns it round.
std::array<PixelPoint, 2> ArrowHead(PixelPoint anchor, PixelPoint textPoint);

// What to draw for one comment, one pixel wide in the picture's fore colour: the leader from
// Anchor to TextPoint, a line from Anchor to each Head point, and Text with its top left at
// TextOrigin.
struct CommentPicture {
    std::size_t Index = 0; // in the window's Comments
    PixelPoint Anchor;
    PixelPoint TextPoint;
    std::array<PixelPoint, 2> Head{};
    PixelPoint TextOrigin;
    std::string Text;
};

// The comments to draw on a rebuild of the picture, in array order. A comment is left out whole
// when its layer is closed or its item hidden, its time lies before the layer's left edge, its
// text would pass the right edge, its anchor row is outside 0 to H - 20, or its text begins
// left of the graph (tested on the column rounded up to the next step). The text row is kept
// between 12 and H - 32.
std::vector<CommentPicture> DrawComments(const GraphWindowState& state, PictureSize picture);

// The box of a comment's text that a double click finds: from the text's left, 6 columns a
// byte wide, from the text row down 12 rows.
struct CommentBox {
    std::size_t Index = 0;
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Right = 0;
    std::int32_t Bottom = 0;
};
// The first comment whose box holds the point, for a point in the graph (column 100 or more)
// and a comment of an open layer whose time is not before the layer's left edge.
std::optional<CommentBox> CommentBoxAt(const GraphWindowState& state, PictureSize picture,
                                       PixelPoint point);

} // namespace torvane::graph
