#include "views/detonation_window.h"

#include "output/hard_copy.h"
#include "render/detonation_picture.h"
#include "shell/help_window.h"

#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>

namespace torvane::app {
namespace {

using render::DetonationCover;
using render::DetonationLabel;

constexpr std::array<DetonationCover, 3> Covers{DetonationCover::No, DetonationCover::Map,
                                                DetonationCover::Part};

} // namespace

DetonationWindow::DetonationWindow(shell::MessageSink& sink, DetonationSaveChoice chooseSave,
                                   QWidget* parent)
    : QMainWindow(parent)
    , sink_(sink)
    , chooseSave_(std::move(chooseSave))
    , picDeto_(new QLabel(this)) {
    setObjectName("frmTLM0030");
    setWindowTitle("DETONATION MAP");
    setWindowFlag(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    picDeto_->setObjectName("picDeto");
    picDeto_->setFixedSize(views::PictureWidth, views::PictureHeight);
    picDeto_->installEventFilter(this);
    setCentralWidget(picDeto_);
    BuildMenu();
    BuildLabels();
    AnswerHelpKey(this, "detonation.html");
    setFixedSize(sizeHint());
}

DetonationWindow::~DetonationWindow() {
    // However the window goes, a work file made for it goes with it.
    if (loaded_) {
        views::ReleaseDetonationFile(state_);
    }
}

void DetonationWindow::BuildMenu() {
    QMenu* file = menuBar()->addMenu("File(&F)");
    file->setObjectName("mnuFile");
    QAction* save = file->addAction("Save(&S)");
    save->setObjectName("mnuSave");
    connect(save, &QAction::triggered, this, &DetonationWindow::Save);
    QAction* print = file->addAction("Print(&P)");
    print->setObjectName("mnuPrint");
    // The whole window is the picture: nothing of its frame is cut.
    connect(print, &QAction::triggered, this, [this] { PrintWindow(*this, -1); });
    QAction* close = file->addAction("Close(&C)");
    close->setObjectName("mnuClose");
    connect(close, &QAction::triggered, this, &QWidget::close);
}

void DetonationWindow::BuildLabels() {
    for (int i = 0; i < render::DetonationLabelCount; ++i) {
        const auto label = static_cast<DetonationLabel>(i);
        auto* text = new QLabel(picDeto_);
        text->setObjectName(render::DetonationLabelName(label));
        text->setGeometry(render::DetonationLabelRect(label));
        text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        labels_[static_cast<std::size_t>(i)] = text;
    }
    for (int map = 0; map < views::MapCount; ++map) {
        for (std::size_t c = 0; c < Covers.size(); ++c) {
            QLabel* cover = new QLabel(picDeto_);
            cover->setObjectName(render::DetonationCoverName(Covers[c], map));
            cover->setGeometry(render::DetonationCoverRect(Covers[c], map));
            cover->setAutoFillBackground(true);
            if (Covers[c] == DetonationCover::No) {
                cover->setText(render::DetonationNoDataText);
                cover->setAlignment(Qt::AlignCenter);
                cover->setFrameShape(QFrame::Box);
                cover->setStyleSheet("background: white; color: black;");
            } else {
                cover->setStyleSheet("background: #C0C0C0;");
            }
            cover->hide();
            covers_[static_cast<std::size_t>(map)][c] = cover;
        }
    }
    // The notice stands over its grid.
    for (auto& map : covers_) {
        map[0]->raise();
    }
}

bool DetonationWindow::Load(views::DetonationSource source, const std::filesystem::path& path) {
    for (QLabel* label : labels_) {
        label->clear();
    }
    for (auto& map : covers_) {
        for (QWidget* cover : map) {
            cover->hide();
        }
    }
    state_ = views::DetonationMapState{};
    state_.Source = source;
    state_.Path = path;
    loaded_ = views::ReadDetonationFile(state_, sink_);
    if (loaded_) {
        ShowState();
    }
    return loaded_;
}

void DetonationWindow::ShowState() {
    picture_ = render::DetonationPicture(state_);
    picDeto_->setPixmap(QPixmap::fromImage(picture_));
    const auto texts = render::DetonationTexts(state_, std::nullopt);
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        labels_[i]->setText(texts[i]);
    }
    for (std::size_t map = 0; map < views::MapCount; ++map) {
        for (QWidget* cover : covers_[map]) {
            cover->setVisible(!state_.Present[map]);
        }
    }
}

bool DetonationWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == picDeto_ && event->type() == QEvent::MouseButtonPress) {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (press->button() == Qt::LeftButton) {
            Press(press->position().toPoint());
        }
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void DetonationWindow::Press(QPoint at) {
    if (!loaded_) {
        return;
    }
    const auto readOut = views::ReadOutAt(state_, at.x(), at.y());
    if (!readOut) {
        return;
    }
    const auto label = [this](DetonationLabel which) {
        return labels_[static_cast<std::size_t>(which)];
    };
    for (std::size_t map = 0; map < views::MapCount; ++map) {
        if (readOut->Part[map]) {
            label(map == 0 ? DetonationLabel::Part1 : DetonationLabel::Part2)
                ->setText(QString::fromStdString(*readOut->Part[map]));
        }
    }
    label(DetonationLabel::Ne)->setText(QString::fromStdString(readOut->Ne));
    label(DetonationLabel::Th)->setText(QString::fromStdString(readOut->Th));
}

void DetonationWindow::Save() {
    if (!loaded_ || !chooseSave_) {
        return;
    }
    if (const auto file = chooseSave_(this)) {
        views::SaveDetonationFile(state_, *file, sink_);
    }
}

} // namespace torvane::app
