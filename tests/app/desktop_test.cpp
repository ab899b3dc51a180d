// The desktop's start and end: folders, the files it keeps, the temporary folder emptied at both
// ends, the screen rule and the command line taken whole.

#include "generated_run.h"
#include "graph/graph_window.h"
#include "shell/desktop.h"
#include "support/temp_folder.h"

#include <QDir>
#include <QtTest>

#include <fstream>

using torvane::app::Desktop;

class DesktopTest : public QObject {
    Q_OBJECT

private slots:
    // The screen must hold 800 x 600 at 8 bits; the command line is one path, blanks and all.
    void TheScreenRuleAndTheWholeCommandLine() {
        QVERIFY(torvane::app::ScreenIsLargeEnough(800, 600, 8));
        QVERIFY(!torvane::app::ScreenIsLargeEnough(799, 600, 8));
        QVERIFY(!torvane::app::ScreenIsLargeEnough(800, 599, 8));
        QVERIFY(!torvane::app::ScreenIsLargeEnough(800, 600, 7));
        char program[] = "torvane-studio", first[] = "/runs/Mugello", second[] = "day",
             third[] = "2.rlg";
        char* argv[] = {program, first, second, third};
        QCOMPARE(torvane::app::WholeCommandLine(4, argv), QString("/runs/Mugello day 2.rlg"));
        QCOMPARE(torvane::app::WholeCommandLine(1, argv), QString());
        char relative[] = "./runs/RUN1.rlg";
        char* fromHere[] = {program, relative};
        QCOMPARE(torvane::app::WholeCommandLine(2, fromHere),
                 QDir::current().absoluteFilePath("runs/RUN1.rlg"));
    }

    void StartAndShutdownKeepTheFilesAndEmptyTheTemporaryFolder() {
        torvane::testing::TempFolder home;
        const torvane::shell::AppPaths paths(home.Path());
        std::filesystem::create_directories(paths.TempDir());
        std::ofstream(paths.TempDir() / "Ne-010.tmp") << "left by a crash";
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

    // The command line and a later start's "LOAD" open a logging file, blanks and upper-case
    // extension and all; the frame's end takes the windows' streams with it.
    void TheCommandLineAndLoadOpenLoggingFiles() {
        torvane::testing::TempFolder home;
        const torvane::shell::AppPaths paths(home.Path());
        QVERIFY(paths.MakeFolders());
        const std::filesystem::path run = paths.DataDir() / "Mugello day 2.RLG";
        QVERIFY(torvane::testing::WriteGeneratedRun(run, 20000.0, 1));
        const QString whole = QString::fromStdString(run.string());

        Desktop desktop(paths);
        desktop.Start(whole);
        QCOMPARE(desktop.Frame().GraphWindows().size(), 1);
        desktop.LinkExecute("LOAD" + whole);
        QCOMPARE(desktop.Frame().GraphWindows().back()->Number(), 2);
        // Quoted, the path ends in a quote and names no logging file.
        desktop.LinkExecute("LOAD\"" + whole + "\"");
        QCOMPARE(desktop.Frame().GraphWindows().size(), 2);
        QVERIFY(!std::filesystem::is_empty(paths.TempDir()));

        desktop.Frame().close();
        QVERIFY(std::filesystem::is_empty(paths.TempDir()));
        QVERIFY(std::filesystem::exists(run));
    }
};

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
