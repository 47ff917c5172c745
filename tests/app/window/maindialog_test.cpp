#include "app/startup/startupoptions.h"
#include "app/window/outputFileAdvancedOptionsDialog.h"
#include "dataset/chooser/ImageChooser.h"
#include "panels/controls/QEditableComboBox.h"
#include "tests/support/files.h"
#include "tests/support/maindialog.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

#include <utility>

class MainDialogTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init();

    void tabsKeepTheirIndexes();
    void panelsAreMadeWhenUsed();
    void inputAndProposal();
    void dataSource();
    void startDirectory();
    void typedInput();
    void badInputChangesNothing();
    void launchButton();
    void overwriteAsks();
    void wrongOptionsAreRefused();
    void outputIsNeverTheInput();
    void stopLeavesNothing();
    void outputOptions();
    void overviewsAreOptional();
    void failureIsShown();
    void closingDuringARun();
    void geometryAndRecentFilesComeBack();
    void colourButtonsShowTheTrueColour();
    void dropOpens();

private:
    void useTool(const QByteArray &script);
};

namespace
{

/// The dialog with access to the controls that these tests use.
struct Dialog : ShownDialog
{
    using ShownDialog::ShownDialog;
    QLineEdit *output() { return find<QLineEdit>("m_pLEOutputFile"); }
    QComboBox *input() { return find<QComboBox>("m_pCBInputListFile"); }
    QString resultText() { return result() ? result()->findChild<QLabel *>("m_pLText")->text() : QString(); }
    /// Chooses a format and clicks the boxes in the dialog of the output options. Clicks on disabled boxes are
    /// ignored.
    void changeOutput(const QString &format, const QStringList &boxes)
    {
        QTimer::singleShot(50, [format, boxes] {
            const auto options =
                qobject_cast<outputFileAdvancedOptionsDialog *>(QApplication::activeModalWidget());
            QVERIFY(options);
            const auto list = options->findChild<QComboBox *>();
            list->setCurrentIndex(list->findData(format));
            for (const QString &box : boxes)
                options->findChild<QAbstractButton *>(box)->click();
            options->accept();
        });
        find<QPushButton>("m_pPBOutputFileAdvancedOptions")->click();
    }
    /// The start of the next dialog for choosing a DEM.
    QString nextFolder()
    {
        find<QToolButton>("m_pPBSelectInputDEM")->click();
        return QuvoFilerDialog::takeShown().value(0).section('|', 1, 1);
    }
};

} // namespace

void MainDialogTest::init()
{
    setUpTest(64);
    QSettings("KARVEX", "Riglios")
        .setValue("LastGeometry/showPreview", false); // so that only the tools that a test launches run
}

/// Replaces the DEM tool by a shell script.
void MainDialogTest::useTool(const QByteArray &script)
{
    m_tools.dem = writeScript(path("tool.exe"), script);
}

void MainDialogTest::tabsKeepTheirIndexes()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    const auto tabs = dialog.find<QTabWidget>("m_pTabWidget");
    int index = 0;
    for (const auto &[process, product] : {std::pair{"shaded", "hillshade.tif"},
                                           {"slope", "slope.tif"},
                                           {"aspect", "aspect.tif"},
                                           {"tri_tpi_roughness", "roughness.tif"},
                                           {"intervisibility", "intervisibility.tif"},
                                           {"colorRelief", "color.tif"},
                                           {"contour", "contour_lines.shp"}}) {
        tabs->setCurrentIndex(index++);
        QCOMPARE(tabs->currentWidget()->objectName(), process + QStringLiteral("Tab"));
        const auto area = tabs->currentWidget()->findChild<QScrollArea *>();
        QVERIFY2(area && area->widget(), process);
        QCOMPARE(QString(area->widget()->metaObject()->className()), process + QStringLiteral("OptionsWidget"));
        QCOMPARE(dialog.output()->text(), path("dem_") + product);
    }
    QCOMPARE(tabs->count(), index);
}

