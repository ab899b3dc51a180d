#include "views/detonation_windows.h"

#include "graph/window_state.h"
#include "shell/wait_cursor.h"
#include "views/detonation_layer.h"
#include "views/detonation_logger.h"

namespace torvane::app {

DetonationWindow* OpenDetonationWindow(DetonationContext& context, views::DetonationSource source,
                                       const std::filesystem::path& path, QWidget* parent) {
    auto* window = new DetonationWindow(context.Sink, context.ChooseDetonationSave, parent);
    if (!window->Load(source, path)) {
        // A work file that could not be read is no use to anyone either.
        if (source != views::DetonationSource::File) {
            std::error_code ignored;
            std::filesystem::remove(path, ignored);
        }
        delete window;
        return nullptr;
    }
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

DetonationWindow* ShowDetonation(DetonationContext& context, views::DetonationSource source,
                                 const graph::GraphWindowState* active, QWidget* parent) {
    if (!load::CheckMemory(context.Memory, context.Sink)) {
        return nullptr;
    }
    std::filesystem::path path;
    switch (source) {
    case views::DetonationSource::Logger: {
        if (context.Driver == nullptr) {
            return nullptr;
        }
        const WaitCursor hourglass;
        logger::LoggerLink link(*context.Driver, context.Sink);
        path = views::GetDetonationFromLogger(link, context.TempDir);
        break;
    }
    case views::DetonationSource::Layer:
        if (active == nullptr) {
            return nullptr;
        }
        {
            const WaitCursor hourglass;
            path = views::GetDetonationOfLayer(active->Layers, active->ActiveLayer, context.Sink);
        }
        break;
    case views::DetonationSource::File:
        if (context.ChooseDetonationFile) {
            path = context.ChooseDetonationFile(parent).value_or(std::filesystem::path{});
        }
        break;
    }
    if (path.empty()) {
        return nullptr;
    }
    return OpenDetonationWindow(context, source, path, parent);
}

} // namespace torvane::app
