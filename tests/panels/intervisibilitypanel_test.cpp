#include "dataset/QuvoFilerDialog.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "panels/observers/AbsoluteHeightEditor.h"
#include "panels/observers/LayerDialog.h"
#include "panels/observers/intervisibilityProcessInfoDialog.h"
#include "panels/options/computingtime.h"
#include "panels/options/previewobservers.h"
#include "tests/support/rasters.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

class IntervisibilityPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void computingTimes_data();
    void computingTimes();
    void fragments();
    void results();
    void sideFiles();
    void samples();
    void pointsAndFile();
    void previewOnCopy();
    void previewOfManyObservers();
    void groundless();
    void tableByKeys();
    void importedSource();
    void timeHere();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/vues é \"中\" XXXXXX")};
    DemInfo m_dem;
};

namespace
{

struct Panel
{
    WorkFolder workFolder;
    intervisibilityOptionsWidget widget{workFolder};
    QTableView *table = widget.findChild<QTableView *>();
    QAbstractItemModel *model = table->model();

    explicit Panel(const DemInfo &dem) { widget.setDem(dem); }
    QLineEdit *field(const char *name) const { return widget.findChild<QLineEdit *>(name); }
    void click(const char *name) const { widget.findChild<QAbstractButton *>(name)->click(); }
    void paste(const QString &lines)
    {
        QGuiApplication::clipboard()->setText(lines);
        QTest::keySequence(table, QKeySequence::Paste);
        QCoreApplication::processEvents();
    }
    bool combines() const { return widget.findChild<QGroupBox *>("m_pGBVisibiliyMultiPoints")->isEnabled(); }
};

/// A timing whose times are known when the test says so.
struct HeldTiming : SightTiming
{
    QString file;
    QStringList fragments;
    std::function<void(const SightTimes &)> then;

    QString copy() const override { return file; }
    void measure(const QString &fragment, std::function<void(const SightTimes &)> next) override
    {
        fragments += fragment;
        then = std::move(next);
    }
    void stop() override { then = nullptr; }
    bool isBusy() const override { return static_cast<bool>(then); }
    void answer(const SightTimes &times) { std::exchange(then, nullptr)(times); }
};

/// x, y, z and distance of each point of a shapefile.
QVector<QVector<double>> fileContent(const QString &path)
{
    QVector<QVector<double>> points;
    const std::unique_ptr<GDALDataset> file(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR));
    OGRLayer *layer = file ? file->GetLayerByName("point") : nullptr;
    if (!layer || layer->GetSpatialRef() || layer->GetGeomType() != wkbPoint25D)
        return points;
    for (auto &feature : *layer) {
        const OGRPoint &point = *feature->GetGeometryRef()->toPoint();
        points += {point.getX(), point.getY(), point.getZ(), feature->GetFieldAsDouble("Max_Dist")};
    }
    return points;
}

QString observerFileOf(const QString &fragment)
{
    const QString argument = fragment.section(" -DstOp", 0, 0).section("-point_file ", 1);
    return argument.startsWith('"') ? argument.mid(1, argument.size() - 2).replace("\"\"\"", "\"") : argument;
}

/// Answers the modal dialog of the class that is open after `delay` milliseconds.
template <class Dialog, class Answer> void answerNext(Answer answer, int delay = 50)
{
    QTimer::singleShot(delay, [answer] {
        if (auto dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget()))
            answer(*dialog);
    });
}

/// Answers the dialog after the next one.
template <class Dialog, class Answer> void answerLater(Answer answer)
{
    answerNext<Dialog>(answer, 200);
}

} // namespace

void IntervisibilityPanelTest::initTestCase()
{
    setUpGdal();
    // 3 x 3 cells of 10 m from (500000, 5100000); the middle one has no data.
    m_dem.path = path("dém.tif");
    QVERIFY(writeRaster(m_dem.path, 3, 3, {10, 20, 30, 40, -9999, 60, 70, 80, 90}));
}

void IntervisibilityPanelTest::computingTimes_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    const QVector<QPair<double, QString>> rows{
        {0, "< 1 minute"},      {60, "< 1 minute"},     {60.1, "> 1 minute"},  {300, "> 1 minute"},
        {300.1, "> 5 minutes"}, {600, "> 5 minutes"},   {1800, ">10 minutes"}, {3600, ">30 minutes"},
        {3600.1, ">1 heure"},   {18000, ">1 heure"},    {36000, ">5 heures"},  {36000.1, ">10 heures"},
        {90000, ">10 heures"},  {540000, ">100 heures"}};
    for (const auto &[seconds, text] : rows)
        QTest::addRow("%g", seconds) << seconds << text;
}

