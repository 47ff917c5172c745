#include "dataset/QuvoFilerDialog.h"
#include "dataset/gdalmessages.h"
#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "panels/colorReliefOptionsWidget.h"
#include "panels/controls/ColorRampComboBox.h"
#include "runner/QuvoProgressDialog.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(Extremes)

class ColorReliefPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void library();
    void addedTables();
    void spreadFileFollowsDemAndTable();
    void exactStatistics();

private:
    QString write(const QString &name, const QByteArray &text)
    {
        return writeFile(m_folder.filePath(name), text);
    }

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/tables é \"中\" XXXXXX")};
};

namespace
{

struct Panel
{
    WorkFolder workFolder;
    colorReliefOptionsWidget widget{workFolder};
    ColorRampComboBox *combo = widget.findChild<ColorRampComboBox *>();
    QAbstractButton *predefined = widget.findChild<QAbstractButton *>("m_pRBAbsoluteAltitude");
    QAbstractButton *spread = widget.findChild<QAbstractButton *>("m_pRBRelatifAltitude");

    QStringList ownFiles() { return QDir(workFolder.path()).entryList(QDir::Files); }
    void add(const QString &file)
    {
        QuvoFilerDialog::answerBeforehand({file});
        widget.findChild<QAbstractButton *>("m_pPBAddAColorFile")->click();
    }
};

const Extremes metres{.known = true, .minimum = 100.0, .maximum = 300.0};

} // namespace

void ColorReliefPanelTest::initTestCase()
{
    qRegisterMetaType<Extremes>("Extremes");
    setUpGdal();
}

void ColorReliefPanelTest::library()
{
    Panel panel;
    QVERIFY(!panel.widget.isComplete()); // no library beside this test
    QCOMPARE(panel.widget.colorFile(false), QString());
    panel.widget.loadLibrary(QStringLiteral(QUVO_TREE "/libraries/colormap"));
    QVERIFY(panel.widget.isComplete());
    QCOMPARE(panel.widget.colorFile(false), QStringLiteral(QUVO_TREE "/libraries/colormap/dtm.txt"));
    QCOMPARE(panel.combo->count(), 19);
    QVERIFY(panel.ownFiles().isEmpty()); // the tool reads the library's files themselves
    for (int row = 0; row < panel.combo->count(); ++row)
        QVERIFY2(noDataEntry(panel.combo->table(row).entries), qPrintable(panel.combo->itemText(row)));
}

void ColorReliefPanelTest::addedTables()
{
    Panel panel;
    Prompt::answerBeforehand({});
    const QSignalSpy changed(&panel.widget, &colorReliefOptionsWidget::completeChanged);
    const QString plain = write("plain.txt", "0 1 2 3\n10 4 5 6\n");
    panel.add(plain);
    QCOMPARE(panel.widget.colorFile(false), plain);
    QTRY_COMPARE(changed.count(), 1);

    panel.add(write("names.txt", "0 green\n10 red\n"));
    const QString copy = panel.widget.colorFile(false);
    QCOMPARE(bytesOf(copy), QByteArray("0\t0  255  0  255\n10\t255  0  0  255\n"));
    QVERIFY(copy.startsWith(panel.workFolder.path()));
    QVERIFY(panel.widget.options().table.endsWith("/names.txt"));

    panel.add(write("broken.txt", "nothing\n"));
    panel.add(m_folder.path());
    QCOMPARE(Prompt::takeShown().filter("Attention: La table couleur spécifiée est invalide.").size(), 2);
    panel.add(write("partly.txt", "0 1 1 1\nx 2 2 2\n"));
    QVERIFY(Prompt::takeShown().value(0).contains("Ligne 2"));
    QCOMPARE(panel.combo->count(), 2);

    Prompt::answerBeforehand({true, true});
    panel.add(write("mixed.txt", "50% 1 1 1\n7 8 8 8\nx 2 2 2\n0% 3 3 3\nnv 4 4 4\n"));
    QCOMPARE(bytesOf(panel.widget.colorFile(true)),
             QByteArray("nv\t4  4  4  255\n0%\t3  3  3  255\n50%\t1  1  1  255\n"));
    QCOMPARE(Prompt::takeShown().size(), 2);

    write("plain.txt", "0 1 2 3\n20 7 7 7\n"); // edited by another program, and added again
    panel.add(plain);
    QCOMPARE(panel.combo->count(), 3);
    QCOMPARE(panel.combo->currentTable().entries.last().value, 20.0);
    write("plain.txt", "rubbish\n");
    Prompt::answerBeforehand({});
    QVERIFY(!panel.widget.previewInput("/copy.tif")); // says nothing
    QVERIFY(!panel.widget.launchInput());
    QVERIFY(Prompt::takeShown().join("|").contains(plain));
    write("plain.txt", "0 1 2 3\n20 7 7 7\n");
    QCOMPARE(panel.widget.launchInput()->colorTableFile, plain);
    panel.widget.slot_onCurrentColorFileDataChanged(panel.combo->currentTable().entries);
    QCOMPARE(panel.combo->currentText(), QStringLiteral("custom"));
    QVERIFY(panel.widget.colorFile(true).startsWith(panel.workFolder.path()));

    QuvoFilerDialog::takeShown();
    Prompt::takeShown();
    panel.add(write("cyclic.cpt", "# CYCLIC\n0 1/2/3 5 1/2/3\n5 7/8/9 6 7/8/9\n"));
    QVERIFY(QuvoFilerDialog::takeShown().value(0).contains("(*.txt);;"));
    QCOMPARE(
        bytesOf(panel.widget.colorFile(true)),
        QByteArray("0\t1  2  3  255\n4.999999523162842\t1  2  3  255\n5\t7  8  9  255\n6\t7  8  9  255\n"));
    QCOMPARE(Prompt::takeShown().filter("se répète").size(), 1);
    panel.add(write("bad.qml", "<qgis><rasterrenderer type='paletted'/></qgis>"));
    QVERIFY(Prompt::takeShown().join("|").contains("paletted"));
}

