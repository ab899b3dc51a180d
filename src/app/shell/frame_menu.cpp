#include "shell/frame_menu.h"

#include <array>

namespace torvane::app {

std::span<const MenuEntry> FrameMenu() {
    static constexpr std::array entries{
        MenuEntry{"mnuFile", "File(&F)", 0},
        MenuEntry{"mnuOpen", "Open(&O)", 1},
        MenuEntry{"mnuFileOpen", "FileOpen(&F)", 2},
        MenuEntry{"mnuOpenLayer", "Layer(&L)", 2},
        MenuEntry{"mnuClose", "Close(&C)", 1},
        MenuEntry{"mnuFileClose", "FileClose(&F)", 2},
        MenuEntry{"mnuCloseLayer", "Layer(&L)", 2},
        MenuEntry{"mnuLogger", "Logger(&L)", 1},
        MenuEntry{"mnuSave", "Save(&S)", 1},
        MenuEntry{"mnuPrint", "Print(&P)", 1},
        MenuEntry{"mnuEnd", "End(&E)", 1},
        MenuEntry{"mnuVisible", "View(&V)", 0},
        MenuEntry{"mnuLaySave", "LayoutSave(&S)", 1},
        MenuEntry{"mnuLayReapp", "LayoutReappearance(&R)", 1},
        MenuEntry{"mnuLayoutDef", "Default", 2},
        // Captioned with the saved layouts' names when the menu is refreshed.
        MenuEntry{"mnuLayout1", "", 2},
        MenuEntry{"mnuLayout2", "", 2},
        MenuEntry{"mnuLayout3", "", 2},
        MenuEntry{"mnuLayout4", "", 2},
        MenuEntry{"mnuLayout5", "", 2},
        MenuEntry{"mnuLayout6", "", 2},
        MenuEntry{"mnuLayout7", "", 2},
        MenuEntry{"mnuLayout8", "", 2},
        MenuEntry{"mnuLayout9", "", 2},
        MenuEntry{"mnuLayout10", "", 2},
        MenuEntry{"mnuToolBox", "ToolBox(&O)", 1},
        MenuEntry{"mnuDisp", "DisplayItem(&D)", 1},
        MenuEntry{"mnuLine", "Line(&L)", 1},
        MenuEntry{"mnuGrid", "Grid(&G)", 1},
        MenuEntry{"mnuScroll", "ScrollBar", 1},
        MenuEntry{"mnuScrollItem0", "Ne", 2},
        MenuEntry{"mnuScrollItem1", "TH", 2},
        MenuEntry{"mnuScrollItem2", "VFW", 2},
        MenuEntry{"mnuAlign", "Alignment(&A)", 1},
        MenuEntry{"mnuMove", "MoveCenter(&M)", 1},
        MenuEntry{"mnuConft", "Configuration(&C)", 0},
        MenuEntry{"mnuConf", "Configuration(&S)", 1},
        MenuEntry{"mnuTools", "Tool(&T)", 0},
        MenuEntry{"mnuLap", "Lap(&L)", 1},
        MenuEntry{"mnuDetonation", "Detonation(&D)", 1},
        MenuEntry{"mnuDspDeto1", "Logger(&L)", 2},
        MenuEntry{"mnuDspDeto2", "OpenFile(&O)", 2},
        MenuEntry{"mnuDspDeto3", "DetonationFile(&D)", 2},
        MenuEntry{"mnuGraph", "Histogram(&G)", 1},
        MenuEntry{"mnuHisto", "Histogram(&H)", 2},
        MenuEntry{"mnuCalcu", "FunctionCalculation", 1},
        MenuEntry{"mnuRTM", "RealTimeMonitor(&M)", 1},
        MenuEntry{"mnuMoniter", "RealTimeMonitor(&R)", 2},
        MenuEntry{"mnuHelp", "Help(&H)", 0},
        MenuEntry{"mnuHelpEx", "Help(&H)", 1},
        MenuEntry{"mnuInfo", "Infomation(&I)", 1},
    };
    return entries;
}

} // namespace torvane::app