void IntervisibilityPanelTest::computingTimes()
{
    QFETCH(double, seconds);
    QTEST(computingTimeText(seconds), "text");
    QVERIFY(estimatedSeconds(100000, 100000, 1e6) > 6.9e9); // no integer overflows
}

void IntervisibilityPanelTest::fragments()
{
    IntervisibilityOptions options;
    const QString colours = "-CNOZ 213 94 0 -COZ 0 158 115 -CNoData 0 0 0 ";
    QCOMPARE(intervisibilityFragment(options, {}), "-DstOp OVERWRITE -SH 0 " + colours);
    options.combined = true;
    QCOMPARE(intervisibilityFragment(options, "/tmp/p.shp"),
             "-point_file /tmp/p.shp -DstOp OR -SH 0 " + colours);
    options.combination = "AND";
    options.groundHeight = 12.3456789;
    QCOMPARE(intervisibilityFragment(options, "/a b/\"p\".shp"),
             "-point_file \"/a b/\"\"\"p\"\"\".shp\" -DstOp AND -SH 12.3457 " + colours);
    options.combination.clear();
    options.groundHeight.reset();
    QCOMPARE(intervisibilityFragment(options, {}), colours);
    options.result = "height";
    options.skyline = "/l'été \"1\"/h.json";
    options.skylineStep = 2.5;
    options.statistics = "/s.csv";
    QCOMPARE(intervisibilityFragment(options, {}),
             colours + "-Output height "); // a preview writes no side files
    QCOMPARE(argumentFragment(options),
             colours
                 + "-Output height -Skyline \"/l'été \"\"\"1\"\"\"/h.json\" -SkylineStep 2.5 -Statistics "
                   "\"/s.csv\" ");
    options.skyline.clear(); // there is no step without a skyline
    QCOMPARE(sideFileArguments(::sideFiles(options)), "-Statistics \"/s.csv\" ");
}

/// What is chosen decides the fragment, what can be set, and what a preview is computed of.
void IntervisibilityPanelTest::results()
{
    Panel panel(m_dem);
    Prompt::answerBeforehand({});
    panel.paste("500005 5099995\n500025 5099995\n");
    const auto shown = [&](const char *name) {
        return panel.widget.findChild<QWidget *>(name)->isVisibleTo(&panel.widget);
    };
    const auto choose = [&](const char *word) {
        IntervisibilityOptions options = panel.widget.options();
        options.result = word;
        panel.widget.setProcessOptions(options);
        return panel.widget.getCommandArguments();
    };
    QVERIFY(!panel.widget.getCommandArguments().contains("-Output") && !shown("m_pResultNote"));
    QVERIFY(shown("m_pZoneColors") && !shown("m_pCBRamp"));
    QVERIFY(choose("count").endsWith("-CNoData 0 0 0 -Output count "));
    QVERIFY(!panel.combines() && panel.field("m_pLESmokeHeight")->isEnabled() && shown("m_pResultNote"));
    QVERIFY(!shown("m_pZoneColors") && shown("m_pCBRamp"));
    QVERIFY(choose("height").endsWith("-Output height "));
    QVERIFY(panel.combines() && !panel.field("m_pLESmokeHeight")->isEnabled());
    QVERIFY(!choose("picture").contains("-Output") && panel.field("m_pLESmokeHeight")->isEnabled());
}