void ColorReliefPanelTest::spreadFileFollowsDemAndTable()
{
    Panel panel;
    panel.add(write("a.txt", "0 1 1 1\n10 2 2 2\nnv 3 3 3\n"));
    QVERIFY(!panel.spread->isEnabled());
    panel.widget.setDem({"/dem.tif", 1, metres});
    panel.spread->click();
    const QString file = panel.widget.colorFile(false);
    QCOMPARE(QFileInfo(file).fileName(), QStringLiteral("quvoColorTable.txt"));
    QCOMPARE(bytesOf(file), QByteArray("nv\t3  3  3  255\n100\t1  1  1  255\n300\t2  2  2  255\n"));
    QVERIFY(panel.widget.colorFile(true).endsWith("/a.txt"));

    const QSignalSpy changed(&panel.widget, &colorReliefOptionsWidget::completeChanged);
    panel.widget.setDem({"/dem.tif", 1, {true, true, -5.0, 5.0}});
    QVERIFY(bytesOf(panel.widget.colorFile(false)).contains("\n-5\t"));
    QTRY_COMPARE(changed.count(), 1);
    panel.add(write("b.txt", "0 8 8 8\n10 9 9 9\n"));
    QCOMPARE(bytesOf(panel.widget.colorFile(false)), QByteArray("-5\t8  8  8  255\n5\t9  9  9  255\n"));
    QVERIFY(panel.widget.colorFile(false)
            != panel.widget.colorFile(false)); // a run may still read the former file

    // Colours of single values are meant for these values.
    Prompt::answerBeforehand({});
    panel.add(
        write("exact.txt", "# QGIS Generated Color Map Export File\nINTERPOLATION:EXACT\n1,9,9,9,255,a\n"));
    Prompt::takeShown();
    QVERIFY(!panel.widget.launchInput());
    QVERIFY(Prompt::takeShown().join("|").contains("exact.txt"));
    panel.add(write("b.txt", "0 8 8 8\n10 9 9 9\n"));

    const auto note = panel.widget.findChild<QLabel *>("m_pSpreadNote");
    QVERIFY(note->isHidden());
    panel.widget.setDem({"/dem.tif", 1, {true, true, 1.0, 1.2}});
    QVERIFY(!note->isHidden());

    panel.widget.setDem({"/other.tif", 1, {}, true}); // the choice stays while the values are being searched
    QVERIFY(panel.spread->isChecked());
    panel.widget.setDem({"/other.tif", 1, {}, false});
    QVERIFY(panel.predefined->isChecked() && !panel.spread->isEnabled());
    QVERIFY(panel.widget.colorFile(false).endsWith("/b.txt"));
    panel.widget.setDem({"/other.tif", 1, metres, false});
    QVERIFY(panel.spread->isChecked()); // the user's choice comes back

    write("b.txt", "0 8 8 8\n10 1 1 1\n"); // edited by another program
    QVERIFY(bytesOf(panel.widget.colorFile(false)).contains("300\t1  1  1"));
}

void ColorReliefPanelTest::exactStatistics()
{
    const QString dem = m_folder.filePath("dém.tif");
    QVERIFY(writeRaster(dem, 3, 2, {5, -9999, 7, 1, float(qQNaN()), float(qInf())}));
    Panel panel;
    panel.widget.setDem({dem, 1, metres});
    const auto link = panel.widget.findChild<QLabel *>("m_pLComputeExactStatisticsLink");
    QVERIFY(!link->isHidden());
    QSignalSpy computed(&panel.widget, &colorReliefOptionsWidget::extremesComputed);
    emit link->linkActivated("exact");
    QTRY_COMPARE(computed.count(), 1);
    const auto found = computed.takeFirst().first().value<Extremes>();
    QVERIFY(found.exact && found.minimum == 1.0 && found.maximum == 7.0);
    panel.widget.setDem({dem, 1, found});
    QVERIFY(link->isHidden());

    panel.widget.slot_computeExactStatistics();
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && qobject_cast<QuvoProgressDialog *>(window))
            QTest::mouseClick(window->findChild<QAbstractButton *>("m_pPBStop"), Qt::LeftButton);
    }
    QTest::qWait(50);
    QCOMPARE(computed.count(), 0);
    QVERIFY(!QFile::exists(dem + ".aux.xml"));
}

QTEST_MAIN(ColorReliefPanelTest)
#include "colorreliefpanel_test.moc"
