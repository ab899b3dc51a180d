#include "cli/offscreen_gui.h"

#include <cstdlib>

namespace torvane::cli {

OffscreenGui::OffscreenGui(const std::filesystem::path& runtimeDir)
    : application_(Prepared(runtimeDir), argv_) {
}

int& OffscreenGui::Prepared(const std::filesystem::path& runtimeDir) {
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (std::getenv("XDG_RUNTIME_DIR") == nullptr) {
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtimeDir.string()));
    }
    // QGuiApplication keeps a reference to argc for its whole life.
    static int argc = 1;
    return argc;
}

} // namespace torvane::cli
