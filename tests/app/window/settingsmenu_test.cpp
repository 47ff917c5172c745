#include "app/startup/settings.h"
#include "app/window/HelpDialog.h"
#include "app/window/RecentRunsDialog.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/gdalmessages.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "tests/support/files.h"
#include "tests/support/maindialog.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>

Q_DECLARE_METATYPE(ProcessOptions)

/// What the settings menu of the window does: settings out and in again, the command, the runs made last,
/// languages.
class SettingsMenuTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void settingsComeBack_data();
    void settingsComeBack();
    void vectorSourceBecomesRows();
    void badSettingsChangeNothing_data();
    void badSettingsChangeNothing();
    void whatCannotBeTakenIsTold();
    void copiedCommandMakesTheProduct_data();
    void copiedCommandMakesTheProduct();
    void recentRuns();
    void damagedHistory_data();
    void damagedHistory();
    void languages();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString write(const QString &name, const QByteArray &text) const { return writeFile(path(name), text); }
    Recipe recipe(const ProcessOptions &options, const QString &output) const
    {
        return {.process = processWord(options),
                .input = path("dem.tif"),
                .output = path(output),
                .options = options};
    }
    static void addRows();

    std::unique_ptr<QTemporaryDir> m_folder;
    QTemporaryDir m_home;
    ToolPaths m_tools;
};

namespace
{

struct Dialog : ShownDialog
{
    using ShownDialog::ShownDialog;
    void trigger(const char *action) { find<QAction>(action)->trigger(); }
    void launch()
    {
        QTRY_VERIFY(find<QPushButton>("m_pPBLaunchProcess")->isEnabled());
        find<QPushButton>("m_pPBLaunchProcess")->click();
        QTRY_VERIFY(result());
        result()->close();
        QTRY_VERIFY(!result());
    }
    void drop(const QString &file)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        QDropEvent event(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    }
};

/// All that the window's labels, buttons, tabs and lists say.
QStringList textsOf(const QWidget &window)
{
    QStringList texts{window.windowTitle()};
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (qobject_cast<const QTabBar *>(widget->parent()))
            continue; // Qt's own arrows, which Qt names once
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

const QList<QuvoColorDef> ramp{{QuvoColorDef::noDataValue, QColor(1, 2, 3, 0), false},
                               {0.0, QColor(10, 20, 30), false},
                               {100.5, QColor(200, 100, 50, 128), false}};

} // namespace

void SettingsMenuTest::initTestCase()
{
    qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8());
    Q_INIT_RESOURCE(quvo);
    qputenv("SHAPE_ENCODING", ""); // as the program sets it, and a shell does not
    setUpGdal();
}

void SettingsMenuTest::init()
{
    m_folder =
        std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/l'été $HOME \"中\\!\" XXXXXX"));
    m_tools = findTools(QStringLiteral(QUVO_TREE));
    QuvoLanguageManager::getInstance()->defaultSetup(QStringLiteral(QUVO_TREE "/MESSAGES"), "FRENCH", {});
    QSettings("KARVEX", "Riglios").clear();
    QFile::remove(recentRunsFile());
    QVERIFY(writeHill(path("dem.tif"), 64));
    Prompt::answerBeforehand({});
    QuvoFilerDialog::answerBeforehand({});
}

