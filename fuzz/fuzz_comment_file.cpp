// libFuzzer target of the comment side file: the input is RUN.rlg.comments, decoded as text and
// read as a window reads it when it opens RUN.rlg (a damaged one is set aside).
//
// Beyond the sanitizers: whatever decodes is written back to the same text and decodes to the
// same comments, and a file that is read leaves the window with at most the comments it held.

#include "fuzz_workspace.h"

#include "graph/comment_list.h"
#include "load/comment_file.h"
#include "shell/message_sink.h"

#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace torvane;
    static const fuzz::Workspace work("fuzz-comments");
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    std::vector<graph::CommentRecord> comments;
    load::CommentFileDamage damage;
    if (load::DecodeCommentFile(text, comments, damage)) {
        const std::string written = load::EncodeCommentFile(comments);
        std::vector<graph::CommentRecord> again;
        fuzz::Require(load::DecodeCommentFile(written, again, damage), "what is written reads");
        fuzz::Require(again.size() == comments.size(), "every comment comes back");
        for (std::size_t i = 0; i < again.size(); ++i) {
            fuzz::Require(graph::SameComment(again[i], comments[i]), "each as it was");
        }
    } else {
        fuzz::Require(damage.Line >= 1 && !damage.Reason.empty(), "damage names its line");
    }

    const auto run = work.Root() / "RUN.rlg";
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(work.Root(), ignored)) {
        std::filesystem::remove(entry.path(), ignored);
    }
    fuzz::WriteInput(load::CommentFilePath(run), {data, size});
    graph::GraphWindowState state;
    state.Layers.Layer[0].FilePath = run;
    shell::RecordingSink sink;
    load::ReadLayerComments(state, 0, sink);
    fuzz::Require(graph::LayerComments(state.Comments, 0).size() == comments.size(),
                  "a window holds exactly the comments of a file that decodes");
    return 0;
}
