#pragma once
// frmTLM0013, "Kind of line": the colour from the palette (picColor), the thickness (optPt) and
// the style (optLine). Accepted with the chosen LineKind.

#include "items/line_palette.h"

#include <QDialog>
#include <QWidget>

class QButtonGroup;

namespace torvane::app {

// picColor: fourteen colour cells, the chosen one framed. A press, or a move with the left button
// down, chooses the cell under the mouse inside the picture.
class PaletteView : public QWidget {
    Q_OBJECT
public:
    PaletteView(int color, QWidget* parent = nullptr);
    int Color() const { return palette_.Color(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void PointAt(QPoint point);

    items::LinePalette palette_;
};

class LineKindDialog : public QDialog {
    Q_OBJECT
public:
    LineKindDialog(const items::LineKind& start, QWidget* owner);
    // Meaningful once accepted.
    items::LineKind Kind() const;

private:
    PaletteView* palette_;
    QButtonGroup* thickness_; // optPt, ids 1..3
    QButtonGroup* style_;     // optLine, ids 1..3
};

} // namespace torvane::app
