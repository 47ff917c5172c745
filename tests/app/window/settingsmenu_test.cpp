#include "app/preview/PreviewDialog.h"
#include "app/window/RecentRunsDialog.h"
#include "app/window/TilesDialog.h"
#include "app/window/dialogs/HelpDialog.h"
#include "app/window/mnemonics.h"
#include "tests/support/files.h"
#include "tests/support/maindialog.h"
#include "tests/support/programs.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextBrowser>
#include <QToolButton>

Q_DECLARE_METATYPE(ProcessOptions)

/// The settings menu of the window: saving and opening settings, the copied command, recent runs, languages.
class SettingsMenuTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { setUpTest(64); }

    void settingsComeBack_data();
    void settingsComeBack();
    void vectorSourceBecomesRows();
    void badSettingsChangeNothing_data();
    void badSettingsChangeNothing();
    void partsThatCannotBeShownAreReported();
    void copiedCommandMakesTheProduct_data();
    void copiedCommandMakesTheProduct();
    void recentRuns();
    void tiles();
    void helpOpensThePageOfTheTab();
    void languages();

private:
    QString write(const QString &name, const QByteArray &text) const { return writeFile(path(name), text); }
    Recipe recipe(const ProcessOptions &options, const QString &output) const
    {
        Recipe recipe{.process = processWord(options),
                      .input = path("dem.tif"),
                      .output = path(output),
                      .options = options};
        completeOptions(recipe.options, {"skyline", "statistics"}, m_folder->path());
        return recipe;
    }
    static void addRows();
};

namespace
{

struct Dialog : ShownDialog
{
    using ShownDialog::ShownDialog;
    void trigger(const char *action) { find<QAction>(action)->trigger(); }
    void launch()
    {
        QTRY_VERIFY(launchButton()->isEnabled());
        launchButton()->click();
        QTRY_VERIFY(result());
        result()->close();
        QTRY_VERIFY(!result());
    }
};

/// All texts of the window's labels, buttons, tabs and lists.
QStringList textsOf(const QWidget &window)
{
    QStringList texts{window.windowTitle()};
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (qobject_cast<const QTabBar *>(widget->parent()))
            continue; // Qt's own arrows, whose texts do not change with the language
        for (const char *property : {"text", "title", "toolTip", "placeholderText", "accessibleName"})
            texts += widget->property(property).toString();
        if (const auto combo = qobject_cast<const QComboBox *>(widget)) {
            for (int row = 0; row < combo->count(); ++row)
                texts += combo->itemText(row);
        }
    }
    texts.removeAll(QString());
    return texts;
}

// No option has its default.
const ShadedOptions shaded{.exaggeration = 2.5,
                           .scaleIndex = -1,
                           .scaleText = "0.5",
                           .compass = 90.0,
                           .altitude = 60,
                           .computeEdges = true,
                           .zevenbergenThorne = true};
const SlopeOptions slope{
    .percent = true, .scaleIndex = -1, .scaleText = "2.5", .computeEdges = false, .zevenbergenThorne = true};

const QList<QuvoColorDef> ramp{{QuvoColorDef::noDataValue, QColor(1, 2, 3, 0), false},
                               {0.0, QColor(10, 20, 30), false},
                               {100.5, QColor(200, 100, 50, 128), false}};

} // namespace

void SettingsMenuTest::initTestCase()
{
    setUpProgram();
    qputenv("SHAPE_ENCODING", ""); // the program sets it, a shell does not
}

