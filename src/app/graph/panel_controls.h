#pragma once
// The controls of a graph window's item panel: a layer's file caption (chkFile), an item's row
// with name, value and colour bar (chkItem), and the title of the scroll strip's item
// (ucnScroll). They show what the panel model says and report presses; they decide nothing.

#include "graph/item_panel.h"

#include <QColor>
#include <QWidget>

#include <cstdint>

class QFrame;
class QLabel;

namespace torvane::app {

// A colour of the program (0xBBGGRR) as Qt takes it.
QColor ToQColor(std::uint32_t value);

// chkFile(layer): the bare file name on a grey field, white on dark blue when marked.
class FileCaptionBox : public QWidget {
    Q_OBJECT
public:
    explicit FileCaptionBox(QWidget* parent = nullptr);
    void Show(const graph::FileCaption& caption, int width);
    QString Caption() const;

signals:
    void Pressed(Qt::MouseButton button);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    QLabel* label_;
};

// chkItem(n): the colour bar in the item's line colour, the name and the value at the cursor.
class ItemRowControl : public QWidget {
    Q_OBJECT
public:
    explicit ItemRowControl(QWidget* parent = nullptr);
    void Show(const graph::ItemRow& row, int width);
    QString Name() const;
    QString ValueText() const;

signals:
    void Pressed(Qt::MouseButton button);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    QFrame* line_;
    QLabel* name_;
    QLabel* value_;
};

// ucnScroll: the name of the item that the scroll strip follows, with its colour bar.
class TitleItem : public QWidget {
    Q_OBJECT
public:
    explicit TitleItem(QWidget* parent = nullptr);
    // An empty title names nothing: the strip follows no item.
    void Show(const QString& title, std::uint32_t lineColor);
    QString Title() const;

private:
    QFrame* line_;
    QLabel* title_;
};

} // namespace torvane::app
