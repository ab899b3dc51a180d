#include "graph/comment_tool.h"

#include "graph/time_axis.h"
#include "shell/rounding.h"

#include <algorithm>
#include <filesystem>
#include <limits>

namespace torvane::graph {
namespace {

bool IsContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::int16_t PixelOffset(std::int32_t from, std::int32_t to) {
    return static_cast<std::int16_t>(
        std::clamp<std::int32_t>(to - from, std::numeric_limits<std::int16_t>::min(),
                                 std::numeric_limits<std::int16_t>::max()));
}

// A new comment from the leader of the text tool, pinned to the marked item.
std::optional<CommentRecord> NewComment(const GraphWindowState& state, std::string text) {
    const ItemRow* row = state.Panel.MarkedRow();
    if (row == nullptr || state.Time.PixelsPerStep == 0) {
        return std::nullopt;
    }
    const CommentItem item = FindCommentItem(state, row->Layer, row->Position, row->Kinds);
    if (!item) {
        return std::nullopt;
    }
    const PixelPoint anchor = state.Leader.Anchor;
    const std::optional<std::int32_t> value = AnchorValue(*item.Display, *item.Scale, anchor.Y);
    if (!value) {
        return std::nullopt;
    }
    const logdata::LayerRecord& layer = state.Layers.Layer[static_cast<std::size_t>(row->Layer)];
    const double time = static_cast<double>(anchor.X - GraphLeft) / state.Time.PixelsPerStep *
                            state.Time.MsPerStep +
                        layer.TimeOffset;

    CommentRecord comment;
    comment.OffsetX = PixelOffset(anchor.X, state.Leader.End.X);
    comment.OffsetY = PixelOffset(anchor.Y, state.Leader.End.Y);
    comment.Text = std::move(text);
    comment.Layer = static_cast<std::int16_t>(row->Layer);
    comment.Channel = static_cast<std::int16_t>(row->Kinds);
    comment.Slot = static_cast<std::int16_t>(row->Position);
    comment.FileName = layer.FilePath;
    comment.Time = static_cast<std::int32_t>(shell::RoundToInt64(time));
    comment.Value = *value;
    return comment;
}

// A file open as two layers holds a copy of each of its comments in each: a change reaches every
// copy, so that no layer writes the old one back with the file's comments.
void ChangeComment(GraphWindowState& state, std::size_t index, const std::string& text) {
    const auto fileOf = [&state](int layer) -> const std::filesystem::path& {
        return state.Layers.Layer.at(static_cast<std::size_t>(layer)).FilePath;
    };
    CommentRecord old = state.Comments[index];
    old.FileName = fileOf(old.Layer);
    for (CommentRecord& copy : state.Comments) {
        if (!copy.InUse() || copy.Layer > state.LastLayer || !SameComment(copy, old) ||
            fileOf(copy.Layer) != old.FileName) {
            continue;
        }
        if (text.empty()) {
            copy = CommentRecord{};
        } else {
            copy.Text = text;
        }
    }
    state.ReplacedComments.push_back(std::move(old));
}

CommentEditEnd ApplyEdit(GraphWindowState& state, std::string_view typed) {
    std::string text = CommentText(typed);
    if (state.EditComment >= 0) {
        const auto index = static_cast<std::size_t>(state.EditComment);
        if (index >= state.Comments.size() || !state.Comments[index].InUse() ||
            text == state.Comments[index].Text) {
            return {};
        }
        const int layer = state.Comments[index].Layer;
        ChangeComment(state, index, text);
        return {true, layer};
    }
    if (text.empty()) {
        return {};
    }
    std::optional<CommentRecord> comment = NewComment(state, std::move(text));
    if (!comment) {
        return {};
    }
    const int layer = comment->Layer;
    AddComment(state.Comments, std::move(*comment));
    return {true, layer};
}

} // namespace

void BeginCommentLeader(GraphWindowState& state, ItemRef item, PixelPoint at) {
    state.Panel.SelectItem(item.Layer, item.Position);
    state.DragState = DragState::CommentLeader;
    state.EditComment = -1;
    state.Leader = {at, at};
}

bool MoveCommentLeader(GraphWindowState& state, PixelPoint at) {
    if (state.DragState == DragState::None) {
        return false;
    }
    state.Leader.End = at;
    return true;
}

std::optional<CommentEditBox> EndCommentLeader(GraphWindowState& state, PictureSize picture) {
    state.DragState = DragState::None;
    const PixelPoint end = state.Leader.End;
    if (end.X > GraphLeft && end.X < picture.Width && end.Y > 0 &&
        end.Y < picture.Height - TimeBandHeight) {
        return CommentEditBox{end.X, end.Y, {}};
    }
    return std::nullopt;
}

std::optional<CommentEditBox> BeginCommentEdit(GraphWindowState& state, PictureSize picture,
                                               PixelPoint at) {
    const std::optional<CommentBox> box = CommentBoxAt(state, picture, at);
    if (!box) {
        return std::nullopt;
    }
    state.EditComment = static_cast<int>(box->Index);
    return CommentEditBox{box->Left, (box->Top + box->Bottom) / 2, state.Comments[box->Index].Text};
}

CommentEditEnd EndCommentEdit(GraphWindowState& state, CommentEditKey key, std::string_view text) {
    CommentEditEnd end;
    if (key == CommentEditKey::Enter) {
        end = ApplyEdit(state, text);
    }
    state.EditComment = -1;
    return end;
}

std::string CommentText(std::string_view typed) {
    const auto first = typed.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    typed.remove_prefix(first);
    std::size_t characters = 0;
    std::size_t end = 0;
    for (; end < typed.size(); ++end) {
        if (!IsContinuationByte(typed[end]) && characters++ == MaxCommentLength) {
            break;
        }
    }
    typed = typed.substr(0, end);
    return std::string(typed.substr(0, typed.find_last_not_of(' ') + 1));
}

} // namespace torvane::graph