/// For every process, one row in which no option has its default, and one with few options.
void SettingsMenuTest::addRows()
{
    QTest::addColumn<ProcessOptions>("options");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *name, const ProcessOptions &options, const QString &output) {
        QTest::newRow(name) << options << output;
    };
    row("hillshade", shaded, "a.tif");
    row("hillshade, list",
        ShadedOptions{.exaggeration = 100.0, .scaleIndex = 3, .compass = 359.0, .altitude = 0},
        "dem_hillshade.tif");
    row("slope", slope, "b.tif");
    row("slope, list", SlopeOptions{.scaleIndex = 2}, "b.tif");
    row("aspect",
        AspectOptions{
            .trigonometric = true, .zeroForFlat = false, .computeEdges = false, .zevenbergenThorne = true},
        "c.tif");
    row("TRI", TerrainIndexOptions{}, "d.tif");
    ContourOptions contours{
        .interval = 10.12345, .attribute = "", .threeD = true, .noDataValue = -32768.0, .offset = 0.5};
    row("contour", contours, "e.shp");
    contours = {.attribute = "Zé", .fixedLevels = "450 500.5", .everyValueValid = true};
    row("contour, levels", contours, "e.shp");
    row("colours", ColorReliefOptions{.table = "mine", .alpha = true, .colors = ramp}, "f.tif");
    row("colours, spread", ColorReliefOptions{.table = "mine", .spread = true, .colors = ramp}, "f.tif");
    row("colours, given range",
        ColorReliefOptions{.table = "mine", .spread = true, .minimum = -5.5, .maximum = 3000.0, .colors = ramp},
        "f.tif");
    IntervisibilityOptions observers;
    observers.observers = {
        {.x = 500320.5, .y = 5099680.25},
        {.x = 500100.0, .y = 5099900.0, .height = 900.0, .mode = AltitudeMode::Absolute, .maxDistance = 0.0},
        {.enabled = false, .height = 2.5, .maxDistance = 5.0}};
    observers.combined = true;
    observers.combination = QStringLiteral("AND");
    observers.groundHeight = 1.25;
    observers.visibleColor = QStringLiteral("#010203");
    observers.hiddenColor = QStringLiteral("#040506");
    observers.noDataColor = QStringLiteral("#ffffff");
    row("intervisibility", observers, "g.tif");
    observers = {};
    observers.observers = {{.x = 500320.0, .y = 5099680.0, .height = 30.0, .maxDistance = 500.0}};
    observers.groundHeight.reset();
    row("intervisibility, one", observers, "g.tif");
    observers.result = QStringLiteral("height");
    observers.ramp = QStringLiteral("magma");
    observers.skyline = QStringLiteral("l'\"horizon\" é.json");
    observers.skylineStep = 7.5;
    observers.statistics = QStringLiteral("s.csv");
    row("intervisibility, heights", observers, "g.tif");
}

void SettingsMenuTest::settingsComeBack_data()
{
    addRows();
}

void SettingsMenuTest::settingsComeBack()
{
    QFETCH(ProcessOptions, options);
    QFETCH(QString, output);
    const Recipe settings = recipe(options, output);
    const QString file = path("réglages 1.5.json");
    {
        Dialog dialog(m_tools);
        dialog.window.setRecipe(settings);
        QVERIFY2(dialog.window.recipe() == settings, writeRecipe(dialog.window.recipe()).constData());
        QVERIFY(dialog.launchButton()->isEnabled());
        QuvoFilerDialog::answerBeforehand({path("réglages 1.5")}); // the extension of settings files is added
        dialog.trigger("m_pActionSave");
    }
    QVERIFY(!bytesOf(file).contains("quvodemtoolbox-")); // no temporary file of the window
    Dialog other(m_tools);
    other.window.setInputDem(path("dem.tif"));
    const auto tabs = other.find<QTabWidget>("m_pTabWidget");
    tabs->setCurrentIndex((tabs->currentIndex() + 3) % tabs->count());
    QuvoFilerDialog::answerBeforehand({file});
    other.trigger("m_pActionOpen");
    QVERIFY2(other.window.recipe() == settings, writeRecipe(other.window.recipe()).constData());
    other.drop(file);
    QVERIFY(other.window.recipe() == settings);
    QCOMPARE(Prompt::takeShown(), QStringList{"Les réglages sont enregistrés dans « réglages 1.5.json »."});
}

