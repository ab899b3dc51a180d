#include "render/histogram_picture.h"

#include <QFont>
#include <QPainter>

namespace torvane::render {
namespace {

namespace geometry = views::histogram_geometry;

constexpr QRgb Background = 0xFFFFFFFF;
constexpr QRgb GridColor = 0xFFC0C0C0;
constexpr int AxisLeft = geometry::BarLeft(0);
constexpr int AxisRight = geometry::BarRight(views::BarCount - 1) - 1;
constexpr int LabelHeight = 14;

QFont LabelFont() {
    QFont font("DejaVu Sans");
    font.setPixelSize(11);
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

// The static part: the grid at each Y label, the axes and the texts.
void DrawAxes(QPainter& painter, const views::HistogramView& view) {
    for (int k = 0; k < views::YLabelCount; ++k) {
        const int row = geometry::TickRow(k);
        for (int x = AxisLeft + 1; x <= AxisRight; x += 2) {
            painter.fillRect(x, row, 1, 1, QColor::fromRgb(GridColor));
        }
        painter.drawText(QRect(0, row - LabelHeight / 2, AxisLeft - 5, LabelHeight),
                         Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(view.YIndex[static_cast<std::size_t>(k)]));
    }
    painter.drawText(QRect(0, geometry::ZeroTop - LabelHeight / 2, AxisLeft - 5, LabelHeight),
                     Qt::AlignRight | Qt::AlignVCenter, "0");
    painter.drawText(QRect(0, geometry::TickRow(4) - 3 * LabelHeight, AxisLeft, LabelHeight),
                     Qt::AlignHCenter | Qt::AlignVCenter, "[%]");
    painter.fillRect(AxisLeft, geometry::TickRow(4), 1, geometry::BarBottom - geometry::TickRow(4),
                     Qt::black);
    painter.fillRect(AxisLeft, geometry::BarBottom, AxisRight - AxisLeft + 1, 1, Qt::black);

    constexpr int labelWidth = 40;
    for (int i = 0; i < views::XLabelCount; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const int column = geometry::XLabelColumn(i);
        painter.fillRect(column, geometry::BarBottom + 1, 1, 3, Qt::black);
        if (view.X.Visible[index]) {
            painter.drawText(
                QRect(column - labelWidth / 2, geometry::BarBottom + 5, labelWidth, LabelHeight),
                Qt::AlignHCenter | Qt::AlignTop, QString::number(view.X.Values[index]));
        }
    }
    painter.drawText(
        QRect(AxisLeft, geometry::BarBottom + 5 + LabelHeight, AxisRight - AxisLeft, LabelHeight),
        Qt::AlignHCenter | Qt::AlignTop, QString::fromStdString(view.X.Title));
}

} // namespace

QImage DrawHistogramPicture(const views::HistogramView& view) {
    QImage image(geometry::PictureWidth, geometry::PictureHeight, QImage::Format_RGB32);
    image.fill(Background);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setFont(LabelFont());
    painter.setPen(Qt::black);
    DrawAxes(painter, view);
    for (int i = 0; i < views::BarCount; ++i) {
        const int top = view.BarTops[static_cast<std::size_t>(i)];
        if (top >= geometry::BarBottom) {
            continue;
        }
        // A framed rectangle from BarLeft to BarRight - 1 and from top to the zero row: a bar of
        // 0 % is only its frame's one black row.
        const QRect bar(QPoint(geometry::BarLeft(i), top),
                        QPoint(geometry::BarRight(i) - 1, geometry::BarBottom - 1));
        painter.fillRect(bar, Qt::black);
        if (const QRect inside = bar.adjusted(1, 1, -1, -1); inside.isValid()) {
            painter.fillRect(inside, QColor::fromRgb(HistogramBarColor));
        }
    }
    return image;
}

} // namespace torvane::render
