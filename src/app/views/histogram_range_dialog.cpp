#include "views/histogram_range_dialog.h"

#include "shell/common.h"
#include "shell/help_window.h"
#include "views/histogram_range.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace torvane::app {
namespace {

constexpr int BoxLength = 5;

QLineEdit* NumberBox(const char* name, std::int32_t value, QWidget* parent) {
    auto* box = new QLineEdit(QString::number(value), parent);
    box->setObjectName(name);
    box->setMaxLength(BoxLength);
    return box;
}

} // namespace

NeRangeDialog::NeRangeDialog(views::NeRange shown, shell::MessageSink& sink, QWidget* parent)
    : QDialog(parent)
    , sink_(sink)
    , start_(NumberBox("txtDataStart", shown.Start, this))
    , end_(NumberBox("txtDataEnd", shown.End, this))
    , ok_(new QPushButton("OK", this)) {
    setObjectName("frmTLM0041");
    setWindowTitle("Axial setup of Ne data");
    ok_->setObjectName("cmdExec");
    ok_->setAutoDefault(false);
    auto* cancel = new QPushButton("Cancel", this);
    cancel->setObjectName("cmdCancel");
    cancel->setAutoDefault(false);
    auto* form = new QFormLayout;
    form->addRow("DataStart [r/min]", start_);
    form->addRow("DataEnd [r/min]", end_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok_);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
    for (QLineEdit* box : {start_, end_}) {
        box->installEventFilter(this);
    }
    connect(ok_, &QPushButton::clicked, this, &NeRangeDialog::PressOk);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    AnswerHelpKey(this, "histogram.html");
}

bool NeRangeDialog::eventFilter(QObject* watched, QEvent* event) {
    auto* box = qobject_cast<QLineEdit*>(watched);
    if (box == nullptr) {
        return QDialog::eventFilter(watched, event);
    }
    if (event->type() == QEvent::FocusIn) {
        // After the press that gave the focus, which would place the caret and drop a selection.
        QTimer::singleShot(0, box, &QLineEdit::selectAll);
    } else if (event->type() == QEvent::FocusOut && box == end_) {
        end_->setText(QString::fromStdString(views::LeaveNeEnd(end_->text().toStdString())));
    } else if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (!box->text().isEmpty()) {
                if (box == start_) {
                    end_->setFocus();
                } else {
                    ok_->click();
                }
            }
            return true;
        }
        // The shared key filter: only digits and backspace among the keys that type text.
        const QString text = key->text();
        if (!text.isEmpty() && text.at(0).isPrint()) {
            int code = text.at(0).unicode();
            shell::DigitKey(code);
            return code == 0;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void NeRangeDialog::PressOk() {
    const views::NeRangeCheck check =
        views::CheckNeRange(start_->text().toStdString(), end_->text().toStdString());
    end_->setText(QString::fromStdString(check.EndText));
    if (!check.Accepted) {
        shell::ShowMessage(sink_, check.Message, shell::buttons::Ok, shell::icons::Information);
        QLineEdit* box = check.Focus == views::NeRangeBox::Start ? start_ : end_;
        box->setFocus();
        box->selectAll();
        return;
    }
    range_ = check.Range;
    accept();
}

} // namespace torvane::app
