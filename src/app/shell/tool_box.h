#pragma once
// The toolbox: a small tool window whose options choose what the left mouse button does in every
// graph window (ToolMode) and whether the layers move together (LinkLayers). Both values are the
// application's, shared by all windows.

#include "layout/layout_file.h"

#include <QSize>
#include <QWidget>

class QButtonGroup;

namespace torvane::app {

struct ToolSettings {
    int ToolMode = 0;   // 0 drag, 1 scroll, 2/3 time axis, 4/5 item axis, 6 text, 7 delta time
    int LinkLayers = 0; // 0 each layer moves alone, 1 all layers move together
};

// The position is kept in twips, as the layout file holds it.
inline constexpr int TwipsPerPixel = 15;

// Keeps the toolbox on the screen: left at most width − 1200 twips, top at most height − 3200.
layout::ToolBoxPlace LimitToScreen(layout::ToolBoxPlace place, QSize screenPixels);

class ToolBox : public QWidget {
    Q_OBJECT
public:
    ToolBox(ToolSettings& settings, QWidget* owner);

signals:
    // An option was chosen; the owner gives the focus back to its active window.
    void SettingsChanged();
    // The toolbox is closing, from its own window or its menu entry, and still stands where the
    // operator left it.
    void Closing();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QButtonGroup* AddOptions(const char* name, const std::vector<const char*>& tips, int chosen);

    ToolSettings& settings_;
};

} // namespace torvane::app