/// Names of side files follow the product's until the user writes another one.
void IntervisibilityPanelTest::sideFiles()
{
    Panel panel(m_dem);
    const auto ask = [&](const char *name) { panel.widget.findChild<QCheckBox *>(name)->click(); };
    int reports = 0;
    panel.widget.setChangeListener([&] { ++reports; });
    const QSignalSpy changes(&panel.widget, &intervisibilityOptionsWidget::completeChanged);
    panel.widget.setProduct("/à b/zones.tif");
    QVERIFY(panel.widget.options().skyline.isEmpty() && changes.isEmpty());
    ask("m_pChBSkyline");
    QCOMPARE(panel.widget.options().skyline, QString("/à b/zones_horizon.csv"));
    QVERIFY(panel.field("m_pLESkylineStep")->isEnabled() && changes.size() == 1);
    panel.field("m_pLESkylineStep")->setText("0"); // which is no step
    QVERIFY(!panel.widget.options().skylineStep);
    panel.field("m_pLESkylineStep")->setText("0.5");
    QCOMPARE(panel.widget.options().skylineStep, std::optional(0.5));
    panel.widget.setProduct("/c/other.tif");
    QCOMPARE(panel.widget.options().skyline, QString("/c/other_horizon.csv"));
    QuvoFilerDialog::answerBeforehand({"/d/mine.gpkg"});
    panel.click("m_pPBSkyline");
    QVERIFY(QuvoFilerDialog::takeShown().value(0).contains("/c/other_horizon.csv|CSV (*.csv);;JSON (*.json)"));
    panel.widget.setProduct("/e/last.tif");
    QCOMPARE(panel.widget.options().skyline, QString("/d/mine.gpkg"));

    ask("m_pChBStatistics");
    panel.field("m_pLEStatistics")->setText("s.csv");
    const auto input = panel.widget.launchInput();
    QCOMPARE(input->sideFiles.size(), 2);
    QCOMPARE(input->sideFiles.last().path, QString("/e/s.csv"));
    QVERIFY(panel.widget.getCommandArguments().endsWith("-Statistics \"/e/s.csv\" "));
    QVERIFY(panel.widget.previewInput(m_dem.path)->sideFiles.isEmpty());
    QCOMPARE(reports, 0); // the product that a preview shows is the same
}

void IntervisibilityPanelTest::samples()
{
    QCOMPARE(sampledLine({{0, 0}, {10, 0}, {10, 5}}, 4.0), (QVector<QPointF>{{0, 0}, {4, 0}, {8, 0}, {10, 2}}));
    QCOMPARE(sampledLine({{0, 0}, {0, 0}, {3, 0}}, 10.0), (QVector<QPointF>{{0, 0}}));
    const QVector<QPointF> square{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}};
    QCOMPARE(sampledLine(square, 2.0), (QVector<QPointF>{{0, 0}, {2, 0}, {2, 2}, {0, 2}}));
    VectorObservers source;
    source.lines = {square, {{0, 0}, {10, 0}}};
    source.sites = {{}, {}, {}};
    for (const double step : {0.3, 2.0, 3.0, 100.0})
        QCOMPARE(sampledCount(source, step),
                 static_cast<double>(3 + sampledLine(square, step).size()
                                     + sampledLine(source.lines.at(1), step).size()));
}

void IntervisibilityPanelTest::pointsAndFile()
{
    Panel panel(m_dem);
    Prompt::answerBeforehand({});
    QVERIFY(!panel.widget.isComplete());
    QCOMPARE(panel.widget.findChild<QPushButton *>("m_pPBColorZO")->styleSheet(),
             QStringLiteral("background-color: rgb(0, 158, 115);"));
    // The centre has no data: a warning follows, and the point is switched off.
    panel.click("m_pPBAddPoint");
    QCoreApplication::processEvents();
    QVERIFY(Prompt::takeShown().value(0).startsWith("Attention: La position de l'observateur"));
    QVERIFY(!panel.widget.isComplete() && !panel.widget.currentObserver()->enabled);

    panel.paste("500005 5099995\n500015;5099995;2.5;Absolute;0\n500025\t5099995 3 relative 1e9\nnonsense\n1 2 "
                "x\n1 2 nan\n");
    const QString problems = Prompt::takeShown().value(0);
    QVERIFY2(problems.contains("Lignes ignorées : 3.") && problems.contains("Ligne 4 : « nonsense » n'a pas"),
             qPrintable(problems));
    QCOMPARE(panel.model->rowCount(), 4);
    QVERIFY(panel.widget.isComplete() && panel.combines());
    const QString fragment = panel.widget.getCommandArguments();
    QVERIFY2(fragment.contains(" -DstOp OR -SH 0 -CNOZ"), qPrintable(fragment));
    const QString file = observerFileOf(fragment);
    QCOMPARE(fileContent(file),
             (QVector<QVector<double>>{
                 {500005, 5099995, 11.7, 100000}, {500015, 5099995, 2.5, 0}, {500025, 5099995, 33, 1e9}}));
    QVERIFY(observerFileOf(panel.widget.getCommandArguments()) != file); // each call writes into a new folder
    QVERIFY(QFile::exists(file) && file.startsWith(panel.workFolder.path()));

    panel.click("m_pPBRemoveAll"); // "no" is the answer
    QCOMPARE(panel.model->rowCount(), 4);
    Prompt::answerBeforehand({true});
    panel.click("m_pPBRemoveAll");
    QCOMPARE(panel.model->rowCount(), 0);
    QVERIFY(!panel.combines());
}

