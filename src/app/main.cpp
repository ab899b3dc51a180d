// torvane-studio: the analysis desktop. One runs per user; a later start hands its command line
// to the running one and ends.

#include "shell/desktop.h"
#include "shell/single_instance.h"

#include <QApplication>
#include <QScreen>

using namespace torvane;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("torvane-studio");
    const QString commandLine = app::WholeCommandLine(argc, argv);

    app::SingleInstance instance;
    switch (instance.Listen()) {
    case app::SingleInstance::ListenResult::Listening:
        break;
    case app::SingleInstance::ListenResult::AnotherRuns:
        // The message first, then the other program comes to the front.
        if (commandLine.isEmpty()) {
            app::MessageBoxSink sink;
            shell::ShowMessage(sink, "File has already been opened.", shell::buttons::Ok,
                               shell::icons::Information);
            instance.HandOver(QString());
        } else {
            instance.HandOver("LOAD" + commandLine);
        }
        return 0;
    case app::SingleInstance::ListenResult::Failed: {
        app::MessageBoxSink sink;
        instance.ReportListenFailure(sink);
        break;
    }
    }

    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr || !app::ScreenIsLargeEnough(*screen)) {
        app::MessageBoxSink sink;
        shell::ShowMessage(sink, "Do screen resolution beyond 800x600.", shell::buttons::Ok,
                           shell::icons::Information);
        return 0;
    }

    app::Desktop desktop(shell::AppPaths::Resolve(shell::AppPaths::ProcessInputs()));
    QObject::connect(&instance, &app::SingleInstance::RaiseRequested, &desktop,
                     &app::Desktop::Raise);
    QObject::connect(&instance, &app::SingleInstance::CommandReceived, &desktop,
                     &app::Desktop::LinkExecute);
    QObject::connect(&application, &QApplication::aboutToQuit, &desktop, &app::Desktop::Shutdown);
    desktop.Start(commandLine);
    return QApplication::exec();
}