/// The window appears with one panel. Another one that is shown later knows the DEM, and its options count.
void MainDialogTest::panelsAreMadeWhenUsed()
{
    quvoGdalUtilities window(m_tools, nullptr, {});
    QCOMPARE(panelCount(window), std::size_t(1));
    window.setInputDem(path("dem.tif"));
    const auto tabs = window.findChild<QTabWidget *>("m_pTabWidget");
    tabs->setCurrentWidget(window.findChild<QWidget *>("contourTab"));
    QCOMPARE(panelCount(window), std::size_t(2));
    const auto launch = window.findChild<QPushButton *>("m_pPBLaunchProcess");
    QVERIFY(!launch->isEnabled());
    const auto interval = window.findChild<QLineEdit *>("m_pLEElevationInterval");
    QVERIFY(interval->toolTip().contains("-i"));
    QTRY_VERIFY(
        window.findChild<QLabel *>("m_pForecastLabel")->text().contains("<a ")); // the extremes are known
    interval->setText("100");
    QTRY_VERIFY(launch->isEnabled());
    tabs->setCurrentWidget(window.findChild<QWidget *>("intervisibilityTab"));
    QCOMPARE(panelCount(window), std::size_t(3));
    window.findChild<QPushButton *>("m_pPBAddPoint")->click();
    const auto options = std::get<IntervisibilityOptions>(window.recipe().options);
    QVERIFY(options.observers.value(0).x > 1000.0); // the middle of the DEM
}

void MainDialogTest::inputAndProposal()
{
    QVERIFY(writeRaster(path("three.tif"), 4, 4, QVector<float>(16, 1), 3));
    Dialog dialog(m_tools);
    QVERIFY(!dialog.launchButton()->isEnabled());
    QuvoFilerDialog::answerBeforehand({path("three.tif"), path("dem.tif")});
    QTest::mouseClick(dialog.find<QToolButton>("m_pPBSelectInputDEM"), Qt::LeftButton);
    QCOMPARE(dialog.input()->currentText(), path("three.tif"));
    QCOMPARE(dialog.find<QComboBox>("m_pCBBand")->count(), 3);
    QCOMPARE(dialog.output()->text(), path("three_hillshade.tif"));
    QVERIFY(dialog.launchButton()->isEnabled());

    QTest::mouseClick(dialog.find<QToolButton>("m_pPBSelectInputDEM"), Qt::LeftButton);
    QCOMPARE(dialog.output()->text(), path("dem_hillshade.tif"));
    const QStringList shown = QuvoFilerDialog::takeShown();
    QVERIFY2(shown.at(1).contains("|" + m_folder->path() + "|"), qPrintable(shown.at(1)));
    QVERIFY(shown.at(0).startsWith("Choisir un Modèle Numérique de Terrain...|"));

    // A name that the user wrote stays.
    dialog.output()->selectAll();
    QTest::keyClicks(dialog.output(), "mine.tif");
    dialog.window.setInputDem(path("three.tif"));
    QCOMPARE(dialog.output()->text(), QStringLiteral("mine.tif"));
    QCOMPARE(dialog.input()->itemText(1), path("dem.tif"));
}

/// The menu of the input button: its first entry is what the button does, the second is the chooser.
void MainDialogTest::dataSource()
{
    QVERIFY(writeRaster(path("three.tif"), 4, 4, QVector<float>(16, 1), 3));
    Dialog dialog(m_tools);
    const auto button = dialog.find<QToolButton>("m_pPBSelectInputDEM");
    QTimer::singleShot(0, [button] {
        QCOMPARE(QApplication::activePopupWidget(), button->menu());
        button->menu()->close();
    });
    QTest::keyClick(button, Qt::Key_Down);
    const QList<QAction *> entries = button->menu()->actions();
    QuvoFilerDialog::answerBeforehand({path("dem.tif")});
    entries.at(0)->trigger();
    QCOMPARE(dialog.input()->currentText(), path("dem.tif"));

    QTimer::singleShot(0, [this] {
        const auto chooser = qobject_cast<ImageChooser *>(QApplication::activeModalWidget());
        QVERIFY(chooser);
        QCOMPARE(chooser->name(), path("dem.tif"));
        chooser->setSource(path("three.tif"));
        const auto bands = chooser->findChild<QTreeWidget *>("m_pParts");
        bands->setCurrentItem(bands->topLevelItem(1));
        chooser->accept();
    });
    entries.at(1)->trigger();
    QCOMPARE(dialog.input()->currentText(), path("three.tif"));
    QCOMPARE(dialog.find<QComboBox>("m_pCBBand")->currentText(), QString("2"));
    QuvoLanguageManager::getInstance()->changeLanguage("ENGLISH");
    QTRY_COMPARE(entries.at(1)->text(), QString("Data source..."));
}