void IntervisibilityPanelTest::previewOnCopy()
{
    const QString copy = path("copie.tif");
    QVERIFY(writeRaster(copy, 3, 3, {15, 20, -9999, 40, -9999, 60, 70, 80, 90}));
    Panel panel(m_dem);
    Prompt::answerBeforehand({});
    panel.paste("500005 5099995\n500025 5099995\n500015 5099985 5 Absolute\n");
    const auto input = panel.widget.previewInput(copy);
    QVERIFY(input && input->readsTemporaryFile);
    QCOMPARE(fileContent(observerFileOf(input->fragment)),
             (QVector<QVector<double>>{{500005, 5099995, 16.7, 100000},
                                       {500025, 5099995, 31.7, 100000}, // no data in the copy: the DEM's ground
                                       {500015, 5099985, 5, 100000}}));
}

void IntervisibilityPanelTest::previewOfManyObservers()
{
    Panel panel(m_dem);
    IntervisibilityOptions options;
    const auto add = [&](int count) {
        for (int at = 0; at < count; ++at)
            options.observers += ObserverPoint{.x = 500005.0, .y = 5099995.0, .height = 1.0 * at};
        panel.widget.setProcessOptions(options);
    };
    const auto input = [&] { return *panel.widget.previewInput(m_dem.path); };
    add(mostPreviewed);
    QVERIFY(input().sideFiles.isEmpty());
    panel.table->setColumnHidden(ObserverPointsModel::SeenColumn, false);
    QCOMPARE(input().sideFiles.size(), 1);
    add(mostPreviewed + 2);
    QVERIFY(input().sideFiles.isEmpty());
    const auto sample = fileContent(observerFileOf(input().fragment));
    QVERIFY(sample.size() == mostPreviewed && sample.first().at(2) == 10.0);
    QVERIFY(sample.last().at(2) > mostPreviewed - 2); // from the end of the list, which is as long again
    const auto all = fileContent(observerFileOf(panel.widget.launchInput()->fragment));
    QCOMPARE(all.size(), options.observers.size());

    // Panel and previews query the list several times for each edit: it is copied once.
    const auto points = [&] { return panel.widget.options().observers; };
    QVERIFY(points().isSharedWith(points()));
    const QVector<std::function<void()>> edits{
        [&] { panel.model->setData(panel.model->index(1, ObserverPointsModel::HeightColumn), 7.5); },
        [&] { panel.model->sort(ObserverPointsModel::HeightColumn, Qt::DescendingOrder); },
        [&] { panel.click("m_pPBAddPoint"); },
        [&] { panel.click("m_pPBRemovePoint"); },
        [&] { panel.click("m_pTBUndo"); },
        [&] {
            panel.widget.placeObserver(3, {500015.0, 5099995.0});
        }};
    for (const auto &edit : edits) {
        const auto before = points();
        panel.widget.chooseObserver(1);
        edit();
        QVERIFY(points() != before);
        QCOMPARE(points().size(), panel.model->rowCount());
        QCOMPARE(points().at(1).height,
                 panel.model->index(1, ObserverPointsModel::HeightColumn).data(Qt::EditRole).toDouble());
    }
}