/// Of every process one with all its options other than they are at first, and one with few.
void SettingsMenuTest::addRows()
{
    QTest::addColumn<ProcessOptions>("options");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *name, const ProcessOptions &options, const QString &output) {
        QTest::newRow(name) << options << output;
    };
    row("hillshade", ShadedOptions{2.5, -1, "0.5", 90.0, 60, true, true}, "a.tif");
    row("hillshade, list", ShadedOptions{100.0, 3, {}, 359.0, 0, false, false}, "dem_hillshade.tif");
    row("slope", SlopeOptions{true, -1, "2.5", false, true}, "b.tif");
    row("slope, list", SlopeOptions{false, 2, {}, true, false}, "b.tif");
    row("aspect", AspectOptions{true, false, false, true}, "c.tif");
    row("TRI", TerrainIndexOptions{0, true}, "d.tif");
    ContourOptions contours{10.12345, "", true, "", false, -3.4028234663852886e38, 0.5};
    row("contour", contours, "e.shp");
    contours = {std::nullopt, "Zé", false, "450 500.5", true, std::nullopt, std::nullopt};
    row("contour, levels", contours, "e.shp");
    row("colours", ColorReliefOptions{"mine", false, {}, {}, true, ramp}, "f.tif");
    row("colours, spread", ColorReliefOptions{"mine", true, {}, {}, false, ramp}, "f.tif");
    row("colours, given range", ColorReliefOptions{"mine", true, -5.5, 3000.0, false, ramp}, "f.tif");
    IntervisibilityOptions observers;
    observers.observers = {{true, 500320.5, 5099680.25, 1.7, AltitudeMode::Relative, 100000.0},
                           {true, 500100.0, 5099900.0, 900.0, AltitudeMode::Absolute, 0.0},
                           {false, 0.0, 0.0, 2.5, AltitudeMode::Relative, 5.0}};
    observers.combined = true;
    observers.combination = QStringLiteral("AND");
    observers.groundHeight = 1.25;
    observers.visibleColor = QStringLiteral("#010203");
    observers.hiddenColor = QStringLiteral("#040506");
    observers.noDataColor = QStringLiteral("#ffffff");
    row("intervisibility", observers, "g.tif");
    observers = {};
    observers.observers = {{true, 500320.0, 5099680.0, 30.0, AltitudeMode::Relative, 500.0}};
    observers.groundHeight.reset();
    row("intervisibility, one", observers, "g.tif");
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
        QVERIFY(dialog.find<QPushButton>("m_pPBLaunchProcess")->isEnabled());
        QuvoFilerDialog::answerBeforehand({path("réglages 1.5")}); // no extension of settings
        dialog.trigger("m_pActionSave");
    }
    QVERIFY(!bytesOf(file).contains("quvodemtoolbox-")); // nothing that dies with the window
    Dialog other(m_tools);
    other.window.setInputDem(path("dem.tif"));
    const auto tabs = other.find<QTabWidget>("m_pTabWidget");
    tabs->setCurrentIndex((tabs->currentIndex() + 3) % tabs->count());
    QuvoFilerDialog::answerBeforehand({file});
    other.trigger("m_pActionOpen");
    QVERIFY2(other.window.recipe() == settings, writeRecipe(other.window.recipe()).constData());
    other.drop(file);
    QVERIFY(other.window.recipe() == settings);
    QCOMPARE(Prompt::takeShown(), QStringList());
}

void SettingsMenuTest::vectorSourceBecomesRows()
{
    const QString source = write("vue.csv", "id,WKT\n1,POINT(500320 5099680)\n");
    const QByteArray json = R"({"format": 1, "process": "intervisibility", "options": {"points": "vue.csv",
        "height": 25, "mode": "Absolute", "distance": 300}})";
    Dialog dialog(m_tools);
    dialog.drop(write("vue.json", json));
    QCOMPARE(Prompt::takeShown().size(), 1); // there is no DEM yet whose coordinates they could have
    dialog.window.setInputDem(path("dem.tif"));
    dialog.drop(path("vue.json"));
    QCOMPARE(Prompt::takeShown(), QStringList());
    const auto options = std::get<IntervisibilityOptions>(dialog.window.recipe().options);
    QCOMPARE(options.observers.size(), 1);
    const ObserverPoint expected{true, 500320.0, 5099680.0, 25.0, AltitudeMode::Absolute, 300.0};
    QVERIFY(options.observers.first() == expected && options.points.isEmpty());
}

void SettingsMenuTest::badSettingsChangeNothing_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("no JSON") << QByteArray("II*");
    QTest::newRow("arguments in a ratio")
        << QByteArray(R"({"format": 1, "process": "slope", "options": {"scaleText": "2 -alt 3"}})");
    QTest::newRow("arguments in levels")
        << QByteArray(R"({"format": 1, "process": "contour", "options": {"fixedLevels": "1 -a x"}})");
    QTest::newRow("format of the product")
        << QByteArray(R"({"format": 1, "process": "slope", "outputFormat": "nO/such"})");
    QTest::newRow("colour") << QByteArray(
        R"({"format": 1, "process": "intervisibility", "options": {"hiddenColor": "octarine"}})");
    QTest::newRow("colour table") << QByteArray(
        R"({"format": 1, "process": "color-relief", "options": {"table": "/no/such.txt"}})");
    QTest::newRow("range") << QByteArray(
        R"({"format": 1, "process": "color-relief", "options": {"minimum": 3, "maximum": 2}})");
    QTest::newRow("observers' file") << QByteArray(
        R"({"format": 1, "process": "intervisibility", "options": {"points": "/no/such.gpx"}})");
}

