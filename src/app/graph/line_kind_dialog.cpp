#include "graph/line_kind_dialog.h"

#include "graph/panel_controls.h"
#include "shell/common.h"
#include "shell/help_window.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace torvane::app {
namespace {

QRect CellRect(items::PaletteCell cell) {
    return {cell.Column * items::PaletteCellWidth, cell.Row * items::PaletteCellHeight,
            items::PaletteCellWidth, items::PaletteCellHeight};
}

// One option group: its buttons named name0..name2, ids 1..3, the one of `value` checked (the
// first for a value that names none, so that OK always has one to give).
QButtonGroup* Options(const char* title, const char* name, const char* const (&labels)[3],
                      int value, QWidget* owner, QGridLayout* grid, int column) {
    auto* box = new QGroupBox(title, owner);
    auto* layout = new QVBoxLayout(box);
    auto* group = new QButtonGroup(owner);
    const int checked = value >= 1 && value <= 3 ? value : 1;
    for (int id = 1; id <= 3; ++id) {
        auto* option = new QRadioButton(labels[id - 1], box);
        option->setObjectName(QString("%1%2").arg(name).arg(id - 1));
        option->setChecked(id == checked);
        group->addButton(option, id);
        layout->addWidget(option);
    }
    grid->addWidget(box, 1, column);
    return group;
}

} // namespace

PaletteView::PaletteView(int color, QWidget* parent)
    : QWidget(parent)
    , palette_(color) {
    setObjectName("picColor");
    setFixedSize(items::PaletteWidth, items::PaletteHeight);
}

void PaletteView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (int index = 1; index <= items::PaletteColorCount; ++index) {
        painter.fillRect(CellRect(items::PaletteCellOf(index)), ToQColor(shell::ColorValue(index)));
    }
    // The frame: a black ring with a white ring inside it, seen on every colour of the palette.
    const QRect cell = CellRect(items::PaletteCellOf(palette_.Color()));
    painter.setPen(QPen(Qt::black, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(cell.adjusted(1, 1, -1, -1));
    painter.setPen(QPen(Qt::white, 1));
    painter.drawRect(cell.adjusted(2, 2, -3, -3));
}

void PaletteView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        PointAt(event->position().toPoint());
    }
}

void PaletteView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) {
        PointAt(event->position().toPoint());
    }
}

void PaletteView::PointAt(QPoint point) {
    if (palette_.PointAt(point.x(), point.y())) {
        update();
    }
}

LineKindDialog::LineKindDialog(const items::LineKind& start, QWidget* owner)
    : QDialog(owner)
    , palette_(new PaletteView(start.Color, this)) {
    setObjectName("frmTLM0013");
    setWindowTitle("Kind of line");
    auto* grid = new QGridLayout(this);
    grid->addWidget(palette_, 0, 0, 1, 2, Qt::AlignHCenter);
    thickness_ = Options("Thickness", "optPt", items::ThicknessLabels, start.Point, this, grid, 0);
    style_ = Options("Style", "optLine", items::StyleLabels, start.Line, this, grid, 1);

    auto* ok = new QPushButton("OK(&O)", this);
    ok->setObjectName("cmdOk");
    ok->setDefault(true);
    auto* cancel = new QPushButton("Cancel(&C)", this);
    cancel->setObjectName("cmdCancel");
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    grid->addWidget(ok, 2, 0);
    grid->addWidget(cancel, 2, 1);
    AnswerHelpKey(this, "items.html");
}

items::LineKind LineKindDialog::Kind() const {
    return {palette_->Color(), style_->checkedId(), thickness_->checkedId()};
}

} // namespace torvane::app