void SettingsMenuTest::vectorSourceBecomesRows()
{
    const QString source = write("vue.csv", "id,WKT\n1,POINT(500320 5099680)\n");
    const QByteArray json = R"({"format": 1, "process": "intervisibility", "options": {"points": "vue.csv",
        "height": 25, "mode": "Absolute", "distance": 300}})";
    Dialog dialog(m_tools);
    dialog.drop(write("vue.json", json));
    QCOMPARE(Prompt::takeShown().size(), 1); // without a DEM the observers have no coordinate system
    dialog.window.setInputDem(path("dem.tif"));
    dialog.drop(path("vue.json"));
    QCOMPARE(Prompt::takeShown(), QStringList());
    const auto options = std::get<IntervisibilityOptions>(dialog.window.recipe().options);
    QCOMPARE(options.observers.size(), 1);
    const ObserverPoint expected{.x = 500320.0,
                                 .y = 5099680.0,
                                 .height = 25.0,
                                 .mode = AltitudeMode::Absolute,
                                 .maxDistance = 300.0,
                                 .name = QStringLiteral("1")}; // a CSV holds texts
    QVERIFY(options.observers.first() == expected && options.points.isEmpty());
}

void SettingsMenuTest::badSettingsChangeNothing_data()
{
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char *name, const char *process, const QByteArray &rest) {
        QTest::newRow(name) << R"({"format": 1, "process": ")" + QByteArray(process) + "\", " + rest + '}';
    };
    QTest::newRow("no JSON") << QByteArray("II*");
    row("arguments in a ratio", "slope", R"("options": {"scaleText": "2 -alt 3"})");
    row("arguments in levels", "contour", R"("options": {"fixedLevels": "1 -a x"})");
    row("format of the product", "slope", R"("outputFormat": "nO/such")");
    row("colour", "intervisibility", R"("options": {"hiddenColor": "octarine"})");
    row("colour table", "color-relief", R"("options": {"table": "/no/such.txt"})");
    row("range", "color-relief", R"("options": {"minimum": 3, "maximum": 2})");
    row("observers' file", "intervisibility", R"("options": {"points": "/no/such.gpx"})");
}

void SettingsMenuTest::badSettingsChangeNothing()
{
    QFETCH(QByteArray, json);
    Dialog dialog(m_tools);
    dialog.window.setRecipe(recipe(shaded, "a.tif"));
    const Recipe before = dialog.window.recipe();
    dialog.drop(write("bad.json", json));
    QVERIFY(dialog.window.recipe() == before);
    const QStringList shown = Prompt::takeShown();
    QCOMPARE(shown.size(), 1);
    QVERIFY2(shown.first().startsWith("Attention: Les réglages ne peuvent pas être repris.\n\n"),
             qPrintable(shown.first()));
}

void SettingsMenuTest::partsThatCannotBeShownAreReported()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.drop(write("gone.json", R"({"format": 1, "process": "slope", "input": "gone.tif", "band": 4,
        "output": "gone_slope.tif", "outputFormat": "gtiff", "tiled": true, "options": {"percent": true}})"));
    const QStringList shown = Prompt::takeShown();
    QCOMPARE(shown.size(), 1);
    QVERIFY2(shown.first().contains(path("gone.tif")) && shown.first().contains("bande 4"),
             qPrintable(shown.first()));
    Recipe expected =
        recipe(SlopeOptions{.percent = true}, "dem_slope.tif"); // not the name proposed for the missing DEM
    expected.outputOptions.format = QStringLiteral("GTiff");
    expected.outputOptions.tiled = true;
    QVERIFY2(dialog.window.recipe() == expected, writeRecipe(dialog.window.recipe()).constData());
}

void SettingsMenuTest::copiedCommandMakesTheProduct_data()
{
    addRows();
    QTest::newRow("overviews") << ProcessOptions(ShadedOptions{}) << "tiled.tif";
    QTest::newRow("percentages") << ProcessOptions(ColorReliefOptions{.table = "percent.txt"}) << "f.tif";
}

