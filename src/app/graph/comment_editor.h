#pragma once
// The text tool's widgets over a graph window's picture: the leader pulled from a trace to where
// the text will stand (tmrComment follows the mouse, the picture shows the leader as a rubber
// line) and txtComment, the edit box in which a comment is typed or changed. Core's comment tool
// decides everything; this shows what it says and keeps a layer's side file up to date.

#include "graph/comment_tool.h"
#include "graph/graph_picture.h"
#include "graph/hit_test.h"
#include "graph/window_state.h"
#include "shell/message_sink.h"

#include <QObject>
#include <QPoint>

#include <functional>

class QLineEdit;
class QTimer;

namespace torvane::app {

class CommentEditor : public QObject {
    Q_OBJECT
public:
    // `mouse` tells where the mouse is over the picture, for the leader's end.
    CommentEditor(graph::GraphWindowState& state, GraphPicture& picture, shell::MessageSink& sink,
                  std::function<QPoint()> mouse, QObject* parent = nullptr);

    // A press of the text tool on a trace starts the leader there.
    void BeginLeader(graph::ItemRef item, QPoint at);
    // The release: the edit box opens at the leader's end, if it lies where a text may stand.
    void EndLeader();
    // A double click of the text tool: the comment whose text is there opens for editing.
    void BeginEdit(QPoint at);
    // Ends the edit box, if open, as the key or the loss of focus says.
    void EndEdit(graph::CommentEditKey key);

    // txtComment is open.
    bool Editing() const;

signals:
    // A comment was added, changed or removed: the picture is to be rebuilt.
    void CommentsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FollowMouse();
    void OpenBox(const graph::CommentEditBox& box);
    graph::PictureSize PictureSize() const;

    graph::GraphWindowState& state_;
    GraphPicture& picture_;
    shell::MessageSink& sink_;
    std::function<QPoint()> mouse_;
    QLineEdit* txtComment_;
    QTimer* tmrComment_;
};

} // namespace torvane::app