void IntervisibilityPanelTest::groundless()
{
    Panel panel(m_dem);
    Prompt::answerBeforehand({});
    Panel(m_dem).paste("1 2\n3 4\n500005 5099995\n"); // several at a time: how many they are
    const QStringList several = Prompt::takeShown();
    QVERIFY2(several.value(0).contains("2 observateurs sont dans ce cas"), qPrintable(several.join('|')));
    panel.paste("500005 5099995\n");
    QSignalSpy moved(&panel.widget, &intervisibilityOptionsWidget::currentObserverPointChanged);
    panel.field("m_pLEPointX")->clear();
    QTest::keyClicks(panel.field("m_pLEPointX"), "1,5"); // far outside of the DEM
    QTest::keyClick(panel.field("m_pLEPointX"), Qt::Key_Return);
    QCoreApplication::processEvents();
    QCOMPARE(panel.widget.currentObserver()->x, 1.5);
    QCOMPARE(Prompt::takeShown().size(), 1);
    QVERIFY(moved.count() > 0 && !panel.widget.currentObserver()->enabled);
    // An observer at an absolute altitude needs no ground.
    panel.model->setData(panel.model->index(0, ObserverPointsModel::ModeColumn), "Absolute");
    panel.model->setData(panel.model->index(0, ObserverPointsModel::EnabledColumn), true);
    QCoreApplication::processEvents();
    QVERIFY(panel.widget.isComplete() && Prompt::takeShown().isEmpty());

    panel.model->setData(panel.model->index(0, ObserverPointsModel::ModeColumn), "Relative");
    QCoreApplication::processEvents();
    QVERIFY(!panel.widget.isComplete());
    panel.widget.setDem({});
    QVERIFY(Prompt::takeShown().size() == 1
            && !panel.widget.findChild<QPushButton *>("m_pPBAddPoint")->isEnabled());
}

void IntervisibilityPanelTest::tableByKeys()
{
    Panel panel(m_dem);
    panel.widget.show();
    panel.paste("500005 5099995\n500025 5099995\n");
    QTest::keyClick(panel.table, Qt::Key_Space);
    QVERIFY(!panel.widget.currentObserver()->enabled && !panel.combines());
    QTest::mouseClick(panel.table->viewport(), Qt::LeftButton, {},
                      panel.table->visualRect(panel.model->index(1, 0)).center());
    QVERIFY(panel.widget.currentObserver()->enabled);
    panel.table->edit(panel.model->index(0, ObserverPointsModel::HeightColumn));
    auto editor = panel.table->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, "2,25");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(panel.widget.options().observers.at(0).height, 2.25);
    const QList<ObserverPoint> before = panel.widget.options().observers;
    QTest::keyClick(panel.table, Qt::Key_Delete);
    QCOMPARE(panel.model->rowCount(), 1);

    // The current observer and the position follow the history; opened settings are one step of it.
    panel.widget.placeObserver(0, {500015, 5099975});
    panel.widget.setProcessOptions(IntervisibilityOptions{});
    QVERIFY(panel.widget.options().observers.isEmpty() && !panel.widget.currentObserver());
    QSignalSpy moved(&panel.widget, &intervisibilityOptionsWidget::currentObserverPointChanged);
    QSignalSpy changed(&panel.widget, &intervisibilityOptionsWidget::completeChanged);
    panel.click("m_pTBUndo");
    QVERIFY(moved.count() > 0 && changed.count() > 0 && panel.widget.isComplete());
    QCOMPARE(panel.field("m_pLEPointX")->text(), QStringLiteral("500015"));
    moved.clear();
    panel.click("m_pTBUndo");
    QVERIFY(moved.count() > 0 && panel.field("m_pLEPointX")->text() != "500015");
    panel.click("m_pTBUndo");
    QVERIFY(panel.widget.options().observers == before);
}

