#pragma once
// The text tool of a graph window: pinning a new comment to a trace (press on the trace, pull
// the leader, release, type, Enter) and editing an existing one (double click on its text). The
// desktop forwards the mouse and the edit box's ending here, draws the leader while it is pulled
// and places the edit box where it is told; every coordinate is a pixel of picGraph.

#include "graph/comments.h"
#include "graph/window_state.h"

#include <optional>
#include <string>
#include <string_view>

namespace torvane::graph {

// A press of the text tool on a trace: the item is marked and the leader starts, both ends at
// the press point.
void BeginCommentLeader(GraphWindowState& state, ItemRef item, PixelPoint at);

// The leader's end follows the mouse while the drag lasts; false once it is over.
bool MoveCommentLeader(GraphWindowState& state, PixelPoint at);

// Where the edit box opens: left at Left, its middle row at CentreY, holding Text.
struct CommentEditBox {
    std::int32_t Left = 0;
    std::int32_t CentreY = 0;
    std::string Text;
    std::int32_t TopFor(std::int32_t boxHeight) const { return CentreY - boxHeight / 2; }
};

// The release of the leader ends the drag. The edit box for the new comment opens at the
// leader's end when that lies more than 100 columns into the picture, left of its right edge,
// below its top and above its bottom - 20; otherwise nothing follows.
std::optional<CommentEditBox> EndCommentLeader(GraphWindowState& state, PictureSize picture);

// A double click of the text tool: the comment whose text box holds the point opens for editing
// (EditComment is its index), its text in the box.
std::optional<CommentEditBox> BeginCommentEdit(GraphWindowState& state, PictureSize picture,
                                               PixelPoint at);

enum class CommentEditKey { Enter, Escape, FocusLost };

struct CommentEditEnd {
    // A comment was added, changed or removed: the picture is rebuilt and the comments of Layer
    // are saved with its file.
    bool Changed = false;
    int Layer = 0;
};

// The edit box ends; the box is emptied and hidden and EditComment is -1 afterwards. Only Enter
// keeps the text: an edited comment takes it, and blank text removes the comment, on every layer
// that shows its file, and the comment as it was joins ReplacedComments; a new one is
// pinned where the leader began, to the marked item, with its text where the leader ended, and
// blank text creates none.
CommentEditEnd EndCommentEdit(GraphWindowState& state, CommentEditKey key, std::string_view text);

// The text as a comment keeps it: blanks at both ends taken off, at most 40 characters.
std::string CommentText(std::string_view typed);

} // namespace torvane::graph