void MainDialogTest::startDirectory()
{
    Dialog dialog(m_tools);
    dialog.window.setKeepStartingDir(true);
    QCOMPARE(dialog.nextFolder(), QDir::currentPath());
    dialog.window.setInputDem(path("dem.tif")); // ends the option, which is for the first dialog
    QCOMPARE(dialog.nextFolder(), path("dem.tif"));
}

void MainDialogTest::typedInput()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QVERIFY(QFile::copy(path("dem.tif"), path("dem.tif2")));
    QTest::keyClick(dialog.input()->lineEdit(), Qt::Key_End);
    QTest::keyClick(dialog.input()->lineEdit(), Qt::Key_2);
    QVERIFY(!dialog.launchButton()->isEnabled()); // the text is not the path of the open DEM
    QTRY_VERIFY(dialog.launchButton()->isEnabled());
    QCOMPARE(dialog.input()->itemText(0), path("dem.tif2"));

    QTest::keyClick(dialog.input()->lineEdit(), Qt::Key_3);
    QTest::qWait(400);
    QCOMPARE(Prompt::takeShown(), QStringList()); // no warning while the user types
    QTest::keyClick(dialog.input()->lineEdit(), Qt::Key_Return);
    QCOMPARE(Prompt::takeShown().size(), 1);
    QCOMPARE(dialog.input()->currentText(), path("dem.tif23"));
}

void MainDialogTest::badInputChangesNothing()
{
    QVERIFY(writeRaster(path("three.tif"), 4, 4, QVector<float>(16, 1), 3));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("three.tif"));
    dialog.find<QComboBox>("m_pCBBand")->setCurrentIndex(2);
    dialog.window.setInputDem(path("<b>%1"));
    QCOMPARE(Prompt::takeShown(),
             QStringList{"Attention: Le fichier d'entrée n'est pas valide\n\n" + path("<b>%1")
                         + "\n\nCe fichier n'existe pas."});
    QCOMPARE(dialog.input()->currentText(), path("three.tif"));
    QCOMPARE(dialog.find<QComboBox>("m_pCBBand")->currentIndex(), 2);
    QVERIFY(dialog.launchButton()->isEnabled());
}

void MainDialogTest::launchButton()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.output()->clear();
    QVERIFY(!dialog.launchButton()->isEnabled());
    dialog.output()->setText("a.tif");
    QVERIFY(dialog.launchButton()->isEnabled());
    const auto scale = dialog.find<QWidget>("shadedTab")->findChild<QEditableComboBox *>();
    scale->lineEdit()->selectAll();
    QTest::keyClick(scale->lineEdit(), Qt::Key_Delete);
    QTRY_VERIFY(!dialog.launchButton()->isEnabled());
}

void MainDialogTest::overwriteAsks()
{
    writeFile(path("old.tif"), "precious");
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.output()->setText(path("old.tif"));
    Prompt::answerBeforehand({false, true});
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTest::qWait(50);
    QCOMPARE(bytesOf(path("old.tif")), QByteArray("precious"));
    QVERIFY(Prompt::takeShown().constFirst().contains(path("old.tif")));
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.result());
    QVERIFY(bytesOf(path("old.tif")).startsWith("II*"));
}

/// A ratio that the tool would accept and make a wrong product of.
void MainDialogTest::wrongOptionsAreRefused()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.output()->setText(path("a.tif"));
    for (const char *ratio : {"0", "1 -of PNG"}) {
        dialog.find<QWidget>("shadedTab")->findChild<QEditableComboBox *>()->showTyped(ratio);
        QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
        const QStringList shown = Prompt::takeShown();
        QVERIFY2(shown.size() == 1 && shown.first().contains(ratio), ratio);
        QVERIFY(!QFile::exists(path("a.tif")));
    }
}