void SettingsMenuTest::badSettingsChangeNothing()
{
    QFETCH(QByteArray, json);
    Dialog dialog(m_tools);
    dialog.window.setRecipe(recipe(ShadedOptions{2.5, -1, "0.5", 90.0, 60, true, true}, "a.tif"));
    const Recipe before = dialog.window.recipe();
    dialog.drop(write("bad.json", json));
    QVERIFY(dialog.window.recipe() == before);
    const QStringList shown = Prompt::takeShown();
    QCOMPARE(shown.size(), 1);
    QVERIFY2(shown.first().startsWith("Attention: Les réglages ne peuvent pas être repris.\n\n"),
             qPrintable(shown.first()));
}

void SettingsMenuTest::whatCannotBeTakenIsTold()
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
        recipe(SlopeOptions{true, 0, {}, true, false}, "dem_slope.tif"); // not the other DEM's name
    expected.outputOptions.format = QStringLiteral("GTiff");
    expected.outputOptions.tiled = true;
    QVERIFY2(dialog.window.recipe() == expected, writeRecipe(dialog.window.recipe()).constData());
}

void SettingsMenuTest::copiedCommandMakesTheProduct_data()
{
    addRows();
    QTest::newRow("overviews") << ProcessOptions(ShadedOptions{}) << "tiled.tif";
    QTest::newRow("percentages") << ProcessOptions(ColorReliefOptions{"percent.txt", false, {}, {}, false, {}})
                                 << "f.tif";
}

void SettingsMenuTest::copiedCommandMakesTheProduct()
{
    QFETCH(ProcessOptions, options);
    QFETCH(QString, output);
    if (auto *colors = std::get_if<ColorReliefOptions>(&options); colors && colors->colors.isEmpty())
        colors->table = write(colors->table, "0% 0 0 0\n100% 200 9 9\n");
    Recipe settings = recipe(options, output);
    settings.outputOptions.tiled = settings.outputOptions.overviews = output == QLatin1String("tiled.tif");
    if (settings.outputOptions.overviews)
        QVERIFY(writeHill(path("dem.tif"), 600));
    QString command;
    {
        Dialog dialog(m_tools);
        dialog.window.setRecipe(settings);
        QTRY_VERIFY(dialog.find<QPushButton>("m_pPBLaunchProcess")->isEnabled());
        dialog.trigger("m_pActionCopy");
        command = QApplication::clipboard()->text();
        dialog.launch();
    } // the files of the window are gone from here on
    QHash<QString, QByteArray> products;
    const QDir folder(m_folder->path());
    for (const QString &name : folder.entryList({QFileInfo(settings.output).completeBaseName() + ".*"})) {
        products.insert(name, bytesOf(path(name)));
        QVERIFY(QFile::remove(path(name)));
    }
    QCOMPARE(products.contains(QFileInfo(settings.output).fileName() + ".ovr"),
             settings.outputOptions.overviews);
    QProcessEnvironment usual = QProcessEnvironment::systemEnvironment();
    usual.remove("SHAPE_ENCODING");
    const Ended shell = runProgram("sh", {"-c", command}, usual);
    QVERIFY2(shell.code == 0, qPrintable(command + shell.error));
    QVERIFY(!products.isEmpty() && !QFile::exists(path("dem.tif.aux.xml")));
    for (auto product = products.cbegin(); product != products.cend(); ++product)
        QVERIFY2(bytesOf(path(product.key())) == product.value(), qPrintable(product.key() + '\n' + command));
}

