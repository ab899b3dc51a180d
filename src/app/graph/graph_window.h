#pragma once
// frmTLM0100: one logging file, up to two files laid over it, and the item panel that names
// their items and shows their values at the cursor. The window mirrors the plain model of core
// (graph::GraphWindowState) into its controls and hands every decision to core's routines.

#include "graph/graph_window_context.h"
#include "graph/window_menus.h"
#include "graph/window_state.h"
#include "load/window_view.h"

#include <QWidget>

#include <filesystem>
#include <map>
#include <vector>

class QFrame;
class QLabel;
class QPushButton;

namespace torvane::app {

class FileCaptionBox;
class GraphView;
class ItemRowControl;
class PlainArea;
class TitleItem;

class GraphWindow : public QWidget, public load::WindowView {
    Q_OBJECT
public:
    // `number` is the window's number from the registry; it names the window's stream files.
    GraphWindow(GraphWindowContext& context, int number, QWidget* parent = nullptr);

    int Number() const { return state_.Layers.WindowNumber; }
    const graph::GraphWindowState& State() const { return state_; }
    graph::WindowMenuState Menus() const { return graph::MenuStateOf(state_); }

    // The window's main file; false, after telling the operator, when it cannot be shown.
    bool LoadLoggingFile(const std::filesystem::path& file);
    // mnuOpenLayer with the file already chosen, and mnuCloseLayer.
    bool OpenLayer(const std::filesystem::path& file);
    bool CloseLayer();
    // Gives up the window's number and streams without asking: the window whose load failed.
    void Discard();
    // The window became the active one.
    void Activated();

    // WindowView: the widget steps of loading.
    bool ShowLayerPanel(int layer) override;
    void CloseLayerPanel(int layer) override;
    bool SelectLayer(int layer) override;
    bool DrawScales() override;
    void RedrawGraph() override;
    void DispValues(bool recalculateCursor) override;

signals:
    // The state that the window's menu entries follow has changed.
    void MenusChanged();
    // A right press asks for the popup mnuVisible with these entries as they stand while open.
    void PopupRequested(const std::vector<graph::MenuEntryState>& entries);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ApplyGeometry();
    void ApplyScrollStrip();
    void SyncPanel();
    void PressPanel(graph::PanelControl control, Qt::MouseButton button);
    void PressGraph(Qt::MouseButton button, QPoint position);
    void Unload();

    GraphWindowContext& context_;
    graph::GraphWindowState state_;
    bool unloaded_ = false;

    QLabel* title_;                        // lblTm
    GraphView* graph_;                     // picGraph
    PlainArea* strip_;                     // picScroll
    QFrame* box_;                          // picBox
    QPushButton* moveLeft_;                // cmdMove(0)
    QPushButton* moveRight_;               // cmdMove(1)
    TitleItem* scrollTitle_;               // ucnScroll
    std::map<int, FileCaptionBox*> files_; // chkFile by layer
    std::map<int, ItemRowControl*> rows_;  // chkItem by control index
};

} // namespace torvane::app