void MainDialogTest::outputIsNeverTheInput()
{
    const QByteArray before = bytesOf(path("dem.tif"));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    for (const QString &name : {path("dem.tif"), path("dem"), path("no such folder/a.tif"), path("a.png")}) {
        dialog.output()->setText(name);
        QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
        const QStringList shown = Prompt::takeShown();
        QCOMPARE(shown.size(), 1);
        QVERIFY2(shown.first().startsWith("Attention: Le fichier de sortie n'est pas valide.\n" + name),
                 qPrintable(shown.first()));
    }
    QuvoFilerDialog::answerBeforehand({path("dem.tif")});
    QTest::mouseClick(dialog.find<QPushButton>("m_pPBSelectOutputFile"), Qt::LeftButton);
    QCOMPARE(Prompt::takeShown().size(), 1);
    QCOMPARE(dialog.output()->text(), path("a.png")); // the refused name is not shown
    QCOMPARE(bytesOf(path("dem.tif")), before);
}

void MainDialogTest::stopLeavesNothing()
{
    useTool("echo half > \"$3\"; printf '0...10...20'; sleep 60\n");
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(!partOf(path("dem_hillshade.tif")).isEmpty());
    QTRY_VERIFY(stopButton());
    QTest::mouseClick(stopButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.result());
    QCOMPARE(dialog.resultText(), QStringLiteral("Le traitement a été annulé."));
    QCOMPARE(dialog.result()->windowTitle(), QStringLiteral("Fin du traitement"));
    QVERIFY(!QFile::exists(path("dem_hillshade.tif")));
    QVERIFY(!stopButton());
}

void MainDialogTest::outputOptions()
{
    QVERIFY(writeHill(path("dem.tif"), 600));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.changeOutput("PNG", {"m_pChBTiled"});
    QCOMPARE(dialog.output()->text(), path("dem_hillshade.png"));
    dialog.changeOutput("GTiff", {"m_pChBWorldFile", "m_pChBTiled", "m_pChBWorldFile", "m_pChBOverviews"});
    QCOMPARE(dialog.output()->text(), path("dem_hillshade.tif"));
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.result());
    QCOMPARE(dialog.resultText(),
             QStringLiteral("Le traitement s'est déroulé avec succès et le résultat est disponible."));
    QVERIFY(QFile::exists(path("dem_hillshade.tfw")) && QFile::exists(path("dem_hillshade.tif.ovr")));
    dialog.result()->close();

    const auto tabs = dialog.find<QTabWidget>("m_pTabWidget");
    tabs->setCurrentWidget(dialog.find<QWidget>("contourTab"));
    QVERIFY(dialog.output()->text().endsWith(".shp")); // raster and vector products have separate options
    dialog.changeOutput("GPKG", {});
    QVERIFY(dialog.output()->text().endsWith(".gpkg"));
    tabs->setCurrentWidget(dialog.find<QWidget>("intervisibilityTab"));
    dialog.changeOutput("PNG", {}); // the tool writes no other format
    QVERIFY(dialog.output()->text().endsWith(".tif"));
}

void MainDialogTest::overviewsAreOptional()
{
    QVERIFY(writeHill(path("dem.tif"), 600));
    const QString tool = m_tools.dem;
    for (const char *script : {"echo half > \"$2.ovr\"; printf '0...10'; sleep 60\n",
                               "echo half > \"$2.ovr\"; echo 'no room' >&2; exit 1\n"}) {
        useTool(script);
        m_tools.batch = std::exchange(m_tools.dem, tool);
        Dialog dialog(m_tools);
        dialog.window.setInputDem(path("dem.tif"));
        dialog.output()->setText(path("vues.tif"));
        Prompt::answerBeforehand({true});
        dialog.changeOutput("GTiff", {"m_pChBOverviews"});
        QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
        QTRY_VERIFY(QFile::exists(partOf(path("vues.tif")) + ".ovr") || dialog.result());
        if (QByteArray(script).contains("sleep")) {
            QTRY_VERIFY(stopButton());
            QTest::mouseClick(stopButton(), Qt::LeftButton);
        }
        QTRY_VERIFY(dialog.result());
        QVERIFY2(dialog.resultText().contains("complet sans elles"), qPrintable(dialog.resultText()));
        QVERIFY(QFile::exists(path("vues.tif")) && !QFile::exists(path("vues.tif.ovr")));
    }
}