void SettingsMenuTest::copiedCommandMakesTheProduct()
{
    QFETCH(ProcessOptions, options);
    QFETCH(QString, output);
    auto *colors = std::get_if<ColorReliefOptions>(&options);
    if (colors && colors->colors.isEmpty())
        colors->table = write(colors->table, "0% 0 0 0\n100% 200 9 9\n");
    Recipe settings = recipe(options, output);
    settings.outputOptions.tiled = settings.outputOptions.overviews = output == QLatin1String("tiled.tif");
    if (settings.outputOptions.overviews)
        QVERIFY(writeHill(path("dem.tif"), 600));
    QString command;
    {
        Dialog dialog(m_tools);
        dialog.window.setRecipe(settings);
        QTRY_VERIFY(dialog.launchButton()->isEnabled());
        dialog.trigger("m_pActionCopy");
        command = QApplication::clipboard()->text();
        dialog.launch();
    } // this removed the temporary files of the window
    QHash<QString, QByteArray> products;
    const QDir folder(m_folder->path());
    for (const QString &name :
         folder.entryList({QFileInfo(settings.output).completeBaseName() + ".*", "s.csv", "*horizon*"})) {
        products.insert(name, bytesOf(path(name)));
        QVERIFY(QFile::remove(path(name)));
    }
    QCOMPARE(products.contains(QFileInfo(settings.output).fileName() + ".ovr"),
             settings.outputOptions.overviews);
    QProcessEnvironment usual = QProcessEnvironment::systemEnvironment();
    usual.remove("SHAPE_ENCODING");
    QVERIFY(!products.isEmpty());
    QList<QStringList> others{{"sh", "-c", command}};
    if (!colors || !colors->spread || colors->minimum) // the window spreads a table over estimated elevations
        others += {QUVO_TREE "/QuvoDemBatch", write("réglages.json", writeRecipe(settings))};
    for (const QStringList &words : others) {
        const Ended ended = runProgram(words.first(), words.mid(1), usual);
        QVERIFY2(ended.code == 0, qPrintable(words.join(' ') + ended.error));
        QVERIFY(!QFile::exists(path("dem.tif.aux.xml")));
        for (auto product = products.cbegin(); product != products.cend(); ++product) {
            QVERIFY2(bytesOf(path(product.key())) == product.value(), qPrintable(product.key()));
            QVERIFY(QFile::remove(path(product.key())));
        }
    }
}

void SettingsMenuTest::recentRuns()
{
    const Recipe first = recipe(slope, "b&b.tif");
    Dialog dialog(m_tools);
    dialog.window.setRecipe(first);
    dialog.launch();
    const ColorReliefOptions colors{.table = "mine", .alpha = true, .colors = ramp};
    dialog.window.setRecipe(recipe(colors, "f.tif"));
    m_tools.dem = QStringLiteral("/bin/false");
    {
        Dialog failing(m_tools);
        failing.window.setRecipe(recipe(colors, "f.tif"));
        failing.launch();
    }
    m_tools.dem = writeScript(path("slow.sh"), "sleep 60\n");
    {
        Dialog closed(m_tools); // closing it stops the run
        closed.window.setRecipe(recipe(AspectOptions{}, "c.tif"));
        closed.launchButton()->click();
        Prompt::answerBeforehand({true});
        closed.window.close();
    }
    QList<RecentRun> runs = readRecentRuns(recentRunsFile());
    QCOMPARE(runs.size(), 3);
    QCOMPARE(int(runs.first().end), int(RunEnd::Stopped));
    QVERIFY(runs.takeFirst().recipe == recipe(AspectOptions{}, "c.tif"));
    QCOMPARE(int(runs.at(0).end), int(RunEnd::Failed));
    QCOMPARE(int(runs.at(1).end), int(RunEnd::Done));
    QVERIFY(runs.at(0).recipe == recipe(colors, "f.tif") && runs.at(1).recipe == first);

    const auto menu = dialog.find<QToolButton>("m_pTBSettings")->menu()->actions().at(4)->menu();
    emit menu->aboutToShow();
    QCOMPARE(menu->actions().size(), 5); // three runs, a line, and all of them
    QVERIFY(menu->actions().at(2)->text().contains("Pentes · dem.tif · Terminé"));
    menu->actions().at(2)->trigger();
    QVERIFY(dialog.window.recipe() == first);

    menu->actions().last()->trigger();
    const auto list = dialog.window.findChild<RecentRunsDialog *>();
    const auto showResult = list->findChild<QPushButton *>("m_pPBShowResult");
    QVERIFY(!showResult->isEnabled()); // the newest run was stopped
    list->findChild<QTableWidget *>()->selectRow(2);
    showResult->click();
    QVERIFY(list->findChild<PreviewDialog *>());
    emit list->findChild<QTableWidget *>()->cellDoubleClicked(1, 0);
    QVERIFY(dialog.window.recipe() == recipe(colors, "f.tif"));

    for (int run = 0; run < 12; ++run)
        QVERIFY(addRecentRun(recentRunsFile(), runs.first()));
    emit menu->aboutToShow();
    QCOMPARE(menu->actions().size(), 12); // ten runs, a line, and all of them
}

