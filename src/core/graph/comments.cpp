#include "graph/comments.h"

#include "graph/time_axis.h"
#include "shell/rounding.h"

#include <cmath>
#include <limits>

namespace torvane::graph {
namespace {

constexpr double Pi = 3.14159265358979;
constexpr double HeadLength = 10.0;
constexpr double HeadSpreadDegrees = 30.0;
// The text row stays this far inside the picture's top and above its bottom.
constexpr std::int32_t TextTopLimit = 12;
constexpr std::int32_t TextBottomMargin = 32;

// Band height the comment arithmetic works with: whole pixels of the scale's full height.
double AnchorBandHeight(const ScaleRecord& scale) {
    if (scale.GridStep == 0) {
        return 0.0;
    }
    return shell::RoundHalfEven(static_cast<double>(scale.AxisMax) / scale.GridStep * scale.Pitch);
}

// A comment laid out in the picture, before the visibility limits are applied.
struct Placement {
    std::int64_t AnchorX = 0;
    std::int64_t AnchorY = 0;
    std::int64_t TextX = 0;
    std::int64_t TextY = 0; // kept inside the picture's text rows
    std::int64_t LastColumn = 0;
    std::int64_t SnapColumn = 0;
    bool StartsInView = false; // the anchor time is not before the layer's left edge
    const ItemDisplay* Display = nullptr;
};

std::optional<Placement> Place(const GraphWindowState& state, const CommentRecord& comment,
                               PictureSize picture) {
    const TimeScale& scale = state.Time;
    if (!comment.InUse() || scale.MsPerStep == 0 || scale.PixelsPerStep == 0) {
        return std::nullopt;
    }
    const CommentItem item = FindCommentItem(state, comment.Layer, comment.Slot, comment.Channel);
    if (!item) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> anchorY = CommentAnchorY(state, comment);
    if (!anchorY) {
        return std::nullopt;
    }
    const double timeOffset =
        state.Layers.Layer[static_cast<std::size_t>(comment.Layer)].TimeOffset;
    const std::int64_t pixels = scale.PixelsPerStep;

    Placement place;
    place.Display = item.Display;
    place.StartsInView = comment.Time >= timeOffset;
    place.AnchorX = shell::RoundToInt64(
        (comment.Time - timeOffset) / scale.MsPerStep * scale.PixelsPerStep + GraphLeft);
    place.AnchorY = *anchorY;
    place.TextX = place.AnchorX + comment.OffsetX;
    place.LastColumn =
        place.TextX + CommentPixelsPerByte * static_cast<std::int64_t>(AnsiLength(comment.Text));
    // The column of the step the text begins in, rounded up: a text that begins inside the
    // first step of the graph still counts as in the graph.
    place.SnapColumn = place.TextX + pixels - place.TextX % pixels;
    place.TextY = std::max<std::int64_t>(place.AnchorY + comment.OffsetY, TextTopLimit);
    if (place.TextY > picture.Height - TextBottomMargin) {
        place.TextY = picture.Height - TextBottomMargin;
    }
    return place;
}

bool IsShown(const Placement& place, PictureSize picture) {
    return place.Display->View == 1 && place.StartsInView && place.LastColumn <= picture.Width &&
           place.AnchorY >= 0 && place.AnchorY <= picture.Height - TimeBandHeight &&
           place.SnapColumn >= GraphLeft;
}

PixelPoint Pixel(std::int64_t x, std::int64_t y) {
    return {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
}

} // namespace

std::size_t AnsiLength(std::string_view text) {
    return text.size();
}

CommentItem FindCommentItem(const GraphWindowState& state, int layer, int slot, int channel) {
    if (layer < 0 || layer > state.LastLayer || layer >= logdata::LayerCount) {
        return {};
    }
    const auto index = static_cast<std::size_t>(layer);
    const logdata::LayerRecord& record = state.Layers.Layer[index];
    const LayerView& view = state.Views[index];
    if (slot < 0 || static_cast<std::size_t>(slot) >= record.ItemChannel.size() ||
        record.ItemChannel[static_cast<std::size_t>(slot)] != channel) {
        return {};
    }
    CommentItem item;
    item.Display = ItemDisplayOf(view, record, slot);
    if (slot < logdata::SlotCount) {
        item.Scale = &view.ItemScale[static_cast<std::size_t>(slot)];
    } else if (const auto k = static_cast<std::size_t>(slot - logdata::SlotCount);
               k < view.Computed.size()) {
        item.Scale = &view.Computed[k].Scale;
    }
    return item;
}

std::optional<std::int64_t> AnchorRow(const ItemDisplay& display, const ScaleRecord& scale,
                                      double value) {
    const double height = AnchorBandHeight(scale);
    if (height == 0.0 || scale.AxisMax == 0) {
        return std::nullopt;
    }
    return shell::RoundToInt64(height + display.Top - value / (scale.AxisMax / height));
}

std::optional<std::int32_t> AnchorValue(const ItemDisplay& display, const ScaleRecord& scale,
                                        std::int32_t row) {
    const double height = AnchorBandHeight(scale);
    if (height == 0.0) {
        return std::nullopt;
    }
    const double value =
        shell::RoundHalfEven(scale.AxisMax / height * (height + display.Top - row));
    if (std::abs(value) > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(value);
}

std::optional<std::int64_t> CommentAnchorY(const GraphWindowState& state,
                                           const CommentRecord& comment) {
    const CommentItem item = FindCommentItem(state, comment.Layer, comment.Slot, comment.Channel);
    if (!item) {
        return std::nullopt;
    }
    return AnchorRow(*item.Display, *item.Scale, comment.Value);
}

std::array<PixelPoint, 2> ArrowHead(PixelPoint anchor, PixelPoint textPoint) {
    const double dy = anchor.Y - textPoint.Y;
    const double dx = textPoint.X - anchor.X;
    double angle = 0.0;
    if (dx == 0.0) {
        angle = 90.0;
    } else if (dy != 0.0) {
        angle = std::atan(dy / dx) * 180.0 / Pi;
    }
    // atan only knows the right half plane: a leader to the left, or straight down, has its
    // head turned through half a circle.
    const bool turned = textPoint.X < anchor.X || (dx == 0.0 && textPoint.Y > anchor.Y);
    const std::int64_t sign = turned ? -1 : 1;
    std::array<PixelPoint, 2> head{};
    const std::array<double, 2> spreads{-HeadSpreadDegrees, HeadSpreadDegrees};
    for (std::size_t i = 0; i < head.size(); ++i) {
        const double radians = (angle + spreads[i]) * Pi / 180.0;
        const std::int64_t hx = sign * shell::RoundToInt64(std::cos(radians) * HeadLength);
        const std::int64_t hy = sign * shell::RoundToInt64(std::sin(radians) * HeadLength);
        head[i] = Pixel(anchor.X + hx, anchor.Y - hy);
    }
    return head;
}

std::vector<CommentPicture> DrawComments(const GraphWindowState& state, PictureSize picture) {
    std::vector<CommentPicture> pictures;
    for (std::size_t index = 0; index < state.Comments.size(); ++index) {
        const CommentRecord& comment = state.Comments[index];
        const std::optional<Placement> place = Place(state, comment, picture);
        if (!place || !IsShown(*place, picture)) {
            continue;
        }
        CommentPicture drawn;
        drawn.Index = index;
        drawn.Anchor = Pixel(place->AnchorX, place->AnchorY);
        drawn.TextPoint = Pixel(place->TextX, place->TextY);
        drawn.Head = ArrowHead(drawn.Anchor, drawn.TextPoint);
        drawn.TextOrigin = Pixel(place->TextX, place->TextY - CommentTextHeight / 2);
        drawn.Text = comment.Text;
        pictures.push_back(std::move(drawn));
    }
    return pictures;
}

std::optional<CommentBox> CommentBoxAt(const GraphWindowState& state, PictureSize picture,
                                       PixelPoint point) {
    if (point.X < GraphLeft) {
        return std::nullopt;
    }
    for (std::size_t index = 0; index < state.Comments.size(); ++index) {
        const std::optional<Placement> place = Place(state, state.Comments[index], picture);
        if (!place || !place->StartsInView) {
            continue;
        }
        const std::int64_t bottom = place->TextY + CommentTextHeight;
        if (point.X >= place->TextX && point.X <= place->LastColumn && point.Y >= place->TextY &&
            point.Y <= bottom) {
            return CommentBox{index, static_cast<std::int32_t>(place->TextX),
                              static_cast<std::int32_t>(place->TextY),
                              static_cast<std::int32_t>(place->LastColumn),
                              static_cast<std::int32_t>(bottom)};
        }
    }
    return std::nullopt;
}

} // namespace torvane::graph
