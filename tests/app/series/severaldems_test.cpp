#include "app/series/SeveralDems.h"

#include "app/recipe/recentruns.h"
#include "app/series/SeriesResultDialog.h"
#include "tests/support/files.h"
#include "tests/support/maindialog.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTableWidget>
#include <QToolButton>

/// Several DEMs that are dropped on the main dialog. The test's answers to its question: yes is one DEM, no
/// each by itself.
class SeveralDemsTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init();
    void oneMosaic();
    void settingsOfAMosaic();
    void tilesThatDoNotFit();
    void folders();
    void eachByItself();
    void existingProducts();
    void stopEndsTheSeries();

private:
    QStringList dems() const { return {path("a.tif"), path("b.tif")}; }
};

namespace
{

struct Dialog : ShownDialog
{
    using ShownDialog::ShownDialog;
    QString input() { return find<QComboBox>("m_pCBInputListFile")->currentText(); }
    QString output() { return find<QLineEdit>("m_pLEOutputFile")->text(); }
    SeriesResultDialog *summary() { return window.findChild<SeriesResultDialog *>(); }
    /// The cells of the summary's second column: how each run ended.
    QStringList ends()
    {
        QStringList texts;
        const auto table = summary()->findChild<QTableWidget *>();
        for (int row = 0; row < table->rowCount(); ++row)
            texts += table->item(row, 1)->text();
        return texts;
    }
};

} // namespace

void SeveralDemsTest::init()
{
    setUpTest(60);
    QSettings("KARVEX", "Riglios").setValue("LastGeometry/showPreview", false); // only the tests run tools
    QVERIFY(copyRaster(path("dem.tif"), path("a.tif"), {"-srcwin", "0", "0", "30", "60"}));
    QVERIFY(copyRaster(path("dem.tif"), path("b.tif"), {"-srcwin", "30", "0", "30", "60"}));
}

void SeveralDemsTest::oneMosaic()
{
    Dialog dialog(m_tools);
    Prompt::answerBeforehand({true});
    QVERIFY(dialog.drop(QStringList{path("b.tif"), path("a.tif")}));
    QVERIFY(Prompt::takeShown().value(0).contains("2 MNT"));
    QCOMPARE(dialog.input(), path("a.tif") + QStringLiteral(" (mosaïque de 2 tuiles)"));
    QCOMPARE(dialog.output(), path("a_mosaic_hillshade.tif"));
    QCOMPARE(readRecentFiles(), QStringList());
    QVERIFY(dialog.window.commandToCopy().contains("\"tiles\""));

    QTest::keyClick(dialog.find<QComboBox>("m_pCBInputListFile")->lineEdit(), Qt::Key_Return);
    QCOMPARE(Prompt::takeShown(), QStringList()); // the mosaic's title is not opened as a file
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.result());
    dialog.result()->close();
    const QByteArray product = bytesOf(path("a_mosaic_hillshade.tif"));
    dialog.window.setInputDem(path("dem.tif"));
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(QFile::exists(path("dem_hillshade.tif")));
    QCOMPARE(product, bytesOf(path("dem_hillshade.tif")));
    QCOMPARE(readRecentRuns(recentRunsFile()).last().recipe.tiles, dems());
}

void SeveralDemsTest::settingsOfAMosaic()
{
    const QString json = R"({"format": 1, "process": "slope", "tiles": ["a.tif", "%1"]})";
    Dialog dialog(m_tools);
    dialog.drop(writeFile(path("gone.json"), json.arg("gone.tif").toUtf8()));
    QVERIFY(Prompt::takeShown().value(0).contains("gone.tif"));
    QVERIFY(dialog.window.recipe().tiles.isEmpty());
    dialog.drop(writeFile(path("tuiles.json"), json.arg("b.tif").toUtf8()));
    QCOMPARE(dialog.window.recipe().tiles, dems());
    QCOMPARE(dialog.output(), path("a_mosaic_slope.tif"));
    QCOMPARE(Prompt::takeShown(), QStringList());
    QTest::keyClicks(dialog.find<QComboBox>("m_pCBInputListFile")->lineEdit(), "x"); // a name being typed
    QVERIFY(dialog.window.recipe().tiles.isEmpty() && dialog.window.recipe().input.isEmpty());
    dialog.window.setInputDem(path("dem.tif"));
    QCOMPARE(dialog.window.recipe().input, path("dem.tif"));
}

