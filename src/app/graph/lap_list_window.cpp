#include "graph/lap_list_window.h"

#include "graph/graph_window.h"
#include "graph/item_panel.h"
#include "graph/panel_controls.h"
#include "shell/help_window.h"
#include "shell/tool_box.h"

#include <QAction>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTableWidget>

namespace torvane::app {
namespace {

constexpr int NumberColumnTwips = 500;
constexpr int TimeColumnTwips = 1500;
constexpr int RowHeight = 16;
constexpr int GridLeft = 4;
constexpr int GridTop = 28;
// The form's height counts the caption bar, which the window system draws outside the widget.
constexpr int CaptionBarHeight = 24;

} // namespace

LapListWindow::LapListWindow(QWidget* owner)
    : QWidget(owner, Qt::Tool)
    , title_(new QLabel("Best :", this))
    , time_(new QLabel("999h99m99s999", this))
    , grid_(new QTableWidget(0, 2, this)) {
    setObjectName("frmTLM0090");
    AnswerHelpKey(this, "laps.html");
    setAttribute(Qt::WA_DeleteOnClose);
    // The operator goes on working in the graph window: showing the list leaves it active.
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle("LAP File Name");
    title_->setObjectName("lblTitle");
    time_->setObjectName("lblTime");
    grid_->setObjectName("grdLap");
    title_->setGeometry(8, 6, 40, 16);
    time_->setGeometry(52, 6, 120, 16);

    QFont font = grid_->font();
    font.setPixelSize(12);
    grid_->setFont(font);
    grid_->horizontalHeader()->hide();
    grid_->verticalHeader()->hide();
    grid_->verticalHeader()->setMinimumSectionSize(RowHeight);
    grid_->verticalHeader()->setDefaultSectionSize(RowHeight);
    grid_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid_->setColumnWidth(0, NumberColumnTwips / TwipsPerPixel);
    grid_->setColumnWidth(1, TimeColumnTwips / TwipsPerPixel);
    grid_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    // Room for the scroll bar that more than 20 rows bring, so that the width never changes.
    const int gridWidth = (NumberColumnTwips + TimeColumnTwips) / TwipsPerPixel +
                          2 * grid_->frameWidth() + grid_->verticalScrollBar()->sizeHint().width();
    grid_->move(GridLeft, GridTop);
    grid_->resize(gridWidth, graph::LapGridHeight(1));
    setFixedWidth(gridWidth + 2 * GridLeft);

    connect(grid_, &QTableWidget::cellClicked, this, [this](int row) { emit LapChosen(row); });
}

void LapListWindow::DispLapTime(const logdata::LapInfo& lap, std::string_view fileName) {
    content_ = graph::LapListOf(lap, fileName);
    setWindowTitle(QString::fromStdString(content_.Caption));
    time_->setText(QString::fromStdString(content_.BestText));

    // Filled out of sight: a long run has 255 rows to write.
    grid_->setUpdatesEnabled(false);
    grid_->clearContents();
    grid_->setRowCount(static_cast<int>(content_.Rows.size()));
    for (int row = 0; row < grid_->rowCount(); ++row) {
        const graph::LapRow& lapRow = content_.Rows[static_cast<std::size_t>(row)];
        const QString cells[] = {QString::fromStdString(lapRow.Number),
                                 QString::fromStdString(lapRow.Time)};
        for (int column = 0; column < 2; ++column) {
            auto* item = new QTableWidgetItem(cells[column]);
            item->setForeground(ToQColor(lapRow.TextColor));
            grid_->setItem(row, column, item);
        }
    }
    grid_->clearSelection();
    grid_->resize(grid_->width(), content_.GridHeight);
    setFixedHeight(content_.FormHeight - CaptionBarHeight);
    grid_->setUpdatesEnabled(true);
}

void LapListWindow::closeEvent(QCloseEvent* event) {
    emit Closing();
    QWidget::closeEvent(event);
}

LapListToggle::LapListToggle(QWidget& frame, QAction& menu, ActiveWindow activeWindow)
    : QObject(&frame)
    , frame_(frame)
    , menu_(menu)
    , activeWindow_(std::move(activeWindow)) {
    menu_.setCheckable(true);
}

void LapListToggle::Toggle() {
    if (menu_.isChecked()) {
        Show();
    } else {
        Close();
    }
}

void LapListToggle::Show() {
    if (list_ == nullptr) {
        list_ = new LapListWindow(&frame_);
        // The first time it stands at the right of the frame, below the menu bar.
        list_->move(
            place_.value_or(frame_.mapToGlobal(QPoint(frame_.width() - list_->width() - 24, 48))));
        connect(list_, &LapListWindow::LapChosen, this, [this](int lapNo) {
            if (GraphWindow* window = activeWindow_()) {
                window->MoveLapTime(lapNo);
            }
        });
        connect(list_, &LapListWindow::Closing, this, [this] {
            place_ = list_->pos();
            menu_.setChecked(false);
        });
    }
    menu_.setChecked(true);
    list_->show();
    Refill();
    if (GraphWindow* window = activeWindow_()) {
        frame_.activateWindow();
        window->setFocus();
    }
}

void LapListToggle::Close() {
    if (list_ != nullptr) {
        list_->close();
    }
    menu_.setChecked(false);
}

void LapListToggle::StepAside(bool aside) {
    if (list_ != nullptr) {
        list_->setVisible(!aside);
    }
}

void LapListToggle::Refill() {
    GraphWindow* window = activeWindow_();
    if (list_ == nullptr || window == nullptr) {
        return;
    }
    const graph::GraphWindowState& state = window->State();
    const auto layer = static_cast<std::size_t>(state.ActiveLayer);
    list_->DispLapTime(state.Layers.Lap.at(layer),
                       graph::BareFileName(state.Layers.Layer.at(layer).FilePath));
}

} // namespace torvane::app
