// mnuCalcu through the real dialogs: a formula built with the picker and the keys becomes a
// computed item whose panel row reads, and whose trace is drawn, as the command line computes it.

#include "graph/comments.h"
#include "graph/graph_picture.h"
#include "graph/panel_controls.h"
#include "graph_desk.h"
#include "shell/common.h"
#include "shell/number_format.h"
#include "support/run_process.h"
#include "widget_driving.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

using namespace torvane;
using testing::Control;
using testing::Desk;
using testing::WhenModalOpens;

namespace {

std::vector<std::int32_t> Words32(const std::filesystem::path& file) {
    const std::vector<std::uint8_t> bytes = testing::ReadBytes(file);
    std::vector<std::int32_t> words(bytes.size() / 4);
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<std::int32_t>(bytes[4 * i] | bytes[4 * i + 1] << 8 |
                                             bytes[4 * i + 2] << 16 |
                                             static_cast<std::uint32_t>(bytes[4 * i + 3]) << 24);
    }
    return words;
}

// Picks an entry of the Operation dialog that the next click opens.
void PickWhenOpens(const QString& entry) {
    WhenModalOpens([entry](QWidget* picker) {
        QCOMPARE(picker->objectName(), QString("frmTLM0120"));
        auto* list = Control<QListWidget>(*picker, "lstItem");
        const auto found = list->findItems(entry, Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        list->setCurrentItem(found.front());
        QTest::mouseClick(Control<QPushButton>(*picker, "cmdOk"), Qt::LeftButton);
    });
}

} // namespace

class FormulaDialogTest : public QObject {
    Q_OBJECT

private slots:
    void AFormulaBecomesAPanelRowReadAndDrawnAsTheCommandLineComputesIt() {
        Desk desk;
        const std::filesystem::path run = desk.Run("FORMULA.rlg", 20000.0, 3);
        app::GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given, run);
        QVERIFY(window != nullptr);
        QVERIFY(QTest::qWaitForWindowExposed(&desk.Frame));
        auto* graph = Control(*window, "picGraph");
        const int column = 150;
        QTest::mouseMove(graph, QPoint(column, graph->height() / 2));
        const double cursor = window->State().Layers.Layer[0].CursorTime;
        // The cursor stands a little right of the mouse's hot spot.
        const int cursorX = window->State().CursorX;
        QVERIFY(cursor > 0.0);

        WhenModalOpens([&](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), QString("frmTLM0110"));
            QCOMPARE(dialog->windowTitle(), QString("Function calculation"));
            auto* formula = Control<QLineEdit>(*dialog, "txtFormula");
            PickWhenOpens("Ne");
            QTest::mouseClick(Control<QPushButton>(*dialog, "cmdItem1"), Qt::LeftButton);
            PickWhenOpens("sqrt");
            QTest::mouseClick(Control<QPushButton>(*dialog, "cmdItem0"), Qt::LeftButton);
            // The caret stands between the parentheses.
            QTest::keyClicks(formula, "4");
            QTest::keyClicks(Control(*dialog, "txtItem"), "P.w?");
            QCOMPARE(formula->text(), QString("Nesqrt(4)"));
            formula->setText("Ne*" + formula->text().mid(2));
            // The unit is still missing: the dialog says so and stays.
            QTest::mouseClick(Control<QPushButton>(*dialog, "cmdOk"), Qt::LeftButton);
            QCOMPARE(desk.Sink.Messages.back().Text, std::string("Enter the unit name."));
            QVERIFY(dialog->isVisible());
            QTest::keyClicks(Control(*dialog, "txtUnit"), "kW");
            Control<QComboBox>(*dialog, "cmbDecimal")->setCurrentIndex(1);
            QTest::mouseClick(Control<QPushButton>(*dialog, "cmdOk"), Qt::LeftButton);
        });
        desk.Frame.Action("mnuCalcu")->trigger();

        // The command line computes the same words from the same run.
        const std::filesystem::path cli = desk.Home.Path() / "cli.bin";
        const auto computed = testing::RunProcess(
            TORVANE_CLI,
            {"formula", run.string(), "Ne*sqrt(4)", "--decimals", "1", "--out", cli.string()},
            {"TORVANE_HOME=" + desk.Home.Path().string()});
        QCOMPARE(computed.Status, 0);
        const std::vector<std::int32_t> words = Words32(cli);
        QCOMPARE(Words32(desk.Paths.TempDir() / "Pw-010.tmp"), words);

        // Its row reads the word at the cursor, in tenths, with the unit.
        auto* row = Control<app::ItemRowControl>(*window, "chkItem50");
        QCOMPARE(row->Name(), QString("Pw"));
        const std::int32_t word = words.at(static_cast<std::size_t>(cursor) / 5 - 1);
        QCOMPARE(row->ValueText().toStdString(), shell::FormatNumber(word / 10.0, "0.0") + "kW");

        // Its trace passes through that value's row of its band in colour 1, in the next column,
        // clear of the cursor.
        const graph::ComputedItemView& shown = window->State().Views[0].Computed.at(0);
        const std::int32_t next = words.at(static_cast<std::size_t>(cursor + 100) / 5 - 1);
        const auto anchor =
            graph::AnchorRow(shown.Display, shown.Scale, next / 10.0 * shown.Scale.Divisor);
        QVERIFY(anchor.has_value());
        const int y = static_cast<int>(*anchor) + window->State().LapBarHeight;
        const auto* picture = dynamic_cast<app::GraphPicture*>(graph);
        bool drawn = false;
        for (int dy = -1; dy <= 1; ++dy) {
            drawn = drawn || picture->PixelAt(cursorX + 1, y + dy) == shell::ColorValue(1);
        }
        QVERIFY2(drawn, qPrintable(QString("row %1").arg(y)));
    }
};

QTEST_MAIN(FormulaDialogTest)
#include "formula_dialog_test.moc"
