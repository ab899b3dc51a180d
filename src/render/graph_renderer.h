#pragma once
// The picture of a graph window, drawn from the window model into off-screen images: the scale
// surface (scale column and horizontal grid, rebuilt only when scales change), the graph surface
// (time grid, traces, tags, time band, comments, lap bar) and the composed picture (range band, the
// graph keyed on white, the dotted cursor). The window's widget, the command line and tests all
// draw through it; nothing here needs a screen.

#include "graph/picture_geometry.h"
#include "graph/trace_builder.h"
#include "graph/window_state.h"
#include "logger/laf_table.h"
#include "render/raster.h"
#include "render/redraw_mode.h"

#include <QFont>
#include <QImage>
#include <QPoint>
#include <QSize>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace torvane::render {

class GraphRenderer {
public:
    // The surfaces start at `surfaceSize` and grow when the picture outgrows them.
    GraphRenderer(graph::GraphWindowState& state, const logger::LafTable& laf, QSize surfaceSize);
    virtual ~GraphRenderer() = default;
    GraphRenderer(const GraphRenderer&) = delete;
    GraphRenderer& operator=(const GraphRenderer&) = delete;

    // Size of the picture (picGraph) in pixels.
    void SetPictureSize(QSize size);
    QSize PictureSize() const { return size_; }

    // False when a stream could not be read.
    bool RedrawGraph(RedrawMode mode);
    // One step of held scrolling, drawn straight into the composed picture from column 100.
    bool RedrawRect();
    void DrawScaleColumn();

    // The ghost of a dragged trace, moved over the graph, dropped.
    bool BeginItemDrag(int layer, int position);
    void MoveGhost(QPoint offset);
    void EndItemDrag();
    bool Dragging() const { return !ghost_.isNull(); }

    // The stream that made the last redraw fail.
    const std::filesystem::path& FailedStream() const { return failedStream_; }

    // What the operator sees: the composed surface, of which the picture size counts.
    const QImage& Picture() const { return compose_; }
    // False when a surface could not be allocated: nothing can be drawn then.
    bool HasSurfaces() const { return !graph_.isNull() && !scale_.isNull() && !compose_.isNull(); }
    // 0xBBGGRR at (x, y) of the picture; 0 outside it.
    std::uint32_t PixelAt(int x, int y) const;

    // The range fill as a pixel value of the surfaces (0xBFFFFF on 32-bit surfaces).
    static std::uint32_t SurfaceBandColor();
    // The fixed font of the picture, about 12 pixels high.
    static QFont PictureFont();

private:
    struct Tag {
        std::int32_t Row = 0;
        std::string Name;
    };
    struct ComposeInputs {
        std::optional<graph::PixelRect> Band;
        std::int32_t CursorX = 0;
        QSize Size;
    };

    void EnsureSurfaces();
    bool DrawTraces(QImage& surface);
    void DrawTags(QImage& surface, const std::vector<Tag>& tags);
    void DrawTimeGrid(QImage& surface, bool scrolling);
    void DrawTimeBand(QImage& surface);
    // Comments go onto the graph surface only, so a held scroll shows none until it ends.
    void DrawComments(QImage& surface);
    void DrawLapBar(QImage& surface);
    QRgb BandPixel() const;
    void Compose();
    // Columns [left, right) of the composed picture: white, the band, `source` keyed on white.
    void ComposeColumns(const QImage& source, int left, int right,
                        const std::optional<graph::PixelRect>& band);
    void DrawCursor(QImage& surface);
    void DrawText(QImage& surface, const std::vector<graph::TextAt>& texts);

    graph::GraphWindowState& state_;
    const logger::LafTable& laf_;
    QSize size_;
    QImage graph_;
    QImage scale_;
    QImage compose_;
    QImage ghost_;
    QPoint ghostOrigin_;
    QImage downTag_;
    QFont font_;
    graph::TraceLists lists_;
    std::filesystem::path failedStream_;
    // What the composed picture shows now; empty when it must be composed whole.
    std::optional<ComposeInputs> composed_;
};

} // namespace torvane::render
