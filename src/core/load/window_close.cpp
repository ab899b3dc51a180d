#include "load/window_close.h"

#include "load/comment_file.h"
#include "load/keep_logging_file.h"
#include "load/window_layout.h"
#include "shell/temp_files.h"

#include <system_error>

namespace torvane::load {
namespace fs = std::filesystem;

bool QueryUnload(const graph::GraphWindowState& files, shell::WindowRegistry& registry,
                 shell::MessageSink& sink, const ChooseSavePath& chooseSavePath) {
    const int window = files.Layers.WindowNumber;
    if (registry.GetLogger(window) != 1) {
        // A file from the disk is saved already.
        return true;
    }
    const fs::path& downloaded = files.Layers.Layer[0].FilePath;
    std::error_code error;
    if (!fs::exists(downloaded, error)) {
        return true;
    }
    const int answer = shell::ShowMessage(sink, NotSavedMessage, shell::buttons::YesNoCancel,
                                          shell::icons::Information);
    if (answer == shell::answers::Cancel) {
        return false;
    }
    if (answer == shell::answers::Yes) {
        const std::optional<fs::path> target = chooseSavePath ? chooseSavePath() : std::nullopt;
        // Cancelled, or saved onto itself: the window closes and the file stays where it is.
        if (!target || target->native() == downloaded.native()) {
            return true;
        }
        if (!CopyLoggingFile(downloaded, *target, sink)) {
            return true;
        }
        WriteCommentFile(WindowFileComments(files, downloaded), *target, sink);
        DeleteLoggingFile(downloaded, sink);
    } else if (answer == shell::answers::No) {
        DeleteLoggingFile(downloaded, sink);
    } else {
        // No other answer is offered; whatever it was, nothing is lost.
        return true;
    }
    registry.SetLogger(window, 0);
    return true;
}

WindowUnloaded UnloadWindow(const graph::GraphWindowState& files, shell::WindowRegistry& registry,
                            layout::LayoutStore& store, const layout::ToolBoxPlace& toolBox) {
    const int window = files.Layers.WindowNumber;
    // Number 0 is never handed out: such a window was never registered and deployed nothing.
    if (window > 0) {
        registry.DeleteFrom(window);
        shell::DeleteTempFiles(files.Layers.TempDir, window);
    }
    if (files.SingleFileState == graph::SingleFileState::Loaded) {
        KeepAsLastDisplay(files, store);
    }
    WindowUnloaded result;
    if (!registry.AnyFroms()) {
        store.SaveLastLayout(toolBox);
        result.LastWindow = true;
    }
    return result;
}

} // namespace torvane::load