void SettingsMenuTest::tiles()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    emit dialog.find<QToolButton>("m_pTBSettings")->menu()->aboutToShow();
    dialog.trigger("m_pActionTiles");
    const auto tiles = dialog.window.findChild<TilesDialog *>();
    QVERIFY(tiles);
    // The batch program stands in the build's tree, and not beside this test.
    TilesDialog own(dialog.window.recipe(), QStringLiteral(QUVO_TREE), nullptr);
    const auto folder = own.findChild<QLineEdit *>("m_pLEFolder");
    const auto command = own.findChild<QPlainTextEdit *>("m_pCommand");
    const auto plan = own.findChild<QPushButton *>("m_pPBPlan");
    QCOMPARE(folder->text(), path("dem_hillshade_tiles"));
    folder->setText(path("les \"tuiles\" é"));
    own.findChild<QSpinBox *>("m_pSBSide")->setValue(256);
    plan->click();
    QVERIFY(!plan->isEnabled() && command->toPlainText().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(command->isEnabled(), 10000);
    QVERIFY(own.findChild<QLabel *>("m_pNote")->text().contains("256"));
    QCOMPARE(runProgram("/bin/sh", {"-c", command->toPlainText()}).code, 0); // as it is shown
    QVERIFY(QFile::exists(path("les \"tuiles\" é/hillshade.vrt")));
    const auto ways = own.findChild<QComboBox *>("m_pCBWay");
    ways->setCurrentIndex(static_cast<int>(TileWay::Snakemake));
    QVERIFY(command->toPlainText().contains("/scale/Snakefile")
            && command->toPlainText().contains("snakemake.json"));
    ways->setCurrentIndex(static_cast<int>(TileWay::SlurmArray));
    QVERIFY(command->toPlainText().contains("/scale/slurm/array.sh"));
    ways->setCurrentIndex(3);
    QCOMPARE(runProgram("/bin/sh", {"-c", command->toPlainText().section('\n', 0, 0)}).code, 0);
    QVERIFY(command->toPlainText().contains("é"));

    // What the plan was made for has changed.
    folder->setText(path("ailleurs"));
    QVERIFY(!command->isEnabled() && command->toPlainText().isEmpty());
    folder->setText(path("dem.tif/no folder"));
    plan->click();
    QVERIFY(Prompt::takeShown().value(0).contains("no folder"));
    Recipe partial = dialog.window.recipe();
    partial.part = QRect(0, 0, 5, 5);
    TilesDialog refused(partial, QStringLiteral(QUVO_TREE), nullptr);
    refused.findChild<QPushButton *>("m_pPBPlan")->click();
    QTRY_VERIFY(refused.findChild<QPushButton *>("m_pPBPlan")->isEnabled());
    QVERIFY(Prompt::takeShown().value(0).contains("part"));
    QVERIFY(!refused.findChild<QPlainTextEdit *>("m_pCommand")->isEnabled());
}

void SettingsMenuTest::helpOpensThePageOfTheTab()
{
    Dialog dialog(m_tools);
    dialog.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    const auto tabs = dialog.find<QTabWidget>("m_pTabWidget");
    QSet<QString> pages;
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        QTest::keyClick(&dialog.window, Qt::Key_F1);
        const auto help = dialog.window.findChild<HelpDialog *>();
        QVERIFY(help);
        const QString title = help->findChild<QTextBrowser *>()->toPlainText().section('\n', 0, 0);
        pages += title;
        // The page has the name of the tab, but for that of the terrain indices.
        const QString name = withoutMnemonic(tabs->tabText(tab));
        QVERIFY2(title == name || help->page() == QLatin1String("terrain_indices"), qPrintable(name + title));
        dialog.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    }
    QCOMPARE(pages.size(), tabs->count());
}