void IntervisibilityPanelTest::importedSource()
{
    {
        GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GPKG");
        const std::unique_ptr<GDALDataset> file(
            driver->Create(encodePath(path("vues.gpkg")).constData(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRSpatialReference utm;
        utm.importFromEPSG(32632);
        OGRLayer *points = file->CreateLayer("points", &utm, wkbPoint25D);
        OGRFieldDefn mast("mast", OFTReal);
        points->CreateField(&mast);
        OGRLayer *lines = file->CreateLayer("lines", &utm, wkbUnknown);
        const auto add = [](OGRLayer *layer, const char *wkt, double value) {
            OGRFeature feature(layer->GetLayerDefn());
            OGRGeometry *geometry = nullptr;
            OGRGeometryFactory::createFromWkt(wkt, nullptr, &geometry);
            feature.SetGeometryDirectly(geometry);
            if (value > 0.0)
                feature.SetField(0, value);
            return layer->CreateFeature(&feature) == OGRERR_NONE;
        };
        QVERIFY(add(points, "POINT Z(500005 5099995 77)", 5.0));
        QVERIFY(add(points, "POINT Z(900005 5099995 88)", 6.0)); // outside of the DEM
        QVERIFY(add(points, "POINT(500025 5099995)", 0.0));      // without any height
        QVERIFY(add(points, "POINT Z(1e16 5099995 88)", 6.0));   // nowhere
        QVERIFY(add(lines, "MULTILINESTRING((500005 5099975,500027 5099975))", 0.0));
        QVERIFY(add(lines, "POINT EMPTY", 0.0));
    }
    Panel panel(m_dem);
    Prompt::answerBeforehand({});
    const auto chooseLayer = [](int row) {
        answerNext<LayerDialog>([row](LayerDialog &dialog) {
            const auto list = dialog.findChild<QTreeWidget *>();
            QCOMPARE(list->topLevelItemCount(), 2);
            list->setCurrentItem(list->topLevelItem(row));
            dialog.accept();
        });
    };
    const auto import = [&](const char *heights, double outside) {
        QuvoFilerDialog::answerBeforehand({path("vues.gpkg")});
        chooseLayer(0);
        answerLater<intervisibilityProcessInfoDialog>([&](intervisibilityProcessInfoDialog &dialog) {
            QCOMPARE(dialog.findChild<QLabel *>("m_pLabelPointCount")->text(), QStringLiteral("3"));
            QVERIFY(!dialog.findChild<QLineEdit *>("m_pLEPas")->isVisible()); // nothing is sampled
            const auto ok = dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
            dialog.findChild<QComboBox *>("m_pCBHeightSource")->setCurrentText(heights);
            answerNext<AbsoluteHeightEditor>([outside](AbsoluteHeightEditor &editor) {
                editor.findChild<QLineEdit *>("m_pLEAbsHeight")->setText(QString::number(outside));
                outside > 0.0 ? editor.accept() : editor.reject();
            });
            ok->click();
        });
        panel.click("m_pPBAddFromVector");
    };
    import("mast", 120.0);
    const QStringList told = Prompt::takeShown();
    QVERIFY2(told.value(0).contains("1 objets") && told.value(0).contains("par défaut : 1."),
             qPrintable(told.value(0)));
    QCOMPARE(told.value(1), QStringLiteral("Observateurs importés : 3."));
    QuvoFilerDialog::answerBeforehand({path("vues.gpkg")});
    chooseLayer(1);
    answerLater<intervisibilityProcessInfoDialog>([&](intervisibilityProcessInfoDialog &dialog) {
        const auto ok = dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
        const auto step = dialog.findChild<QLineEdit *>("m_pLEPas");
        step->setText("9.9"); // below a cell
        QTRY_VERIFY(!ok->isEnabled());
        step->setText("10");
        QTRY_VERIFY(ok->isEnabled());
        ok->click();
    });
    panel.click("m_pPBAddFromVector");
    const QList<ObserverPoint> points = panel.widget.options().observers;
    QCOMPARE(points.size(), 6);
    QVERIFY(points.at(0).height == 5.0 && points.at(0).mode == AltitudeMode::Relative);
    QVERIFY(points.at(1).height == 120.0 && points.at(1).mode == AltitudeMode::Absolute);
    QCOMPARE(points.at(2).height, ObserverPoint().height);
    QCOMPARE(points.at(5).position(), QPointF(500025, 5099975));
    // A cell size that has no exact decimal text is accepted; too many observers are refused.
    VectorObservers other;
    other.lines = {{{0, 0}, {100000, 0}}};
    intervisibilityProcessInfoDialog fine(other, 1000, 1000, 25.0 / 3.0);
    QCOMPARE(fine.findChild<QLabel *>("m_pLabelEstimateTime")->text(), QStringLiteral(">1 heure"));
    const auto fineOk = fine.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
    QVERIFY(fineOk->isEnabled());
    other.lines = {{{0, 0}, {1e300, 0}}};
    intervisibilityProcessInfoDialog tooMany(other, 9, 9, 1.0);
    QVERIFY(!tooMany.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->isEnabled());
    import("Coordonnée Z (altitude absolue)", 0.0);
    QCOMPARE(panel.model->rowCount(), 8);
    QCOMPARE(panel.widget.options().observers.at(6).height, 77.0);

    // Points that leave nothing to choose open no dialog; a line says where they came from.
    QFile simple(path("simple.geojson"));
    QVERIFY(simple.open(QIODevice::WriteOnly)
            && simple.write(R"({"type":"Feature","properties":{"name":"Tour","RADIUS1":5},)"
                            R"("geometry":{"type":"Point","coordinates":[9.0000646,46.0535294]}})")
                > 0);
    simple.close();
    Prompt::takeShown();
    QuvoFilerDialog::answerBeforehand({simple.fileName()});
    panel.click("m_pPBAddFromVector");
    const QString confirmed = Prompt::takeShown().value(0);
    QVERIFY2(confirmed.contains("importés : 1.") && confirmed.contains("EPSG:4326 → EPSG:32632"),
             qPrintable(confirmed));
    QCOMPARE(panel.widget.currentObserver()->name, QStringLiteral("Tour"));
    QVERIFY(!panel.table->isColumnHidden(ObserverPointsModel::SeenColumn - 1));

    QuvoFilerDialog::answerBeforehand({path("absent.gpx")});
    panel.click("m_pPBAddFromVector");
    QVERIFY(Prompt::takeShown().value(0).startsWith("Erreur: Format non reconnu"));
}

void IntervisibilityPanelTest::timeHere()
{
    const QString dem = path("wide.tif");
    QVERIFY(writeRaster(dem, 40, 40, QVector<float>(1600, 5.0f)));
    QVERIFY(writeRaster(path("copy.tif"), 40, 40, QVector<float>(1600, 5.0f)));
    Panel panel({dem, 1});
    HeldTiming timing;
    timing.file = path("copy.tif");
    panel.widget.setTiming(&timing);
    QFile file(path("walk.geojson"));
    QVERIFY(file.open(QIODevice::WriteOnly)
            && file.write(R"({"type":"Feature","properties":{},"geometry":{"type":"LineString",)"
                          R"("coordinates":[[9.0001,46.0530],[9.0050,46.0530]]}})")
                > 0);
    file.close();
    QuvoFilerDialog::answerBeforehand({file.fileName()});
    answerNext<intervisibilityProcessInfoDialog>([&](intervisibilityProcessInfoDialog &dialog) {
        const auto here = dialog.findChild<QLabel *>("m_pLabelTimeHere");
        QVERIFY(here->text().isEmpty() && timing.then);
        const QVector<QVector<double>> points = fileContent(observerFileOf(timing.fragments.last()));
        QCOMPARE(points.size(), 10); // of 38
        QVERIFY(timing.fragments.last().contains("-DstOp OR"));
        timing.answer({0.05, 0.15}); // the copy is as large as the DEM: 38 observers take 3.8 times as long
        QCOMPARE(here->text(), QStringLiteral("(ici moins de 1 s)"));
        const auto step = dialog.findChild<QLineEdit *>("m_pLEPas");
        step->setText("100");
        QVERIFY(here->text().isEmpty());
        QTRY_VERIFY(timing.then);
        QCOMPARE(fileContent(observerFileOf(timing.fragments.last())).size(), 4);
        timing.answer({0.05, 30.05});
        QCOMPARE(here->text(), QStringLiteral("(ici environ 30\u00A0s)"));
        step->setText("50");
        QTRY_VERIFY(timing.then);
        dialog.reject();
    });
    panel.click("m_pPBAddFromVector");
    QVERIFY(!timing.then); // ended with the dialog
    QVERIFY(!QFile::exists(observerFileOf(timing.fragments.last())));

    // The line below the table speaks of many observers, and only of those that were previewed.
    const auto note = panel.widget.findChild<QLabel *>("m_pTimeNote");
    QString lines;
    for (int at = 0; at < 21; ++at)
        lines += QStringLiteral("%1 5099900\n").arg(500005 + 10 * at);
    panel.paste(lines.section('\n', 0, 19));
    panel.widget.setPreviewTime(10.0, timing.file);
    QVERIFY(!timing.then && note->isHidden());
    panel.paste(lines.section('\n', 20));
    panel.widget.setPreviewTime(10.05, timing.file);
    QVERIFY(timing.then && timing.fragments.last().isEmpty());
    timing.answer({0.05, 0.0});
    QCOMPARE(note->text(), QStringLiteral("Durée du calcul : ici environ 10\u00A0s."));
    QVERIFY(!note->isHidden());
    panel.widget.setPreviewTime(20.0, timing.file);
    const auto late = std::exchange(timing.then, nullptr);
    QVERIFY(late);
    panel.field("m_pLESmokeHeight")->setText("3");
    late({0.05, 0.0});
    QVERIFY(note->isHidden());
    panel.widget.setProduct(path("vu.tif"));
    panel.widget.findChild<QCheckBox *>("m_pChBSkyline")->setChecked(true);
    QVERIFY(note->text().contains("sans l'horizon"));
}

QTEST_MAIN(IntervisibilityPanelTest)
#include "intervisibilitypanel_test.moc"
