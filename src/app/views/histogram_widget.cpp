#include "views/histogram_widget.h"

#include "output/hard_copy.h"
#include "render/histogram_picture.h"
#include "shell/help_window.h"
#include "views/histogram_range_dialog.h"

#include <QLabel>
#include <QLayout>
#include <QMenuBar>
#include <QMouseEvent>

namespace torvane::app {
namespace geometry = views::histogram_geometry;

HistogramWindow::HistogramWindow(shell::MessageSink& sink, QWidget* owner)
    : QMainWindow(owner, Qt::Window)
    , sink_(sink)
    , picture_(new QLabel(this))
    , data_(new QLabel(picture_)) {
    setObjectName("frmTLM0040");
    setWindowTitle("HISTOGRAM");
    setAttribute(Qt::WA_DeleteOnClose);

    QMenu* function = menuBar()->addMenu("Function(&F)");
    function->setObjectName("mnuFnc");
    QAction* print = function->addAction("Print(&P)");
    print->setObjectName("mnuPrint");
    // The whole window is the picture: nothing of its frame is cut.
    connect(print, &QAction::triggered, this, [this] { PrintWindow(*this, -1); });
    QAction* close = function->addAction("Close(&C)");
    close->setObjectName("mnuClose");
    connect(close, &QAction::triggered, this, &QWidget::close);
    QMenu* view = menuBar()->addMenu("View(&V)");
    view->setObjectName("mnuView");
    th_ = view->addAction("TH");
    th_->setObjectName("mnuTh");
    th_->setCheckable(true);
    connect(th_, &QAction::triggered, this, &HistogramWindow::ShowTh);
    ne_ = view->addAction("Ne");
    ne_->setObjectName("mnuNe");
    ne_->setCheckable(true);
    connect(ne_, &QAction::triggered, this, &HistogramWindow::ChooseNe);

    picture_->setObjectName("picHist");
    picture_->setFixedSize(geometry::PictureWidth, geometry::PictureHeight);
    picture_->installEventFilter(this);
    data_->setObjectName("lblData");
    data_->setAlignment(Qt::AlignCenter);
    data_->setStyleSheet("background: #ffffe1; border: 1px solid black; padding: 1px;");
    data_->hide();
    setCentralWidget(picture_);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    AnswerHelpKey(this, "histogram.html");
}

HistogramWindow::~HistogramWindow() {
    views::CloseHistogram(state_);
}

bool HistogramWindow::Load(const views::HistogramRequest& request) {
    const bool opened = views::OpenHistogram(state_, request, sink_);
    th_->setEnabled(state_.ThEnabled);
    ne_->setEnabled(state_.NeEnabled);
    if (opened) {
        ShowShownView();
    }
    return opened;
}

void HistogramWindow::ShowTh() {
    views::ShowThView(state_);
    ShowShownView();
}

void HistogramWindow::ChooseNe() {
    NeRangeDialog dialog(state_.Range, sink_, this);
    if (dialog.exec() != QDialog::Accepted || !dialog.Range()) {
        ShowShownView(); // the entry's check goes back to what is shown
        return;
    }
    ShowNe(*dialog.Range());
}

void HistogramWindow::ShowNe(views::NeRange range) {
    if (!views::ShowNeRange(state_, range, sink_)) {
        close();
        return;
    }
    ShowShownView();
}

void HistogramWindow::ShowShownView() {
    const views::HistogramView* view = views::ShownView(state_);
    th_->setChecked(state_.Shown == views::HistogramKind::Th);
    ne_->setChecked(state_.Shown == views::HistogramKind::Ne);
    if (view != nullptr) {
        picture_->setPixmap(QPixmap::fromImage(render::DrawHistogramPicture(*view)));
    }
}

bool HistogramWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != picture_) {
        return QMainWindow::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->buttons() & Qt::LeftButton) {
            ReadOut(mouse->position().toPoint());
        }
        return true;
    }
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            data_->clear();
            data_->hide();
        }
        return true;
    default:
        return QMainWindow::eventFilter(watched, event);
    }
}

void HistogramWindow::ReadOut(QPoint at) {
    const views::HistogramView* view = views::ShownView(state_);
    const auto text = view != nullptr ? views::ReadOutAt(*view, at.x(), at.y()) : std::nullopt;
    if (!text) {
        return;
    }
    data_->setText(QString::fromStdString(*text));
    data_->adjustSize();
    // Centred over the mouse, standing on it.
    data_->move(at.x() - data_->width() / 2, at.y() - data_->height());
    data_->show();
    data_->raise();
}

HistogramWindow* OpenHistogramWindow(const views::HistogramRequest& request,
                                     shell::MessageSink& sink, QWidget* owner) {
    auto* window = new HistogramWindow(sink, owner);
    if (!window->Load(request)) {
        delete window;
        return nullptr;
    }
    window->show();
    return window;
}

} // namespace torvane::app
