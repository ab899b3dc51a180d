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

class QLabel;
class QPushButton;

namespace torvane::app {

class FileCaptionBox;
class GraphTools;
class GraphView;
class ItemRowControl;
class ScrollStripView;
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
    // mnuSave: the save dialog, then the main file kept under a logging-file name or its items
    // written as CSV under any other.
    void Save();
    // The question before the window goes, about a downloaded file not saved yet; false when
    // the operator cancelled and the window stays open.
    bool QueryUnload();
    // Gives up the window's number and streams without asking: the window whose load failed, or
    // one whose question has been answered already.
    void Discard();
    // The window became the active one.
    void Activated();
    // A click in the lap list: the active layer jumps to the start of lap `lapNo` (0 the start
    // of the file) and the picture and read-out follow; a picture that cannot be drawn leaves
    // the scroll box and the read-out where they were (false).
    bool MoveLapTime(int lapNo);
    // mnuLayout(n) with the store's record `index`, and mnuLayoutDef.
    bool ApplyStoredLayout(int index);
    void ApplyDefaultLayout();
    // mnuScrollItem(item): the scroll strip follows slot 0 (Ne), 1 (TH) or 2 (VFW).
    void ChooseScrollItem(int item);
    // mnuCalcu: the formula dialog for the active layer; a computed item it makes joins the
    // layer, or takes the place of the one of the same name, and the window shows it.
    void FunctionCalculation();
    // The item commands: mnuDisp, mnuLine and mnuGrid through their dialogs, mnuAlign and
    // mnuMove at once.
    void ChooseDisplayItems();
    void ChooseLineKind();
    void SetUpGrid();
    void AlignLayers();
    void MoveCenter();

    // WindowView: the widget steps of loading.
    bool ShowLayerPanel(int layer) override;
    void CloseLayerPanel(int layer) override;
    bool SelectLayer(int layer) override;
    bool DrawScales() override;
    bool RedrawGraph() override;
    void DispValues(bool recalculateCursor) override;

signals:
    // The state that the window's menu entries follow has changed.
    void MenusChanged();
    // A right press asks for the popup mnuVisible with these entries as they stand while open.
    void PopupRequested(const std::vector<graph::MenuEntryState>& entries);
    // A layer was made active: the lap list, if open, shows it.
    void LayerSelected();
    // This window was the last one: the lap list goes with it.
    void LastWindowUnloaded();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ApplyGeometry();
    // The strip drawn again for the active layer: the box stays where it stood, or, for a new
    // size, a layout or the first file, is placed again for what the graph shows.
    enum class StripBox { Kept, Placed };
    void ApplyScrollStrip(StripBox box);
    void SyncPanel();
    void PressPanel(graph::PanelControl control, Qt::MouseButton button);
    void Unload();

    GraphWindowContext& context_;
    graph::GraphWindowState state_;
    bool unloaded_ = false;

    QLabel* title_;          // lblTm
    GraphView* graph_;       // picGraph
    ScrollStripView* strip_; // picScroll, with picBox
    QPushButton* moveLeft_;  // cmdMove(0)
    QPushButton* moveRight_; // cmdMove(1)
    TitleItem* scrollTitle_; // ucnScroll
    GraphTools* tools_;
    std::map<int, FileCaptionBox*> files_; // chkFile by layer
    std::map<int, ItemRowControl*> rows_;  // chkItem by control index
};

} // namespace torvane::app
