#include "render/detonation_picture.h"

#include <QFont>
#include <QPainter>

namespace torvane::render {
namespace {

using views::BandCount;
using views::CellSize;
using views::MapBottom;
using views::MapCount;
using views::MapLeft;
using views::MapTop;
using views::MapWidth;

constexpr int StripLeft = 400;
constexpr int StripHeight = BandCount * CellSize;
constexpr QRgb Ink = 0xFF000000;
constexpr QRgb Paper = 0xFFFFFFFF;
constexpr QRgb GridLine = 0xFF808080;
constexpr QRgb Face = 0xFFC0C0C0;

// The table below the maps: a caption column and three value columns.
constexpr int TableTop = 292;
constexpr int RowHeight = 18;
constexpr std::array<int, 5> TableColumns{6, 120, 230, 340, 454};

QRect TableCell(int row, int column) {
    const auto c = static_cast<std::size_t>(column);
    return {TableColumns[c], TableTop + row * RowHeight, TableColumns[c + 1] - TableColumns[c],
            RowHeight};
}

QFont PictureFont(int pixels, bool bold = false) {
    QFont font("DejaVu Sans");
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

QColor ColorOf(std::uint32_t rgb) {
    return QColor::fromRgb(static_cast<QRgb>(0xFF000000u | rgb));
}

void DrawScales(QPainter& painter, int map) {
    const int left = MapLeft[static_cast<std::size_t>(map)];
    painter.setFont(PictureFont(9));
    // Engine speed along x: a mark every two rows (1000 r/min), labelled every four.
    for (int a = 0; a <= views::MapRows; a += 2) {
        const int x = a == views::MapRows ? left + MapWidth : views::CellPlaceOf(map, a, 0).X;
        painter.drawLine(x, MapBottom, x, MapBottom + 3);
        if (a % 4 == 0) {
            painter.drawText(QRect(x - 15, MapBottom + 4, 30, 11), Qt::AlignCenter,
                             QString::number(5 + a / 2));
        }
    }
    painter.drawText(QRect(left, MapBottom + 15, MapWidth, 12), Qt::AlignCenter, "Ne[x1000r/min]");
    // Throttle upwards: a mark every two columns (10 %), labelled every four.
    for (int b = 0; b <= views::MapColumns; b += 2) {
        const int y = b == views::MapColumns ? MapTop : views::CellPlaceOf(map, 0, b).Y + CellSize;
        painter.drawLine(left - 3, y, left, y);
        if (b % 4 == 0) {
            painter.drawText(QRect(left - 30, y - 6, 26, 12), Qt::AlignRight | Qt::AlignVCenter,
                             QString::number(5 * b));
        }
    }
    painter.drawText(QRect(left - 30, MapTop - 26, 40, 12), Qt::AlignLeft, "TH[%]");
    painter.setFont(PictureFont(12, true));
    painter.drawText(QRect(left, MapTop - 28, MapWidth, 16), Qt::AlignCenter,
                     map == 0 ? "DETO1" : "DETO2");
}

void DrawGrid(QImage& picture, int map) {
    QPainter painter(&picture);
    const int left = MapLeft[static_cast<std::size_t>(map)];
    // The lines between cells are what the grid's ground shows through.
    painter.fillRect(QRect(left, MapTop, MapWidth, MapBottom - MapTop), QColor::fromRgb(GridLine));
    for (int a = 0; a < views::MapRows; ++a) {
        for (int b = 0; b < views::MapColumns; ++b) {
            const views::CellPlace cell = views::CellPlaceOf(map, a, b);
            painter.fillRect(QRect(cell.X, cell.Y, CellSize, CellSize), QColor::fromRgb(Paper));
        }
    }
    painter.setPen(QColor::fromRgb(Ink));
    painter.drawRect(QRect(left - 1, MapTop - 1, MapWidth + 1, MapBottom - MapTop + 1));
    DrawScales(painter, map);
}

void DrawStripLegend(QPainter& painter) {
    painter.drawImage(StripLeft, MapTop, DetonationColorStrip());
    painter.setPen(QColor::fromRgb(Ink));
    painter.drawRect(QRect(StripLeft - 1, MapTop - 1, CellSize + 1, StripHeight + 1));
    painter.setFont(PictureFont(8));
    for (int band = 0; band < BandCount; band += 2) {
        const int fromEmpty = BandCount - 1 - band;
        const QString text = fromEmpty == 0 ? QString("0")
                             : fromEmpty == BandCount - 1
                                 ? QString("46-")
                                 : QString("%1-%2").arg(fromEmpty * 5 - 4).arg(fromEmpty * 5);
        painter.drawText(QRect(StripLeft + 10, MapTop + band * CellSize - 2, 44, 11),
                         Qt::AlignLeft | Qt::AlignVCenter, text);
    }
    painter.drawText(QRect(StripLeft - 6, MapTop - 16, 50, 12), Qt::AlignLeft, "Count");
}

void DrawTable(QPainter& painter) {
    painter.setPen(QColor::fromRgb(Ink));
    painter.setFont(PictureFont(11));
    const auto caption = [&](int row, int column, const char* text) {
        painter.drawText(TableCell(row, column).adjusted(4, 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, text);
    };
    caption(0, 0, "Rundistance[km]");
    caption(0, 2, "Runtime");
    caption(1, 0, "Ne[r/min]");
    caption(1, 2, "TH[%]");
    caption(2, 1, "Part");
    caption(2, 2, "Total");
    caption(2, 3, "Total/km");
    caption(3, 0, "DETO1");
    caption(4, 0, "DETO2");
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 4; ++column) {
            painter.drawRect(TableCell(row, column).adjusted(0, 0, -1, -1));
        }
    }
}

// Fills the cells of one map from the strip.
void PaintCells(QPainter& painter, const QImage& strip, const views::DetonationMapState& state,
                int map) {
    const auto& counts = state.Counts[static_cast<std::size_t>(map)];
    for (int a = 0; a < views::MapRows; ++a) {
        for (int b = 0; b < views::MapColumns; ++b) {
            const views::CellPlace cell = views::CellPlaceOf(map, a, b);
            const int count = counts[static_cast<std::size_t>(a)][static_cast<std::size_t>(b)];
            painter.drawImage(cell.X, cell.Y, strip, 0, views::CountBandOf(count).Top, CellSize,
                              CellSize);
        }
    }
}

} // namespace

QString DetonationLabelName(DetonationLabel label) {
    static const std::array<const char*, DetonationLabelCount> names{
        "lblRunDis", "lblRunTime", "lblNe",     "lblTh",  "lblPart1",
        "lblPart2",  "lblTotal1",  "lblTotal2", "lblTK1", "lblTK2"};
    return names[static_cast<std::size_t>(label)];
}

QRect DetonationLabelRect(DetonationLabel label) {
    const auto inner = [](QRect cell) {
        return cell.adjusted(2, 1, -3, -2);
    };
    switch (label) {
    case DetonationLabel::RunDis:
        return inner(TableCell(0, 1));
    case DetonationLabel::RunTime:
        return inner(TableCell(0, 3));
    case DetonationLabel::Ne:
        return inner(TableCell(1, 1));
    case DetonationLabel::Th:
        return inner(TableCell(1, 3));
    case DetonationLabel::Part1:
        return inner(TableCell(3, 1));
    case DetonationLabel::Part2:
        return inner(TableCell(4, 1));
    case DetonationLabel::Total1:
        return inner(TableCell(3, 2));
    case DetonationLabel::Total2:
        return inner(TableCell(4, 2));
    case DetonationLabel::TK1:
        return inner(TableCell(3, 3));
    case DetonationLabel::TK2:
        return inner(TableCell(4, 3));
    }
    return {};
}

QString DetonationCoverName(DetonationCover cover, int map) {
    const char* kind = cover == DetonationCover::No    ? "ShpNo"
                       : cover == DetonationCover::Map ? "ShpMap"
                                                       : "ShpPart";
    return QString("%1%2").arg(kind).arg(map + 1);
}

QRect DetonationCoverRect(DetonationCover cover, int map) {
    const int left = MapLeft[static_cast<std::size_t>(map)];
    switch (cover) {
    case DetonationCover::No:
        return {left + 35, MapTop + 60, MapWidth - 70, 30};
    case DetonationCover::Map:
        return {left, MapTop, MapWidth, MapBottom - MapTop};
    case DetonationCover::Part:
        return TableCell(3 + map, 1).united(TableCell(3 + map, 3)).adjusted(1, 1, -2, -2);
    }
    return {};
}

QImage DetonationColorStrip() {
    QImage strip(CellSize, StripHeight, QImage::Format_RGB32);
    QPainter painter(&strip);
    for (int band = 0; band < BandCount; ++band) {
        const views::CountBand colour = views::BandAt(band);
        painter.fillRect(QRect(0, colour.Top, CellSize, CellSize), ColorOf(colour.Rgb));
    }
    return strip;
}

QImage DetonationBackground() {
    QImage picture(views::PictureWidth, views::PictureHeight, QImage::Format_RGB32);
    picture.fill(Face);
    for (int map = 0; map < MapCount; ++map) {
        DrawGrid(picture, map);
    }
    QPainter painter(&picture);
    painter.setPen(QColor::fromRgb(Ink));
    painter.setFont(PictureFont(16, true));
    painter.drawText(QRect(0, 6, views::PictureWidth, 24), Qt::AlignCenter, "DETONATION MAP");
    DrawStripLegend(painter);
    DrawTable(painter);
    return picture;
}

QImage DetonationPicture(const views::DetonationMapState& state) {
    QImage picture = DetonationBackground();
    const QImage strip = DetonationColorStrip();
    QPainter painter(&picture);
    for (int map = 0; map < MapCount; ++map) {
        if (state.Present[static_cast<std::size_t>(map)]) {
            PaintCells(painter, strip, state, map);
        }
    }
    // The band of the largest count, so that the eye goes to the hottest cells' colour.
    const int largest = views::LargestCount(state);
    const int top = MapTop + views::CountBandOf(largest).Top;
    painter.setPen(QColor::fromRgb(Ink));
    painter.setBrush(QColor::fromRgb(Ink));
    const std::array<QPoint, 3> arrow{QPoint(StripLeft - 2, top + 3), QPoint(StripLeft - 7, top),
                                      QPoint(StripLeft - 7, top + 6)};
    painter.drawPolygon(arrow.data(), static_cast<int>(arrow.size()));
    painter.setFont(PictureFont(8));
    painter.drawText(QRect(StripLeft - 8, MapTop + StripHeight + 4, 56, 11), Qt::AlignLeft,
                     QString("max %1").arg(largest));
    return picture;
}

std::array<QString, DetonationLabelCount>
DetonationTexts(const views::DetonationMapState& state,
                const std::optional<views::DetonationReadOut>& readOut) {
    const views::DetonationLabels labels = views::LabelsOf(state);
    const auto text = [](const std::string& value) {
        return QString::fromStdString(value);
    };
    std::array<QString, DetonationLabelCount> texts;
    const auto set = [&texts](DetonationLabel label, QString value) {
        texts[static_cast<std::size_t>(label)] = std::move(value);
    };
    set(DetonationLabel::RunDis, text(labels.RunDistance));
    set(DetonationLabel::RunTime, text(labels.RunTime));
    set(DetonationLabel::Total1, text(labels.Total[0]));
    set(DetonationLabel::Total2, text(labels.Total[1]));
    set(DetonationLabel::TK1, text(labels.PerKm[0]));
    set(DetonationLabel::TK2, text(labels.PerKm[1]));
    if (readOut) {
        set(DetonationLabel::Ne, text(readOut->Ne));
        set(DetonationLabel::Th, text(readOut->Th));
        set(DetonationLabel::Part1, text(readOut->Part[0].value_or("")));
        set(DetonationLabel::Part2, text(readOut->Part[1].value_or("")));
    }
    return texts;
}

QImage DetonationPictureWithTexts(const views::DetonationMapState& state,
                                  const std::optional<views::DetonationReadOut>& readOut) {
    QImage picture = DetonationPicture(state);
    QPainter painter(&picture);
    painter.setPen(QColor::fromRgb(Ink));
    painter.setFont(PictureFont(11));
    const auto texts = DetonationTexts(state, readOut);
    for (int label = 0; label < DetonationLabelCount; ++label) {
        painter.drawText(DetonationLabelRect(static_cast<DetonationLabel>(label)),
                         Qt::AlignRight | Qt::AlignVCenter, texts[static_cast<std::size_t>(label)]);
    }
    for (int map = 0; map < MapCount; ++map) {
        if (state.Present[static_cast<std::size_t>(map)]) {
            continue;
        }
        painter.fillRect(DetonationCoverRect(DetonationCover::Map, map), QColor::fromRgb(Face));
        painter.fillRect(DetonationCoverRect(DetonationCover::Part, map), QColor::fromRgb(Face));
        const QRect notice = DetonationCoverRect(DetonationCover::No, map);
        painter.fillRect(notice, QColor::fromRgb(Paper));
        painter.drawRect(notice.adjusted(0, 0, -1, -1));
        painter.drawText(notice, Qt::AlignCenter, DetonationNoDataText);
    }
    return picture;
}

} // namespace torvane::render