void SettingsMenuTest::languages()
{
    QuvoLanguageManager *manager = QuvoLanguageManager::getInstance();
    const QString dictionaries = manager->messagesPath();
    QCOMPARE(chosenLanguage("FRENCH", dictionaries), QStringLiteral("FRENCH"));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.trigger("m_pActionHelp");
    const auto guide = dialog.window.findChild<HelpDialog *>()->findChild<QTextBrowser *>();
    const auto button = dialog.find<QToolButton>("m_pTBSettings");
    const QList<QAction *> actions = button->menu()->actions();
    const QList<QAction *> choices = button->menu()->findChild<QMenu *>("m_pLanguageMenu")->actions();
    const QString french = guide->toPlainText();
    QVERIFY(french.contains("relief") && choices.at(0)->isChecked());
    const QString recent = actions.at(4)->text();

    choices.at(1)->trigger();
    QTRY_COMPARE(dialog.window.windowTitle(), QStringLiteral("Relief tool box"));
    QCOMPARE(actions.at(4)->text(), QStringLiteral("Recent runs"));
    QVERIFY(recent != actions.at(4)->text() && french != guide->toPlainText());
    QVERIFY(button->toolTip().contains("language"));
    QTRY_COMPARE(dialog.find<QWidget>("contourTab")->findChild<QLineEdit *>()->locale().language(),
                 QLocale::English); // the locale in which a panel formats numbers
    QCOMPARE(chosenLanguage("FRENCH", dictionaries), QStringLiteral("ENGLISH"));
    QCOMPARE(QSettings("KARVEX", "Riglios").value("Interface/Language").toString(), QStringLiteral("ENGLISH"));

    // The window has the same texts as one that was opened in this language.
    dialog.window.findChild<HelpDialog *>()->close();
    Dialog fresh(m_tools);
    fresh.window.setInputDem(path("dem.tif"));
    QTRY_COMPARE(textsOf(dialog.window), textsOf(fresh.window));

    // The batch program uses the chosen language, too.
    const QString english = runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"), {"--band", "x"}).error;
    choices.at(0)->trigger();
    QTRY_COMPARE(dialog.window.windowTitle(), QStringLiteral("Boite à outils Relief"));
    QVERIFY(english != runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"), {"--band", "x"}).error);
    QSettings("KARVEX", "Riglios").setValue("Interface/ChosenLanguage", "KLINGON");
    QCOMPARE(chosenLanguage("FRENCH", dictionaries), QStringLiteral("FRENCH"));

    // A language joins the menu by its dictionary.
    const QTemporaryDir folder;
    for (const char *name : {"geodico.fr", "geodico.fr.idx", "geodico.an", "geodico.an.idx"})
        QVERIFY(QFile::copy(dictionaries + '/' + name, folder.filePath(name)));
    for (const char *ending : {"", ".idx"})
        QVERIFY(QFile::copy(dictionaries + "/geodico.an" + ending, folder.filePath("geodico.it") + ending));
    manager->defaultSetup(folder.path(), "FR", {});
    Dialog third(m_tools);
    const QList<QAction *> offered =
        third.find<QToolButton>("m_pTBSettings")->menu()->findChild<QMenu *>("m_pLanguageMenu")->actions();
    QCOMPARE(offered.size(), 3);
    QVERIFY(offered.first()->isChecked() && offered.last()->text() == "Italiano");
    offered.last()->trigger();
    QTRY_COMPARE(third.window.windowTitle(), QStringLiteral("Relief tool box"));
    QCOMPARE(third.window.locale().language(), QLocale::Italian);
    QCOMPARE(chosenLanguage("FRENCH", folder.path()), QStringLiteral("ITALIEN"));
    QCOMPARE(chosenLanguage("FRENCH", dictionaries), QStringLiteral("FRENCH")); // the dictionary is not there
    manager->defaultSetup(dictionaries, "FRENCH", {});
}

QTEST_MAIN(SettingsMenuTest)
#include "settingsmenu_test.moc"
