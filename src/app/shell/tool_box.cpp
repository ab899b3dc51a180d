#include "shell/tool_box.h"

#include "shell/help_window.h"

#include <QButtonGroup>
#include <QFrame>
#include <QGridLayout>
#include <QToolButton>

#include <algorithm>
#include <vector>

namespace torvane::app {
namespace {

// Short marks on the buttons; the tool tips carry the program's names of the tools.
constexpr const char* ModeMarks[] = {"◆", "⇆", "↤↦", "↦↤", "⤒", "⤓", "T", "Δ"};
constexpr const char* LinkMarks[] = {"1", "∗"};

} // namespace

layout::ToolBoxPlace LimitToScreen(layout::ToolBoxPlace place, QSize screenPixels) {
    place.Left = std::min(place.Left, screenPixels.width() * TwipsPerPixel - 1200);
    place.Top = std::min(place.Top, screenPixels.height() * TwipsPerPixel - 3200);
    return place;
}

ToolBox::ToolBox(ToolSettings& settings, QWidget* owner)
    : QWidget(owner, Qt::Tool)
    , settings_(settings) {
    setObjectName("frmTLM0016");
    AnswerHelpKey(this, "toolbox.html");
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(3, 3, 3, 3);
    layout->setSpacing(2);

    QButtonGroup* modes = AddOptions("optMode",
                                     {"Drag & Drop", "Scroll", "Horizontal-axis reduction",
                                      "Horizontal-axis expansion", "Vertical-axis reduction",
                                      "Vertical-axis expansion", "Text", "Delta Time"},
                                     settings_.ToolMode);
    QButtonGroup* links = AddOptions(
        "optDisp", {"Each layer moves alone", "All layers move together"}, settings_.LinkLayers);
    for (QAbstractButton* button : modes->buttons()) {
        const int index = modes->id(button);
        button->setText(QString::fromUtf8(ModeMarks[index]));
        layout->addWidget(button, index / 2, index % 2);
    }
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    layout->addWidget(line, 4, 0, 1, 2);
    for (QAbstractButton* button : links->buttons()) {
        const int index = links->id(button);
        button->setText(QString::fromUtf8(LinkMarks[index]));
        layout->addWidget(button, 5, index);
    }

    // Queued: the pressed button finishes its click and shows its new state before the focus
    // goes back to the graph window.
    const auto announce = [this] {
        QMetaObject::invokeMethod(this, &ToolBox::SettingsChanged, Qt::QueuedConnection);
    };
    connect(modes, &QButtonGroup::idClicked, this, [this, announce](int index) {
        settings_.ToolMode = index;
        announce();
    });
    connect(links, &QButtonGroup::idClicked, this, [this, announce](int index) {
        settings_.LinkLayers = index;
        announce();
    });
    setFixedSize(sizeHint());
}

void ToolBox::closeEvent(QCloseEvent* event) {
    emit Closing();
    QWidget::closeEvent(event);
}

QButtonGroup* ToolBox::AddOptions(const char* name, const std::vector<const char*>& tips,
                                  int chosen) {
    auto* group = new QButtonGroup(this);
    for (int index = 0; index < static_cast<int>(tips.size()); ++index) {
        auto* button = new QToolButton(this);
        button->setObjectName(QString(name) + QString::number(index));
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setToolTip(tips[static_cast<std::size_t>(index)]);
        button->setFixedSize(28, 28);
        button->setChecked(index == chosen);
        group->addButton(button, index);
    }
    return group;
}

} // namespace torvane::app
