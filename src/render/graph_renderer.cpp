#include "render/graph_renderer.h"

#include "graph/comments.h"
#include "graph/lap_bar.h"
#include "graph/picture_geometry.h"
#include "graph/scale.h"
#include "graph/scale_column.h"
#include "graph/time_axis.h"
#include "graph/trace_item.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <sys/mman.h>

namespace torvane::render {
namespace {

using graph::GraphLeft;
using graph::PixelRect;
using graph::TimeBandHeight;

constexpr QRgb White = 0xFFFFFFFF;
constexpr std::uint32_t Black = 0x000000;
constexpr std::uint32_t Grey = 0xC0C0C0;
constexpr std::uint32_t CursorColor = 0xFF8000;
constexpr std::uint32_t DeltaColor = 0x00A0FF;

Pen SolidPen(std::uint32_t bgr) {
    return Pen(PixelOf(bgr), graph::PenStyle::Solid);
}

// Columns [left, right) of every row below `rows` copied from one surface to another.
void CopyColumns(QImage& target, const QImage& source, int left, int right, int rows) {
    left = std::max(left, 0);
    right = std::min({right, target.width(), source.width()});
    rows = std::min({rows, target.height(), source.height()});
    if (right <= left) {
        return;
    }
    const auto bytes = static_cast<std::size_t>(right - left) * sizeof(QRgb);
    for (int y = 0; y < rows; ++y) {
        std::memcpy(reinterpret_cast<QRgb*>(target.scanLine(y)) + left,
                    reinterpret_cast<const QRgb*>(source.constScanLine(y)) + left, bytes);
    }
}

// The pixels of `source` that are not white, copied with the source's top left at `at`,
// inside `clip`.
void CopyKeyed(QImage& target, const QImage& source, QPoint at, QRect clip) {
    const QRect area = QRect(at, source.size()).intersected(clip).intersected(target.rect());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(source.constScanLine(y - at.y()));
        auto* to = reinterpret_cast<QRgb*>(target.scanLine(y));
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb pixel = from[x - at.x()];
            if (pixel != White) {
                to[x] = pixel;
            }
        }
    }
}

QRect ToQRect(const PixelRect& rect) {
    return {rect.Left, rect.Top, rect.Width, rect.Height};
}

void Fill(QImage& surface, const QRect& rect, QRgb pixel) {
    const QRect area = rect.intersected(surface.rect());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(surface.scanLine(y));
        std::fill(row + area.left(), row + area.right() + 1, pixel);
    }
}

// A 32-bit surface in memory that asks for 2 MiB pages: a trace's columns walk down rows that
// stand kilobytes apart, and with small pages nearly every pixel would cost a translation miss.
QImage LargePageImage(QSize size) {
    constexpr std::size_t LargePage = std::size_t{2} << 20;
    const auto rowBytes = static_cast<std::size_t>(size.width()) * sizeof(QRgb);
    const std::size_t used = rowBytes * static_cast<std::size_t>(size.height());
    const std::size_t bytes = (used + LargePage - 1) / LargePage * LargePage;
    // A small picture has few rows to walk and would leave most of its large page unused.
    void* memory = used >= LargePage ? std::aligned_alloc(LargePage, bytes) : nullptr;
    if (memory == nullptr) {
        return QImage(size, QImage::Format_RGB32);
    }
    ::madvise(memory, bytes, MADV_HUGEPAGE);
    return QImage(static_cast<uchar*>(memory), size.width(), size.height(),
                  static_cast<qsizetype>(rowBytes), QImage::Format_RGB32, std::free, memory);
}

// The 15 x 15 tag picture: a black arrow pointing down on white.
QImage DownArrow() {
    QImage image(graph::TagSize, graph::TagSize, QImage::Format_RGB32);
    image.fill(White);
    const QRgb black = PixelOf(Black);
    for (int y = 1; y < 8; ++y) {
        image.setPixel(6, y, black);
        image.setPixel(7, y, black);
    }
    for (int y = 8; y < 14; ++y) {
        const int half = 13 - y;
        for (int x = 7 - half - 1; x <= 7 + half; ++x) {
            image.setPixel(x, y, black);
        }
    }
    return image;
}

// The column ranges where two bands differ.
std::vector<std::pair<int, int>> ChangedColumns(const std::optional<PixelRect>& before,
                                                const std::optional<PixelRect>& after) {
    if (before == after) {
        return {};
    }
    const auto right = [](const PixelRect& band) {
        return band.Left + band.Width;
    };
    if (before && after && before->Top == after->Top && before->Height == after->Height) {
        return {{std::min(before->Left, after->Left), std::max(before->Left, after->Left)},
                {std::min(right(*before), right(*after)), std::max(right(*before), right(*after))}};
    }
    std::vector<std::pair<int, int>> ranges;
    for (const auto& band : {before, after}) {
        if (band) {
            ranges.emplace_back(band->Left, right(*band));
        }
    }
    return ranges;
}

} // namespace

