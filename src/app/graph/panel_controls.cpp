#include "graph/panel_controls.h"

#include <QFrame>
#include <QLabel>
#include <QMouseEvent>

namespace torvane::app {
namespace {

constexpr int LineBarLeft = 2;
constexpr int LineBarWidth = 12;
constexpr int NameLeft = LineBarLeft + LineBarWidth + 3;
constexpr int NameWidth = 48;

void Paint(QWidget& widget, const graph::MarkColors& colors) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, ToQColor(colors.Back));
    palette.setColor(QPalette::WindowText, ToQColor(colors.Text));
    widget.setPalette(palette);
}

QString Text(const std::string& text) {
    return QString::fromStdString(text);
}

// The panel's small fixed-size text: a row is 15 pixels high.
QFont PanelFont(const QWidget& widget, bool italic) {
    QFont font = widget.font();
    font.setPixelSize(11);
    font.setItalic(italic);
    return font;
}

} // namespace

QColor ToQColor(std::uint32_t value) {
    return QColor(static_cast<int>(value & 0xFF), static_cast<int>((value >> 8) & 0xFF),
                  static_cast<int>((value >> 16) & 0xFF));
}

FileCaptionBox::FileCaptionBox(QWidget* parent)
    : QWidget(parent)
    , label_(new QLabel(this)) {
    setAutoFillBackground(true);
    label_->setFont(PanelFont(*this, false));
    label_->move(4, 0);
    // A press on the label is a press on the control.
    label_->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void FileCaptionBox::Show(const graph::FileCaption& caption, int width) {
    label_->setText(Text(caption.Caption));
    setGeometry(0, caption.Top, width, graph::FileCaptionHeight);
    label_->resize(width - 4, graph::FileCaptionHeight);
    Paint(*this, graph::FileCaptionColors(caption.CheckMark));
}

QString FileCaptionBox::Caption() const {
    return label_->text();
}

void FileCaptionBox::mousePressEvent(QMouseEvent* event) {
    emit Pressed(event->button());
}

ItemRowControl::ItemRowControl(QWidget* parent)
    : QWidget(parent)
    , line_(new QFrame(this))
    , name_(new QLabel(this))
    , value_(new QLabel(this)) {
    setAutoFillBackground(true);
    line_->setObjectName("shpLine");
    line_->setAutoFillBackground(true);
    name_->setObjectName("lblName");
    value_->setObjectName("lblValue");
    value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (QWidget* child : {static_cast<QWidget*>(line_), static_cast<QWidget*>(name_),
                           static_cast<QWidget*>(value_)}) {
        child->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
}

void ItemRowControl::Show(const graph::ItemRow& row, int width) {
    setGeometry(0, row.Top, width, graph::ItemRowHeight);
    const graph::MarkColors colors = graph::ItemRowColors(row.CheckMark);
    Paint(*this, colors);
    // The bar is filled with the text colour; its border carries the item's colour.
    line_->setGeometry(LineBarLeft, 3, LineBarWidth, graph::ItemRowHeight - 6);
    line_->setStyleSheet(QString("background-color: %1; border: 2px solid %2;")
                             .arg(ToQColor(colors.Text).name(), ToQColor(row.LineColor).name()));
    name_->setFont(PanelFont(*this, row.Italic));
    value_->setFont(PanelFont(*this, row.Italic));
    name_->setGeometry(NameLeft, 0, NameWidth, graph::ItemRowHeight);
    value_->setGeometry(NameLeft + NameWidth, 0, width - NameLeft - NameWidth - 2,
                        graph::ItemRowHeight);
    name_->setText(Text(row.Name));
    value_->setText(Text(row.ValueText));
}

QString ItemRowControl::Name() const {
    return name_->text();
}

QString ItemRowControl::ValueText() const {
    return value_->text();
}

void ItemRowControl::mousePressEvent(QMouseEvent* event) {
    emit Pressed(event->button());
}

TitleItem::TitleItem(QWidget* parent)
    : QWidget(parent)
    , line_(new QFrame(this))
    , title_(new QLabel(this)) {
    line_->setObjectName("shpLine");
    title_->setObjectName("lblTitle");
    title_->setFont(PanelFont(*this, false));
}

void TitleItem::Show(const QString& title, std::uint32_t lineColor) {
    const int barTop = height() / 2 - 2;
    line_->setGeometry(LineBarLeft, barTop, LineBarWidth, 4);
    line_->setStyleSheet(QString("background-color: %1;").arg(ToQColor(lineColor).name()));
    line_->setVisible(!title.isEmpty());
    title_->setGeometry(NameLeft, 0, width() - NameLeft, height());
    title_->setText(title);
}

QString TitleItem::Title() const {
    return title_->text();
}

} // namespace torvane::app