void MainDialogTest::failureIsShown()
{
    useTool("echo half > \"$3\"; echo 'ERROR 9: <b>no</b>' >&2; exit 5\n");
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.result());
    QCOMPARE(dialog.resultText(),
             QStringLiteral("Une erreur est survenue lors de la création de l'image de sortie.\n\n<b>no</b>"));
    QCOMPARE(dialog.result()->windowTitle(), QStringLiteral("Fin du traitement"));
    const QString details = dialog.result()->findChild<QPlainTextEdit *>()->toPlainText();
    QVERIFY(details.contains("ERROR 9: <b>no</b>") && details.contains("5") && details.contains("hillshade"));
    QVERIFY(!QFile::exists(path("dem_hillshade.tif")));
    dialog.result()->close();

    useTool("echo half > \"$3\"\n"); // ends with exit code 0, but its product is not valid
    QTRY_VERIFY(!dialog.result());
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.result());
    QVERIFY(dialog.resultText().contains("ne peut pas être ouvert") && !dialog.resultText().contains(".part-"));
    QVERIFY(!QFile::exists(path("dem_hillshade.tif")));
}

void MainDialogTest::closingDuringARun()
{
    useTool("echo half > \"$3\"; sleep 60\n");
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(!partOf(path("dem_hillshade.tif")).isEmpty());
    Prompt::answerBeforehand({false, true});
    dialog.window.close();
    QVERIFY(dialog.window.isVisible());
    dialog.window.close();
    QVERIFY(!dialog.window.isVisible());
    QVERIFY(!QFile::exists(path("dem_hillshade.tif")));
    QCOMPARE(Prompt::takeShown().size(), 2);

    dialog.window.show();
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY(!partOf(path("dem_hillshade.tif")).isEmpty());
    dialog.window.closeAtOnce(); // asks nothing
    QVERIFY(!dialog.window.isVisible() && !dialog.result());
    QVERIFY(!QFile::exists(path("dem_hillshade.tif")));
    QCOMPARE(Prompt::takeShown(), QStringList());
}

void MainDialogTest::geometryAndRecentFilesComeBack()
{
    for (const QSize size : {QSize(780, 540), QSize(785, 550)}) {
        const QPoint place(3, 4); // where the frame fits on the screen
        {
            Dialog dialog(m_tools);
            dialog.window.setInputDem(path("dem.tif"));
            dialog.window.resize(size);
            dialog.window.move(place);
            dialog.window.close();
        }
        Dialog dialog(m_tools);
        QCOMPARE(dialog.window.pos(), place);
        QCOMPARE(dialog.window.width(), size.width()); // the screen of the offscreen platform bounds the height
        QCOMPARE(dialog.input()->count(), 1);
        QCOMPARE(dialog.input()->itemText(0), path("dem.tif"));
        QCOMPARE(dialog.input()->currentText(), QString());
    }
}

void MainDialogTest::colourButtonsShowTheTrueColour()
{
    qApp->setStyleSheet(composeStyleSheet({}));
    Dialog dialog(m_tools);
    dialog.find<QTabWidget>("m_pTabWidget")->setCurrentWidget(dialog.find<QWidget>("intervisibilityTab"));
    const QImage button = dialog.find<QPushButton>("m_pPBColorZNO")->grab().toImage();
    for (const double height : {0.25, 0.75}) // a gloss would lighten one of them
        QCOMPARE(button.pixelColor(button.width() / 4, static_cast<int>(height * button.height())),
                 QColor(213, 94, 0));
    qApp->setStyleSheet({});
}

void MainDialogTest::dropOpens()
{
    Dialog dialog(m_tools);
    QVERIFY(!dialog.input()->lineEdit()->acceptDrops() && !dialog.output()->acceptDrops());
    QVERIFY(dialog.drop(path("dem.tif")));
    QCOMPARE(dialog.input()->currentText(), path("dem.tif"));
}

QTEST_MAIN(MainDialogTest)
#include "maindialog_test.moc"
