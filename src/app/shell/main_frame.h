#pragma once
// The multi-document frame: the program's menu bar and the area where graph windows open.
// Entries whose windows do not exist yet are present and disabled, so the menu a race engineer
// sees is the whole one from the start.

#include "graph/window_menus.h"
#include "shell/tool_box.h"

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <QSet>

#include <filesystem>
#include <functional>
#include <vector>

class QAction;
class QMdiArea;
class QMdiSubWindow;

namespace torvane::app {

class DetonationWindow;
struct DetonationContext;
class GraphWindow;
struct GraphWindowContext;
class LapListToggle;

// Where the file of a new graph window comes from.
enum class LoggingFileSource {
    Chosen,     // the operator chooses it
    Downloaded, // from the logger
    Given,      // the path passed along (command line, drop, another instance)
};

class MainFrame : public QMainWindow {
    Q_OBJECT
public:
    explicit MainFrame(QWidget* parent = nullptr);
    ~MainFrame() override;
    MainFrame(const MainFrame&) = delete;
    MainFrame& operator=(const MainFrame&) = delete;

    // The menu entry (or submenu) of that object name; null for a name the frame does not have.
    QAction* Action(const QString& name) const { return actions_.value(name); }
    QMdiArea* Area() const { return area_; }

    // Gives the frame what its graph windows work with; the file commands work from then on.
    void Attach(GraphWindowContext& context);

    // Opens a logging file in a new graph window after the memory check. Null when no window
    // opened.
    GraphWindow* OpenLoggingWindow(LoggingFileSource source,
                                   const std::filesystem::path& path = {});
    // The steps after the file is known: a numbered window, the load, and the window removed
    // again when the load fails. A file from the logger is marked as not saved yet, whether it
    // loaded or not.
    GraphWindow* ShowLoggingFile(const std::filesystem::path& path, bool fromLogger);

    // Gives the frame what the detonation map windows work with; mnuDspDeto(1..3) work from
    // then on (the logger's entry only with a driver).
    void AttachDetonation(DetonationContext& context);
    // A map window on a .dto file handed to the program (command line, drop, another
    // instance). Null when the file was refused.
    DetonationWindow* OpenDetonationFile(const std::filesystem::path& path);
    QList<DetonationWindow*> DetonationWindows() const;

    // The toolbox: shown (mnuToolBox checked) or not, and where it stands, in twips.
    void ShowToolBox();
    void HideToolBox();
    void SetToolBoxPlace(const layout::ToolBoxPlace& place);
    layout::ToolBoxPlace ToolBoxPlace() const;
    ToolSettings& Tools() { return tools_; }

    // The graph window that the commands act on; null when none is open.
    GraphWindow* ActiveGraphWindow() const;
    QList<GraphWindow*> GraphWindows() const;
    // The number of the window that was active when the frame was asked to close; -1 when none
    // was open.
    int ActiveWindowNumber() const { return activeWindowNumber_; }

    // Captions mnuLayout(1..10) with the names of the saved layouts and shows only the named ones.
    void RefreshLayoutMenu();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildMenu();
    void WireHandlers();
    void Wire(const char* name, void (MainFrame::*handler)());
    void End();
    void ShowAbout();
    void ShowHelp();
    // F1: the page of the window that holds the focus.
    void AnswerHelp();
    void FileOpen();
    void OpenFromLogger();
    void ShowSettingWindow();
    void ShowMonitorWindow();
    void StepAsideWhile(const std::function<void()>& window);
    // The toolbox hidden while work runs, and shown again after it if it was shown.
    void WithToolBoxAway(const std::function<void()>& work);
    void OpenLayer();
    // mnuPrint: the active graph window as a hard copy, the toolbox out of the way meanwhile.
    void Print();
    void FileClose();
    void SaveLayout();
    void ApplyStoredLayout(int index);
    void ApplyDefaultLayout();
    void WindowActivated(QMdiSubWindow* window);
    // Enables the entries that follow the active graph window's state; an entry without its
    // command stays disabled.
    void ApplyWindowMenus();
    void SetEntry(const QString& name, bool enabled, bool visible = true);
    void SetEnabled(const QString& name, bool enabled);
    void ShowPopup(const std::vector<graph::MenuEntryState>& entries);
    void ToggleToolBox();
    void KeepToolBoxPlace();
    void ToggleLapList();
    void ShowDetonation(int index);
    void OpenHistogram();

    QMdiArea* area_;
    QHash<QString, QAction*> actions_;
    QSet<QString> wired_;
    GraphWindowContext* context_ = nullptr;
    DetonationContext* detonation_ = nullptr;
    ToolSettings tools_;
    QPointer<ToolBox> toolBox_;
    layout::ToolBoxPlace toolBoxPlace_;
    LapListToggle* lapList_;
    int activeWindowNumber_ = -1;
};

} // namespace torvane::app
