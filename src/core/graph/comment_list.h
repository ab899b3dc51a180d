#pragma once
// Comments pinned to traces: the record of one comment and the window's array of them. The array
// starts with one free record and never shrinks; a removed comment leaves a free slot that the
// next new comment takes.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace torvane::graph {

// A comment's text is at most this many characters (the edit box takes no more).
inline constexpr std::size_t MaxCommentLength = 40;

// A pixel of picGraph, from its top left.
struct PixelPoint {
    std::int32_t X = 0;
    std::int32_t Y = 0;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

struct CommentRecord {
    std::uint8_t Free = 1; // 1 = slot unused, 0 = in use
    // Text point minus anchor point, in pixels.
    std::int16_t OffsetX = 0;
    std::int16_t OffsetY = 0;
    std::int16_t Channel = 0; // the item's channel, 99 for a computed item
    std::int16_t Slot = 0;    // the item's index in its layer's ItemChannel
    std::int16_t Layer = 0;
    // The anchor: whole milliseconds in the layer's own time, and height in axis units.
    std::int32_t Time = 0;
    std::int32_t Value = 0;
    std::string Text;
    std::filesystem::path FileName; // FilePath of the layer

    bool InUse() const { return Free == 0; }
    friend bool operator==(const CommentRecord&, const CommentRecord&) = default;
};

using CommentList = std::vector<CommentRecord>;

// A fresh window's array: one free record.
inline CommentList NewCommentList() {
    return CommentList(1);
}

// Puts a comment into the first free slot, or at the end when none is free; its index.
std::size_t AddComment(CommentList& comments, CommentRecord comment);

// Frees every comment of a layer (its file was closed or is read again).
void FreeLayerComments(CommentList& comments, int layer);

// Everything a side file keeps of the two records agrees (all but Free, Layer and FileName): the
// copies of one comment read into two layers are one comment.
bool SameComment(const CommentRecord& a, const CommentRecord& b);

// The comments in use of a layer, in array order.
std::vector<CommentRecord> LayerComments(const CommentList& comments, int layer);

// The leader being pulled with the text tool: from the anchor on the trace to the mouse.
struct CommentLeader {
    PixelPoint Anchor;
    PixelPoint End;
};

} // namespace torvane::graph
