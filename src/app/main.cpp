// torvane-studio: the analysis desktop.

#include "shell/main_frame.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("torvane-studio");
    torvane::app::MainFrame frame;
    frame.show();
    return QApplication::exec();
}
