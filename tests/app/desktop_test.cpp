// The desktop's start and end: folders, the files it keeps, the temporary folder emptied at both
// ends, the screen rule and the command line taken whole.

#include "shell/desktop.h"
#include "support/temp_folder.h"

#include <QApplication>
#include <QtTest>

#include <fstream>

using torvane::app::Desktop;

class DesktopTest : public QObject {
    Q_OBJECT

private slots:
    void TheScreenMustHoldEightHundredBySixHundredAtEightBits() {
        QVERIFY(torvane::app::ScreenIsLargeEnough(800, 600, 8));
        QVERIFY(!torvane::app::ScreenIsLargeEnough(799, 600, 8));
        QVERIFY(!torvane::app::ScreenIsLargeEnough(800, 599, 8));
        QVERIFY(!torvane::app::ScreenIsLargeEnough(800, 600, 7));
    }

    void TheCommandLineIsOnePathWithItsBlanks() {
        char program[] = "torvane-studio";
        char first[] = "/runs/Mugello";
        char second[] = "day";
        char third[] = "2.rlg";
        char* argv[] = {program, first, second, third};
        QCOMPARE(torvane::app::WholeCommandLine(4, argv), QString("/runs/Mugello day 2.rlg"));
        QCOMPARE(torvane::app::WholeCommandLine(1, argv), QString());
    }

    void StartAndShutdownKeepTheFilesAndEmptyTheTemporaryFolder() {
        torvane::testing::TempFolder home;
        const torvane::shell::AppPaths paths(home.Path());
        std::filesystem::create_directories(paths.TempDir());
        std::ofstream(paths.TempDir() / "Ne-010.tmp") << "left by a crash";
        {
            Desktop desktop(paths);
            // A path with an extension the program does not open leaves just the frame.
            desktop.Start("/runs/notes.txt");
            QVERIFY(desktop.Frame().isVisible());
            QVERIFY(std::filesystem::is_empty(paths.TempDir()));
            QVERIFY(std::filesystem::exists(paths.InitDir() / "LAYOUT.DAT"));
            QVERIFY(std::filesystem::exists(paths.InitDir() / "LAF_DATA.CSV"));
            QCOMPARE(desktop.Layouts().GetLayoutNames().front(), std::string("INITIALIZE"));

            std::ofstream(paths.TempDir() / "TH-010.tmp") << "a window's stream";
            desktop.Shutdown();
            QVERIFY(std::filesystem::is_empty(paths.TempDir()));
        }
    }

    // Commands of a later start: only LOAD is taken, and a file the frame cannot open yet
    // changes nothing.
    void LinkCommandsOtherThanLoadAreIgnored() {
        torvane::testing::TempFolder home;
        Desktop desktop{torvane::shell::AppPaths(home.Path())};
        desktop.Start(QString());
        desktop.LinkExecute("OPEN/runs/a.rlg");
        desktop.LinkExecute("LOAD/runs/a.dto");
        QVERIFY(desktop.Frame().isVisible());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }
};

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
