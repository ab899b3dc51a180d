#pragma once
// The frame's menu bar as data: every menu and entry with its object name and caption, in order.
// The frame builds its QMenuBar from this table, and tests read captions from the built menus.

#include <span>
#include <string_view>

namespace torvane::app {

struct MenuEntry {
    std::string_view Name;    // objectName of the QAction (or of the submenu's QMenu)
    std::string_view Caption; // with "&" before the mnemonic, as Qt takes it
    int Level = 1;            // 0 a menu of the bar, 1 an entry, 2 an entry of a submenu
};

// The bar in order: a level-0 row opens a menu, the rows after it fill it; a level-1 row
// followed by level-2 rows is a submenu.
std::span<const MenuEntry> FrameMenu();

} // namespace torvane::app
