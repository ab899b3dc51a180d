#include "graph/comment_editor.h"

#include "graph/comment_list.h"
#include "load/comment_file.h"
#include "render/graph_renderer.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

namespace torvane::app {
namespace {

constexpr int LeaderTickMs = 100;

QPoint ToQPoint(graph::PixelPoint point) {
    return {point.X, point.Y};
}

graph::PixelPoint ToPixel(QPoint point) {
    return {point.x(), point.y()};
}

} // namespace

CommentEditor::CommentEditor(graph::GraphWindowState& state, GraphPicture& picture,
                             shell::MessageSink& sink, std::function<QPoint()> mouse,
                             QObject* parent)
    : QObject(parent)
    , state_(state)
    , picture_(picture)
    , sink_(sink)
    , mouse_(std::move(mouse))
    , txtComment_(new QLineEdit(picture.Widget()))
    , tmrComment_(new QTimer(this)) {
    txtComment_->setObjectName("txtComment");
    txtComment_->setMaxLength(static_cast<int>(graph::MaxCommentLength));
    txtComment_->setFont(render::GraphRenderer::PictureFont());
    // Room for the longest text; a double-byte text may still need scrolling within.
    const QString longest(static_cast<qsizetype>(graph::MaxCommentLength) + 1, QChar('0'));
    txtComment_->resize(txtComment_->fontMetrics().horizontalAdvance(longest) +
                            txtComment_->textMargins().left() + 8,
                        txtComment_->sizeHint().height());
    txtComment_->hide();
    txtComment_->installEventFilter(this);
    tmrComment_->setObjectName("tmrComment");
    tmrComment_->setInterval(LeaderTickMs);
    connect(tmrComment_, &QTimer::timeout, this, &CommentEditor::FollowMouse);
}

bool CommentEditor::Editing() const {
    return !txtComment_->isHidden();
}

graph::PictureSize CommentEditor::PictureSize() const {
    const QWidget* picture = picture_.Widget();
    return {picture->width(), picture->height()};
}

void CommentEditor::BeginLeader(graph::ItemRef item, QPoint at) {
    EndEdit(graph::CommentEditKey::FocusLost);
    graph::BeginCommentLeader(state_, item, ToPixel(at));
    picture_.ShowOverlayLine(QLine(at, at));
    tmrComment_->start();
}

void CommentEditor::FollowMouse() {
    if (!graph::MoveCommentLeader(state_, ToPixel(mouse_()))) {
        tmrComment_->stop();
        return;
    }
    picture_.ShowOverlayLine(QLine(ToQPoint(state_.Leader.Anchor), ToQPoint(state_.Leader.End)));
}

void CommentEditor::EndLeader() {
    // The release point is the leader's last end, whether or not the timer has seen it.
    graph::MoveCommentLeader(state_, ToPixel(mouse_()));
    tmrComment_->stop();
    picture_.ShowOverlayLine(std::nullopt);
    if (const auto box = graph::EndCommentLeader(state_, PictureSize())) {
        OpenBox(*box);
    }
}

void CommentEditor::BeginEdit(QPoint at) {
    if (const auto box = graph::BeginCommentEdit(state_, PictureSize(), ToPixel(at))) {
        OpenBox(*box);
    }
}

void CommentEditor::OpenBox(const graph::CommentEditBox& box) {
    txtComment_->setText(QString::fromStdString(box.Text));
    txtComment_->move(box.Left, box.TopFor(txtComment_->height()));
    txtComment_->show();
    txtComment_->raise();
    txtComment_->setFocus(Qt::OtherFocusReason);
}

void CommentEditor::EndEdit(graph::CommentEditKey key) {
    if (!Editing()) {
        return;
    }
    const graph::CommentEditEnd end =
        graph::EndCommentEdit(state_, key, txtComment_->text().toStdString());
    // Hidden before it is emptied: hiding takes the focus away, which must not end it again.
    txtComment_->hide();
    txtComment_->clear();
    if (end.Changed) {
        emit CommentsChanged();
        load::SaveLayerComments(state_, end.Layer, sink_);
    }
}

bool CommentEditor::eventFilter(QObject* watched, QEvent* event) {
    if (watched != txtComment_) {
        return QObject::eventFilter(watched, event);
    }
    if (event->type() == QEvent::FocusOut) {
        // Another program or a menu holding the keyboard for a while leaves the box as it is.
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            EndEdit(graph::CommentEditKey::FocusLost);
        }
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            EndEdit(graph::CommentEditKey::Enter);
            return true;
        }
        if (key == Qt::Key_Escape) {
            EndEdit(graph::CommentEditKey::Escape);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace torvane::app