void SettingsMenuTest::recentRuns()
{
    const Recipe first = recipe(SlopeOptions{true, -1, "2.5", false, true}, "b&b.tif");
    Dialog dialog(m_tools);
    dialog.window.setRecipe(first);
    dialog.launch();
    ColorReliefOptions colors{"mine", false, {}, {}, true, ramp};
    dialog.window.setRecipe(recipe(colors, "f.tif"));
    m_tools.dem = QStringLiteral("/bin/false");
    {
        Dialog failing(m_tools);
        failing.window.setRecipe(recipe(colors, "f.tif"));
        failing.launch();
    }
    m_tools.dem = writeScript(path("slow.sh"), "sleep 60\n");
    {
        Dialog closed(m_tools); // which stops the run
        closed.window.setRecipe(recipe(AspectOptions{}, "c.tif"));
        closed.find<QPushButton>("m_pPBLaunchProcess")->click();
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

    const auto menu = dialog.find<QToolButton>("m_pTBSettings")->menu()->actions().at(3)->menu();
    emit menu->aboutToShow();
    QCOMPARE(menu->actions().size(), 5); // three runs, a line, and all of them
    QVERIFY(menu->actions().at(2)->text().contains("Pentes · dem.tif · Terminé"));
    menu->actions().at(2)->trigger();
    QVERIFY(dialog.window.recipe() == first);

    menu->actions().last()->trigger();
    const auto list = dialog.window.findChild<RecentRunsDialog *>();
    emit list->findChild<QTableWidget *>()->cellDoubleClicked(1, 0);
    QVERIFY(dialog.window.recipe() == recipe(colors, "f.tif"));

    RecentRun more = runs.first();
    ContourOptions endless;
    endless.fixedLevels.fill('1', 17 << 20);
    QVERIFY(addRecentRun(recentRunsFile(), {more.started, RunEnd::Done, 1.0, recipe(endless, "h.shp")}));
    QCOMPARE(readRecentRuns(recentRunsFile()).size(), 3); // too large to be kept, and no harm to the others
    for (int run = 0; run < mostRecentRuns + 5; ++run)
        QVERIFY(addRecentRun(recentRunsFile(), more));
    QCOMPARE(readRecentRuns(recentRunsFile()).size(), mostRecentRuns);
    emit menu->aboutToShow();
    QCOMPARE(menu->actions().size(), 12);
}

void SettingsMenuTest::damagedHistory_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("readable");
    const QByteArray good = R"({"started": "2024-05-06T07:08:09Z", "end": "stopped", "seconds": 3661,
        "settings": {"format": 1, "process": "slope"}})";
    QTest::newRow("good") << "{\"runs\": [" + good + "]}" << 1;
    QTest::newRow("cut off") << ("{\"runs\": [" + good) << 0;
    QTest::newRow("another file") << QByteArray("[Settings]\n\0x=1") << 0;
    QTest::newRow("bad ones among good ones")
        << "{\"runs\": [3, {}, " + QByteArray(good).replace("slope", "x") + "," + good + ","
            + QByteArray(good).replace("stopped", "x") + "," + QByteArray(good).replace("2024", "x") + "]}"
        << 1;
}

void SettingsMenuTest::damagedHistory()
{
    QFETCH(QByteArray, text);
    const QString file = write("runs.json", text);
    QTEST(readRecentRuns(file).size(), "readable");
    const RecentRun run{QDateTime::currentDateTimeUtc(), RunEnd::Done, 0.4, recipe(AspectOptions{}, "a.tif")};
    QVERIFY(addRecentRun(file, run));
    const QList<RecentRun> runs = readRecentRuns(file);
    QVERIFY(runs.first().recipe == run.recipe);
    if (runs.size() > 1)
        QCOMPARE(durationText(runs.at(1).seconds) + runEndText(runs.at(1).end),
                 QStringLiteral("1:01:01Arrêté"));
}

void SettingsMenuTest::languages()
{
    QCOMPARE(chosenLanguage("FRENCH"), QStringLiteral("FRENCH"));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.trigger("m_pActionHelp");
    const auto guide = dialog.window.findChild<HelpDialog *>()->findChild<QTextBrowser *>();
    const auto button = dialog.find<QToolButton>("m_pTBSettings");
    const QList<QAction *> actions = button->menu()->actions();
    const QList<QAction *> choices = actions.at(5)->menu()->actions();
    const QString french = guide->toPlainText();
    QVERIFY(french.contains("relief") && choices.at(0)->isChecked());
    const QString recent = actions.at(3)->text();

    choices.at(1)->trigger();
    QTRY_COMPARE(dialog.window.windowTitle(), QStringLiteral("Relief tool box"));
    QCOMPARE(actions.at(3)->text(), QStringLiteral("Recent runs"));
    QVERIFY(recent != actions.at(3)->text() && french != guide->toPlainText());
    QVERIFY(button->toolTip().contains("language"));
    QTRY_COMPARE(dialog.find<QWidget>("contourTab")->findChild<QLineEdit *>()->locale().language(),
                 QLocale::English); // in which a panel writes its numbers
    QCOMPARE(chosenLanguage("FRENCH"), QStringLiteral("ENGLISH"));

    // Nothing of the window is left in the other language.
    Dialog fresh(m_tools);
    fresh.window.setInputDem(path("dem.tif"));
    QTRY_COMPARE(textsOf(dialog.window), textsOf(fresh.window));

    // The batch program uses the chosen language, too.
    const QString english = runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"), {"--band", "x"}).error;
    choices.at(0)->trigger();
    QTRY_COMPARE(dialog.window.windowTitle(), QStringLiteral("Boite à outils Relief"));
    QVERIFY(english != runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"), {"--band", "x"}).error);
    QSettings("KARVEX", "Riglios").setValue("Interface/ChosenLanguage", "KLINGON");
    QCOMPARE(chosenLanguage("FRENCH"), QStringLiteral("FRENCH"));
}

QTEST_MAIN(SettingsMenuTest)
#include "settingsmenu_test.moc"
