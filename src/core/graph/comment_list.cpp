#include "graph/comment_list.h"

#include <algorithm>

namespace torvane::graph {

std::size_t AddComment(CommentList& comments, CommentRecord comment) {
    comment.Free = 0;
    const auto free = std::find_if(comments.begin(), comments.end(),
                                   [](const CommentRecord& record) { return !record.InUse(); });
    if (free != comments.end()) {
        *free = std::move(comment);
        return static_cast<std::size_t>(free - comments.begin());
    }
    comments.push_back(std::move(comment));
    return comments.size() - 1;
}

void FreeLayerComments(CommentList& comments, int layer) {
    for (CommentRecord& record : comments) {
        if (record.InUse() && record.Layer == layer) {
            record = CommentRecord{};
        }
    }
}

bool SameComment(const CommentRecord& a, const CommentRecord& b) {
    return a.OffsetX == b.OffsetX && a.OffsetY == b.OffsetY && a.Channel == b.Channel &&
           a.Slot == b.Slot && a.Time == b.Time && a.Value == b.Value && a.Text == b.Text;
}

std::vector<CommentRecord> LayerComments(const CommentList& comments, int layer) {
    std::vector<CommentRecord> found;
    std::copy_if(
        comments.begin(), comments.end(), std::back_inserter(found),
        [layer](const CommentRecord& record) { return record.InUse() && record.Layer == layer; });
    return found;
}

} // namespace torvane::graph
