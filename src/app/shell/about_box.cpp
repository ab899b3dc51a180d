#include "shell/about_box.h"

#include "shell/help_window.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace torvane::app {

AboutBox::AboutBox(QWidget* owner)
    : QDialog(owner) {
    setObjectName("frmTLM0017");
    setWindowTitle(ProgramTitle);

    auto* icon = new QLabel(this);
    icon->setObjectName("picIcon");
    icon->setPixmap(style()->standardIcon(QStyle::SP_ComputerIcon).pixmap(32, 32));
    auto* title = new QLabel(ProgramTitle, this);
    title->setObjectName("lblTitle");
    QFont titleFont = title->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.4);
    title->setFont(titleFont);
    auto* version = new QLabel(ProgramVersion, this);
    version->setObjectName("lblVersion");
    auto* ok = new QPushButton("OK(&O)", this);
    ok->setObjectName("cmdOK");
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    AnswerHelpKey(this);

    auto* texts = new QVBoxLayout;
    texts->addWidget(title);
    texts->addWidget(version);
    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addLayout(texts, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(ok, 0, Qt::AlignRight);
    setFixedSize(sizeHint().expandedTo(QSize(300, 0)));
}

} // namespace torvane::app