void SeveralDemsTest::tilesThatDoNotFit()
{
    QVERIFY(copyRaster(path("b.tif"), path("c.tif"), {"-ot", "Int16"}));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    Prompt::answerBeforehand({true});
    dialog.drop(QStringList{path("a.tif"), path("c.tif")});
    QVERIFY(Prompt::takeShown().value(1).contains("Int16"));
    QCOMPARE(dialog.input(), path("dem.tif"));
}

void SeveralDemsTest::folders()
{
    const QString folder = path("sub");
    QVERIFY(QDir().mkpath(folder));
    Dialog dialog(m_tools);
    dialog.drop(folder);
    QCOMPARE(Prompt::takeShown().size(), 1); // no DEM
    QVERIFY(QFile::rename(path("a.tif"), folder + "/a.tif")
            && QFile::copy(folder + "/a.tif", folder + "/a_slope.tif"));
    dialog.drop(folder);
    QCOMPARE(dialog.input(), folder + "/a.tif"); // the only one
    QVERIFY(QFile::rename(path("b.tif"), folder + "/b.tif"));
    Prompt::answerBeforehand({true, true});
    QuvoFilerDialog::answerBeforehand({folder, folder + "/b.tif\n" + folder + "/a_slope.tif"});
    const auto menu = dialog.window.findChild<QToolButton *>("m_pPBSelectInputDEM")->menu();
    menu->actions().at(3)->trigger();
    QCOMPARE(dialog.window.recipe().tiles, (QStringList{folder + "/a.tif", folder + "/b.tif"}));
    menu->actions().at(2)->trigger();
    QCOMPARE(dialog.window.recipe().tiles, (QStringList{folder + "/a_slope.tif", folder + "/b.tif"}));
}

void SeveralDemsTest::eachByItself()
{
    writeFile(path("b.tif"), "broken");
    Dialog dialog(m_tools);
    Prompt::answerBeforehand({false});
    dialog.drop(QStringList{path("a.tif"), path("b.tif"), path("dem.tif")});
    QVERIFY(!dialog.window.mayLaunch());
    QTRY_VERIFY(dialog.summary());
    QCOMPARE(dialog.ends(), (QStringList{"Terminé", "Échec", "Terminé"}));
    QCOMPARE(dialog.summary()->findChild<QLabel *>()->text(),
             seriesText({{{}, {}, SeriesRow::Done}, {{}, {}, SeriesRow::Done}, {{}, {}, SeriesRow::Failed}}));
    QVERIFY(QFile::exists(path("a_hillshade.tif")) && QFile::exists(path("dem_hillshade.tif")));
    QVERIFY(!QFile::exists(path("b_hillshade.tif")));
}

void SeveralDemsTest::existingProducts()
{
    writeFile(path("a_hillshade.tif"), "precious");
    for (const bool replace : {false, true}) {
        Dialog dialog(m_tools);
        Prompt::answerBeforehand({false, replace});
        dialog.drop(dems());
        QTRY_VERIFY(dialog.summary());
        QCOMPARE(dialog.ends().first(), replace ? "Terminé" : "Existait déjà");
        QCOMPARE(bytesOf(path("a_hillshade.tif")) == "precious", !replace);
    }
}

void SeveralDemsTest::stopEndsTheSeries()
{
    const QString real = m_tools.dem;
    m_tools.dem = writeScript(path("tool.exe"),
                              "case \"$2\" in */a.tif) exec '" + real.toUtf8()
                                  + "' \"$@\";; esac\necho half > \"$3\"; printf '0...10'; sleep 60\n");
    Dialog dialog(m_tools);
    Prompt::answerBeforehand({false});
    dialog.drop(QStringList{path("a.tif"), path("b.tif"), path("dem.tif")});
    QTRY_VERIFY(!partOf(path("b_hillshade.tif")).isEmpty());
    QTRY_VERIFY(stopButton());
    QTest::mouseClick(stopButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.summary());
    QCOMPARE(dialog.ends(), (QStringList{"Terminé", "Arrêté", "Non commencé"}));
    QVERIFY(QFile::exists(path("a_hillshade.tif")) && !QFile::exists(path("b_hillshade.tif")));
    QVERIFY(dialog.window.mayLaunch() == !dialog.input().isEmpty());
}

QTEST_MAIN(SeveralDemsTest)
#include "severaldems_test.moc"