GraphRenderer::GraphRenderer(graph::GraphWindowState& state, const logger::LafTable& laf,
                             QSize surfaceSize)
    : state_(state)
    , laf_(laf)
    , size_(surfaceSize)
    , downTag_(DownArrow())
    , font_(PictureFont()) {
    EnsureSurfaces();
}

QFont GraphRenderer::PictureFont() {
    QFont font("DejaVu Sans Mono");
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(12);
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

std::uint32_t GraphRenderer::SurfaceBandColor() {
    // The masks of a 32-bit 0xRRGGBB surface.
    return graph::BandColorOf(0xFF0000, 0x00FF00, 0x0000FF);
}

void GraphRenderer::SetPictureSize(QSize size) {
    size_ = size.expandedTo(QSize(1, 1));
    EnsureSurfaces();
}

void GraphRenderer::EnsureSurfaces() {
    if (graph_.width() >= size_.width() && graph_.height() >= size_.height()) {
        return;
    }
    const QSize surface = size_.expandedTo(graph_.size());
    for (QImage* image : {&graph_, &scale_, &compose_}) {
        *image = LargePageImage(surface);
        image->fill(White);
    }
    composed_.reset();
    if (HasSurfaces()) {
        DrawScaleColumn();
    }
}

bool GraphRenderer::RedrawGraph(RedrawMode mode) {
    EnsureSurfaces();
    const int width = size_.width();
    const int height = size_.height();
    if (mode == RedrawMode::Rebuild && width > GraphLeft) {
        CopyColumns(graph_, scale_, GraphLeft, width, height);
        DrawTimeGrid(graph_, false);
        if (const auto delta = graph::DeltaMarkColumn(state_, width)) {
            Raster(graph_, QRect(0, 0, width, height))
                .VerticalLine(*delta, 0, height, SolidPen(DeltaColor));
        }
        composed_.reset();
        // A stream that cannot be read ends the pass where it stands: the graph surface keeps
        // what was drawn up to it, and the picture on show is not composed again.
        if (!DrawTraces(graph_)) {
            return false;
        }
        CopyColumns(graph_, scale_, 0, GraphLeft, height);
        DrawTimeBand(graph_);
        DrawComments(graph_);
        if (state_.LapBarHeight >= 1) {
            DrawLapBar(graph_);
        }
    }
    Compose();
    return true;
}

bool GraphRenderer::RedrawRect() {
    EnsureSurfaces();
    const int width = size_.width();
    const int height = size_.height();
    const auto band = graph::RangeBandOf(state_, width, height);
    // White, the band, then the scale keyed on white: the band under the scale's lines.
    ComposeColumns(scale_, GraphLeft, width, band);
    composed_.reset();
    if (!DrawTraces(compose_)) {
        return false;
    }
    DrawTimeBand(compose_);
    DrawTimeGrid(compose_, true);
    if (state_.LapBarHeight > 0) {
        DrawLapBar(compose_);
    }
    DrawCursor(compose_);
    return true;
}

void GraphRenderer::DrawScaleColumn() {
    scale_.fill(White);
    const graph::ScaleColumn column = graph::ScaleColumnOf(state_);
    Raster raster(scale_, scale_.rect());
    const Pen black = SolidPen(Black);
    const Pen grey = SolidPen(Grey);
    for (const graph::ScaleLine& line : column.Lines) {
        raster.HorizontalLine(line.Row, GraphLeft, scale_.width(), line.Labelled ? black : grey);
    }
    DrawText(scale_, column.Labels);
    // The axis line is two pixels wide, its right one on column 100.
    raster.VerticalLine(GraphLeft - 1, 0, scale_.height(), black);
    raster.VerticalLine(GraphLeft, 0, scale_.height(), black);
}

bool GraphRenderer::DrawTraces(QImage& surface) {
    const int width = size_.width();
    const int height = size_.height();
    // Traces drawn into the composed picture keep out of its scale column.
    const int left = &surface == &compose_ ? GraphLeft : 0;
    Raster raster(surface, QRect(left, 0, width - left, height));
    std::vector<Tag> tags;
    for (int layer = 0; layer <= state_.LastLayer && layer < logdata::LayerCount; ++layer) {
        const logdata::LayerRecord& record = state_.Layers.Layer[static_cast<std::size_t>(layer)];
        for (std::size_t i = 0; i < record.ItemChannel.size(); ++i) {
            const int index = static_cast<int>(i);
            if (!graph::ItemDrawn(state_, layer, index, height)) {
                continue;
            }
            const auto params = graph::TraceParamsFor(state_, layer, index, GraphLeft,
                                                      width - GraphLeft, record.TimeOffset);
            const auto look = graph::ItemLookOf(state_, layer, index);
            if (!params || !look) {
                continue;
            }
            const int result = graph::BuildItemTrace(state_, laf_, layer, index, *params, lists_);
            if (result == graph::TraceFailed) {
                failedStream_ = params->File;
                return false;
            }
            if (result == graph::TraceNone) {
                continue;
            }
            const Pen pen(PixelOf(look->Color), graph::TracePenStyle(result, look->Line));
            for (const auto* list : graph::ListsToDraw(lists_, look->Point)) {
                raster.Polyline(*list, pen);
            }
            if (layer == 0) {
                if (const auto row = graph::TraceTagRow(lists_.Main)) {
                    tags.push_back({*row, look->Name});
                }
            }
        }
    }
    DrawTags(surface, tags);
    return true;
}

void GraphRenderer::DrawTags(QImage& surface, const std::vector<Tag>& tags) {
    std::vector<graph::TextAt> names;
    for (const Tag& tag : tags) {
        CopyKeyed(surface, downTag_, QPoint(graph::TagColumn, tag.Row), surface.rect());
        names.push_back({graph::TagColumn + graph::TagSize, tag.Row - graph::TagSize, tag.Name});
    }
    DrawText(surface, names);
}

void GraphRenderer::DrawTimeGrid(QImage& surface, bool scrolling) {
    const int width = size_.width();
    const int bottom = size_.height() - TimeBandHeight;
    const graph::TimeGrid grid =
        graph::TimeGridOf(state_.Layers.Layer[0].TimeOffset, state_.Time, width);
    // While scrolling the picture is drawn from column 100 only.
    Raster raster(surface, QRect(scrolling ? GraphLeft : 0, 0, width, size_.height()));
    const Pen black = SolidPen(Black);
    const Pen grey = SolidPen(Grey);
    for (const std::int32_t x : grid.Lines) {
        raster.VerticalLine(x, 0, bottom, black);
    }
    for (const std::int32_t x : grid.HalfLines) {
        raster.VerticalLine(x, 0, bottom, grey);
    }
}

void GraphRenderer::DrawTimeBand(QImage& surface) {
    const int width = size_.width();
    const int height = size_.height();
    const int top = height - TimeBandHeight;
    Fill(surface, QRect(GraphLeft + 1, top, width - GraphLeft - 1, TimeBandHeight), White);
    Raster(surface, QRect(0, 0, width, height))
        .HorizontalLine(top, GraphLeft + 1, width, SolidPen(Black));
    graph::TimeGrid grid = graph::TimeGridOf(state_.Layers.Layer[0].TimeOffset, state_.Time, width);
    for (graph::TextAt& label : grid.Labels) {
        label.Y = height - label.Y;
    }
    DrawText(surface, grid.Labels);
}

void GraphRenderer::DrawComments(QImage& surface) {
    const std::vector<graph::CommentPicture> comments =
        graph::DrawComments(state_, {size_.width(), size_.height()});
    Raster raster(surface, QRect(QPoint(0, 0), size_));
    const Pen black = SolidPen(Black);
    std::vector<graph::TextAt> texts;
    for (const graph::CommentPicture& comment : comments) {
        const graph::PixelPoint anchor = comment.Anchor;
        std::int64_t phase = 0;
        raster.Line(anchor.X, anchor.Y, comment.TextPoint.X, comment.TextPoint.Y, black, phase);
        for (const graph::PixelPoint& head : comment.Head) {
            raster.Line(anchor.X, anchor.Y, head.X, head.Y, black, phase);
        }
        texts.push_back({comment.TextOrigin.X, comment.TextOrigin.Y, comment.Text});
    }
    DrawText(surface, texts);
}

void GraphRenderer::DrawLapBar(QImage& surface) {
    const int width = size_.width();
    const graph::LapBar bar = graph::LapBarOf(state_, width);
    const QRect graphArea(0, 0, width, size_.height());
    Fill(surface, QRect(GraphLeft + 1, 0, width - GraphLeft - 1, state_.LapBarHeight), White);
    for (const PixelRect& cell : bar.Filled) {
        Fill(surface, ToQRect(cell).intersected(graphArea), BandPixel());
    }
    DrawText(surface, bar.Texts);
    Raster raster(surface, QRect(0, 0, width, size_.height()));
    for (const std::int32_t row : bar.Closes) {
        raster.HorizontalLine(row, GraphLeft, width, SolidPen(Black));
    }
}

QRgb GraphRenderer::BandPixel() const {
    return 0xFF000000 | state_.BandColor;
}

void GraphRenderer::Compose() {
    const ComposeInputs inputs{graph::RangeBandOf(state_, size_.width(), size_.height()),
                               state_.CursorX, size_};
    if (composed_ && composed_->Size == size_) {
        // Only the columns whose band or cursor changed are composed again.
        for (const auto& [left, right] : ChangedColumns(composed_->Band, inputs.Band)) {
            ComposeColumns(graph_, left, right, inputs.Band);
        }
        ComposeColumns(graph_, composed_->CursorX, composed_->CursorX + 1, inputs.Band);
    } else {
        ComposeColumns(graph_, 0, size_.width(), inputs.Band);
    }
    DrawCursor(compose_);
    composed_ = inputs;
}

void GraphRenderer::ComposeColumns(const QImage& source, int left, int right,
                                   const std::optional<PixelRect>& band) {
    left = std::max(left, 0);
    right = std::min(right, size_.width());
    if (right <= left) {
        return;
    }
    const QRgb bandPixel = BandPixel();
    const QRect bandArea = band ? ToQRect(*band) : QRect();
    for (int y = 0; y < size_.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(source.constScanLine(y));
        auto* to = reinterpret_cast<QRgb*>(compose_.scanLine(y));
        const bool bandRow = band && y >= bandArea.top() && y <= bandArea.bottom();
        if (!bandRow) {
            // Outside the band the white key shows white: the source as it is.
            std::memcpy(to + left, from + left,
                        static_cast<std::size_t>(right - left) * sizeof(QRgb));
            continue;
        }
        for (int x = left; x < right; ++x) {
            const QRgb pixel = from[x];
            const bool inBand = bandRow && x >= bandArea.left() && x <= bandArea.right();
            to[x] = pixel != White ? pixel : (inBand ? bandPixel : White);
        }
    }
}

void GraphRenderer::DrawCursor(QImage& surface) {
    Raster(surface, QRect(QPoint(0, 0), size_))
        .VerticalLine(state_.CursorX, 0, size_.height(),
                      Pen(PixelOf(CursorColor), graph::PenStyle::Dot));
}

void GraphRenderer::DrawText(QImage& surface, const std::vector<graph::TextAt>& texts) {
    if (texts.empty()) {
        return;
    }
    QPainter painter(&surface);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::TextAntialiasing, false);
    painter.setFont(font_);
    painter.setPen(QColor(Qt::black));
    for (const graph::TextAt& text : texts) {
        painter.drawText(QRect(text.X, text.Y, 2000, 40), Qt::AlignLeft | Qt::AlignTop,
                         QString::fromStdString(text.Text));
    }
}

