#pragma once
// What the widget tests share to drive real widgets and read them back: controls by their
// object names, the texts of a list's rows and columns, and the modal dialog a call opens.

#include <QAbstractItemModel>
#include <QApplication>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <functional>

namespace torvane::testing {

// The child control of that object name; a missing one ends the test program, as no check of
// it could mean anything.
template <typename Widget = QWidget> Widget* Control(const QObject& parent, const char* name) {
    auto* control = parent.findChild<Widget*>(name);
    if (control == nullptr) {
        qFatal("no control %s", name);
    }
    return control;
}

// The texts of one column of a list, tree or table, top to bottom.
inline QStringList ColumnTexts(const QAbstractItemModel& model, int column = 0) {
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        texts << model.index(row, column).data().toString();
    }
    return texts;
}

// The texts of one row, left to right.
inline QStringList RowTexts(const QAbstractItemModel& model, int row) {
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column) {
        texts << model.index(row, column).data().toString();
    }
    return texts;
}

// Runs check on the modal widget that the next call opens, once it is up.
inline void WhenModalOpens(std::function<void(QWidget*)> check) {
    QTimer::singleShot(0, [check = std::move(check)] {
        QWidget* modal = QApplication::activeModalWidget();
        QVERIFY(modal != nullptr);
        check(modal);
    });
}

} // namespace torvane::testing