bool GraphRenderer::BeginItemDrag(int layer, int position) {
    const int width = size_.width();
    const auto params =
        graph::TraceParamsFor(state_, layer, position, 0, width,
                              state_.Layers.Layer.at(static_cast<std::size_t>(layer)).TimeOffset);
    const graph::ScaleRecord* scale = graph::ItemScaleOf(state_, layer, position);
    const graph::ItemDisplay* display =
        graph::ItemDisplayOf(state_.Views.at(static_cast<std::size_t>(layer)),
                             state_.Layers.Layer.at(static_cast<std::size_t>(layer)), position);
    if (!params || scale == nullptr || display == nullptr) {
        return false;
    }
    graph::TraceLists lists;
    if (graph::BuildItemTrace(state_, laf_, layer, position, *params, lists) <= 0) {
        return false;
    }
    const int bandHeight = std::max(graph::BandHeight(*scale, display->Max), 1);
    const int top = params->Base - bandHeight;
    ghost_ = QImage(width, bandHeight + 1, QImage::Format_RGB32);
    ghost_.fill(White);
    std::vector<graph::TracePoint> main = lists.Main;
    for (graph::TracePoint& point : main) {
        point.Y -= top;
    }
    Raster(ghost_, ghost_.rect()).Polyline(main, Pen(PixelOf(Black), graph::PenStyle::Dot));
    ghostOrigin_ = QPoint(GraphLeft, top);
    return true;
}

void GraphRenderer::MoveGhost(QPoint offset) {
    if (ghost_.isNull()) {
        return;
    }
    CopyColumns(compose_, graph_, 0, size_.width(), size_.height());
    const QRect graphArea(GraphLeft, 0, size_.width() - GraphLeft, size_.height() - TimeBandHeight);
    CopyKeyed(compose_, ghost_, ghostOrigin_ + offset, graphArea);
    composed_.reset();
}

void GraphRenderer::EndItemDrag() {
    ghost_ = QImage();
    CopyColumns(compose_, graph_, 0, size_.width(), size_.height());
    composed_.reset();
}

std::uint32_t GraphRenderer::PixelAt(int x, int y) const {
    if (x < 0 || y < 0 || x >= size_.width() || y >= size_.height()) {
        return 0;
    }
    return BgrOf(compose_.pixel(x, y));
}

} // namespace torvane::render
