#include "dataset/QuvoFilerDialog.h"
#include "dataset/gdalmessages.h"
#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "panels/aspectOptionsWidget.h"
#include "panels/colorReliefOptionsWidget.h"
#include "panels/contourOptionsWidget.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "panels/options/contours/contourinput.h"
#include "panels/shadedOptionsWidget.h"
#include "panels/slopeOptionsWidget.h"
#include "panels/tri_tpi_roughnessOptionsWidget.h"
#include "tests/support/rasters.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

/// What all panels have in common: a new panel shows the defaults of its record, and each control changes the
/// options, calls the listener at once and then reports the change by one signal.
class ControlsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void newPanels();
    void everyControlIsListed();
    void controls_data();
    void controls();

private:
    std::unique_ptr<optionsWidget> makePanel(const QByteArray &process);

    QTemporaryDir m_folder;
    WorkFolder m_workFolder;
    DemInfo m_dem; ///< a flat DEM with its centre at (500015, 5099985); its extremes are said to be others
};

namespace
{

struct Row
{
    const char *panel;
    QString steps;   ///< steps for use(), separated by " > "; the last one is the one under test
    QString shown;   ///< what shownBy() returns after the steps
    int changes = 1; ///< number of signals completeChanged() of the last step
};

const QString libraryFolder = QStringLiteral(QUVO_TREE "/libraries/colormap");

const QString centre = QStringLiteral("500015 5099985 1.7 Relative 100000; ");

/// What the intervisibility panel shows with these observers and the standard colours.
QString views(const QString &observers, const QString &operation = "OVERWRITE")
{
    return observers + "-DstOp " + operation + " -SH 0 -CNOZ 213 94 0 -COZ 0 158 115 -CNoData 0 0 0 ";
}

QVector<Row> rows()
{
    const QString none = views({}) + "incomplete";
    const QString one = views(centre);
    const QString otherDefaults = "m_pLEAltitude=9 > m_pCmBAltitudeType > m_pLEMaxDistance=7 > ";
    const QString resets = "m_pPBResetAltitude > m_pPBResetAltitudeType > m_pPBResetMaxDistance > ";
    return {
        {"shaded", "QwtWheel", "-z 1.1 -s 1 -az -45 -alt 45 "},
        {"shaded", "QwtCompass", "-z 1 -s 1 -az -46 -alt 45 "},
        {"shaded", "m_pAzimuthField=12.5", "-z 1 -s 1 -az 257.5 -alt 45 "},
        {"shaded", "m_pAzimuthField=359,5", "-z 1 -s 1 -az -89.5 -alt 45 "},
        {"shaded", "m_pAzimuthField=360", "-z 1 -s 1 -az 270 -alt 45 "},
        {"shaded", "m_pAltitudeSlider", "-z 1 -s 1 -az -45 -alt 46 "},
        {"shaded", "QEditableComboBox", "-z 1 -s 0.31 -az -45 -alt 45 "},
        {"shaded", "QEditableComboBox=5", "-z 1 -s 5  -az -45 -alt 45 "},
        {"shaded", "QEditableComboBox=", "-z 1 -az -45 -alt 45 incomplete"},
        {"shaded", "QEditableComboBox=5 > QEditableComboBox=↵", "-z 1 -s 1 -az -45 -alt 45 "},
        {"shaded", "m_pChBComputeAtEdges", "-z 1 -s 1 -az -45 -alt 45  -compute_edges"},
        {"shaded", "m_pRBZevenbergenThorne", "-z 1 -s 1 -az -45 -alt 45  -alg ZevenbergenThorne"},
        {"shaded", "m_pRBZevenbergenThorne > m_pRBHorn", "-z 1 -s 1 -az -45 -alt 45 "},
        {"shaded", "m_pCBLight", "-z 1 -s 1 -alt 45  -multidirectional"},
        {"shaded", "QwtWheel > m_pPBResetZFactor", "-z 1 -s 1 -az -45 -alt 45 "},
        {"shaded", "QwtCompass > m_pPBResetAzimuth", "-z 1 -s 1 -az -45 -alt 45 "},
        {"shaded", "m_pAltitudeSlider > m_pPBResetAltitude", "-z 1 -s 1 -az -45 -alt 45 "},
        {"shaded", "QEditableComboBox > m_pPBResetScale", "-z 1 -s 1 -az -45 -alt 45 "},
        {"shaded", "QEditableComboBox=5 > m_pPBResetScale", "-z 1 -s 1 -az -45 -alt 45 "},

        {"slope", "m_pRBPercentSlope", "-p -compute_edges -s 1 "},
        {"slope", "m_pRBPercentSlope > m_pRBDegreesSlope", "-compute_edges -s 1 "},
        // A click on a method must not change the unit, whose buttons have the same parent.
        {"slope", "m_pRBPercentSlope > m_pRBZevenbergenThorne",
         "-p -compute_edges -alg ZevenbergenThorne -s 1 "},
        {"slope", "m_pRBZevenbergenThorne > m_pRBHorn", "-compute_edges -s 1 "},
        {"slope", "m_pChBComputeAtEdges", "-s 1 "},
        {"slope", "QEditableComboBox", "-compute_edges -s 0.31 "},
        {"slope", "QEditableComboBox=5", "-compute_edges -s 5 "},
        {"slope", "QEditableComboBox=", "-compute_edges incomplete"},
        {"slope", "QEditableComboBox > QEditableComboBox=5 > QEditableComboBox=↵", "-compute_edges -s 0.31 "},
        {"slope", "m_pCBClasses", "avalanche -compute_edges -s 1 "},
        {"slope", "m_pCBClasses > m_pCBClasses > m_pCBClasses > m_pCBClasses",
         "viridis.txt -compute_edges -s 1 "},
        {"slope", "QEditableComboBox > m_pPBResetScale", "-compute_edges -s 1 "},
        {"slope", "QEditableComboBox=5 > m_pPBResetScale", "-compute_edges -s 1 "},

        {"aspect", "m_pRBTrigonometric", "-trigonometric -zero_for_flat -compute_edges"},
        {"aspect", "m_pPBTrigonometric", "-trigonometric -zero_for_flat -compute_edges"},
        {"aspect", "m_pRBTrigonometric > m_pRBAzimuth", " -zero_for_flat -compute_edges"},
        {"aspect", "m_pRBTrigonometric > m_pPBAzimuth", " -zero_for_flat -compute_edges"},
        {"aspect", "m_pRBAzimuth", " -zero_for_flat -compute_edges", 0},
        {"aspect", "m_pPBAzimuth", " -zero_for_flat -compute_edges", 0},
        {"aspect", "m_pPBTrigonometric > m_pRBTrigonometric", "-trigonometric -zero_for_flat -compute_edges",
         0},
        {"aspect", "m_pCBDirections", "8  -zero_for_flat -compute_edges"},
        {"aspect", "m_pCBDirections > m_pCBDirections", "16  -zero_for_flat -compute_edges"},
        {"aspect", "m_pRBNoData", " -compute_edges"},
        {"aspect", "m_pRBNoData > m_pRBZero", " -zero_for_flat -compute_edges"},
        {"aspect", "m_pChBComputeAtEdges", " -zero_for_flat"},
        {"aspect", "m_pRBZevenbergenThorne", " -zero_for_flat -compute_edges -alg ZevenbergenThorne"},
        {"aspect", "m_pRBZevenbergenThorne > m_pRBHorn", " -zero_for_flat -compute_edges"},

        {"analysis", "m_pRBTPI", "TPI -compute_edges"},
        {"analysis", "m_pRBROUGHNESS", "roughness -compute_edges"},
        {"analysis", "m_pRBTPI > m_pRBTRI", "TRI -compute_edges"},
        {"analysis", "m_pChBComputeAtEdges", "TRI "},
        {"analysis", "m_pRBWilson", "TRI -compute_edges -alg Wilson"},
        {"analysis", "m_pRBWilson > m_pChBComputeAtEdges", "TRI  -alg Wilson"},
        {"analysis", "m_pRBWilson > m_pRBRiley", "TRI -compute_edges"},
        {"analysis", "m_pRBWilson > m_pRBTPI", "TPI -compute_edges"},

        {"views", "m_pPBAddPoint", one},
        {"views", "m_pPBAddPoint > m_pLEPointX=500005", views("500005 5099985 1.7 Relative 100000; ")},
        {"views", "m_pPBAddPoint > m_pLEPointY=5099995", views("500015 5099995 1.7 Relative 100000; ")},
        {"views", "m_pPBAddPoint > m_pPBRemovePoint", none},
        {"views", "m_pPBAddPoint > m_pPBAddPoint > m_pPBRemoveAll", none},
        {"views", otherDefaults + "m_pPBAddPoint", views("500015 5099985 9 Absolute 7; ")},
        {"views", "m_pPBAddPoint > " + otherDefaults + "m_pLApplyToAllPointsLink=all",
         views("500015 5099985 9 Absolute 7; ")},
        {"views", otherDefaults + resets + "m_pPBAddPoint", one},
        {"views", "m_pLEMaxDistance=1e300 > m_pPBAddPoint", views("500015 5099985 1.7 Relative 1e+09; ")},
        {"views", "m_pPBAddPoint > m_pTBUndo", none},
        {"views", "m_pPBAddPoint > m_pTBUndo > m_pTBRedo", one},
        // One step back for all points.
        {"views",
         "m_pPBAddPoint > m_pPBAddPoint > " + otherDefaults + "m_pLApplyToAllPointsLink=all > m_pTBUndo",
         views(centre + centre, "OR")},
        {"views", "m_pPBAddPoint > m_pLESmokeHeight=", QString(one).remove("-SH 0 ")},
        {"views", "m_pPBAddPoint > m_pLESmokeHeight=4", QString(one).replace("-SH 0", "-SH 4")},
        {"views", "m_pPBAddPoint > m_pLESmokeHeight=4 > m_pPBResetSmokeHeight", one},
        {"views", "m_pPBAddPoint > m_pPBAddPoint > m_pRBAndMode", views(centre + centre, "AND")},
        {"views", "m_pPBAddPoint > m_pPBAddPoint > m_pRBAndMode > m_pRBOrMode", views(centre + centre, "OR")},
        {"views", "m_pPBAddPoint > m_pPBColorZNO=#010203", QString(one).replace("213 94 0", "1 2 3")},
        {"views", "m_pPBAddPoint > m_pPBColorZNO=#010203 > m_pPBResetColorZNO", one},
        {"views", "m_pPBAddPoint > m_pPBColorZO=#010203", QString(one).replace("0 158 115", "1 2 3")},
        {"views", "m_pPBAddPoint > m_pPBColorZO=#010203 > m_pPBResetColorZO", one},
        {"views", "m_pPBAddPoint > m_pCBResult", one + "-Output count "},
        {"views", "m_pPBAddPoint > m_pPBColorNoData=#010203", QString(one).replace("0 0 0", "1 2 3")},
        {"views", "m_pPBAddPoint > m_pPBColorNoData=#010203 > m_pPBResetColorNoData", one},

        {"colors", "m_pCBColorTable", "even_relief "},
        {"colors", "m_pPBAddAColorFile", "viridis "},
        {"colors", "m_pRBRelatifAltitude", "dtm spread "},
        {"colors", "m_pRBRelatifAltitude > m_pRBAbsoluteAltitude", "dtm "},
        {"colors", "m_pChBAddAlphaChannel", "dtm -alpha"},

        {"contour", "m_pLEElevationInterval=5", "-a \"Z\" -i \"5\" "},
        {"contour", "m_pForecastLabel=100.000", "-a \"Z\" -i \"100\" "},
        {"contour", "m_pLEElevationAttribute=h", "-a \"h\" incomplete"},
        {"contour", "m_pChB3D", "-a \"Z\" -3d incomplete"},
        {"contour", "m_pLEFixedLevels=7", "-a \"Z\" -fl 7 "},
        {"contour", "m_pLEFixedLevels=7 3 > m_pLevelsNote=sort", "-a \"Z\" -fl 3 7 "},
        {"contour", "m_pLEElevationInterval=5 > m_pSBIndex=3", "indexEvery=3 interval=5 -a \"Z\" -i \"5\" "},
        {"contour", "m_pLERing=60", "shortestRing=60 -a \"Z\" incomplete", 2},
        {"contour", "m_pSBSmoothing=2", "smoothing=2 -a \"Z\" incomplete"},
        {"contour", "m_pChBAreas", "polygons=true -p -amin \"ZMIN\" -amax \"ZMAX\" incomplete"},
        {"contour", "m_pChBAreas > m_pLELowest=a",
         "lowestAttribute=a polygons=true -p -amin \"a\" -amax \"ZMAX\" incomplete"},
        {"contour", "m_pChBAreas > m_pLEHighest=b",
         "highestAttribute=b polygons=true -p -amin \"ZMIN\" -amax \"b\" incomplete"},
        {"contour", "m_pChBStyled", "styled=true -a \"Z\" incomplete"},
        {"contour", "m_pChBQgis", "qgisStyle=true -a \"Z\" incomplete"},
        {"contour", "m_pLEOffset=2", "-a \"Z\" -off \"2\" incomplete"},
        {"contour", "m_pNoDataCombo", "-a \"Z\" -snodata \"-9999\" incomplete"},
        {"contour", "m_pNoDataCombo=8", "-a \"Z\" -snodata \"8\" incomplete"},
        {"contour", "m_pNoDataCombo > m_pNoDataCombo=8 > m_pNoDataCombo=↵",
         "-a \"Z\" -snodata \"-9999\" incomplete"},
        {"contour", "m_pNoDataCombo > m_pChBTreatNoDataValue", "-a \"Z\" -inodata incomplete"},
        {"contour", "m_pNoDataCombo > m_pChBTreatNoDataValue > m_pChBTreatNoDataValue",
         "-a \"Z\" -snodata \"-9999\" incomplete"},
    };
}

/// Controls that the rows leave out because the tests of their panels use them in ways of their own.
const QStringList testedElsewhere{
    "views m_pTViewObsPos",     // keys and cells
    "views m_pPBAddFromVector", // dialogs follow
    "views m_pCBRamp",          // its tables are those beside the program
    "views m_pChBSkyline",      // the files below leave the product, and its preview, as they are
    "views m_pLESkyline",
    "views m_pPBSkyline",
    "views m_pLESkylineStep",
    "views m_pChBStatistics",
    "views m_pLEStatistics",
    "views m_pPBStatistics",
    "views m_pTBColumns",                    // opens a menu
    "colors m_pLComputeExactStatisticsLink", // changes the DEM's extremes, not an option
    "colors m_pPBEditColorTable",            // opens the editor
    "colors m_pChBShade",                    // its light comes from another panel
    "colors m_pShadeStrength",
    "colors m_pRBPanelLight",
    "colors m_pRBOwnLight",
    "colors m_pPBEditLight",
    "shaded LightList", // its entries are no single value
    "shaded m_pPBKeepLight",
};

/// The name of a control; of a control without a name, that of its class.
QString nameOf(const QObject &control)
{
    return control.objectName().isEmpty() ? QString(control.metaObject()->className()) : control.objectName();
}

/// A time in milliseconds after which a change has been reported.
int pauseOf(const QByteArray &panel)
{
    return panel == "shaded" || panel == "colors" ? 150 : 0;
}

bool isControl(const QObject &object)
{
    for (const char *name : {"QAbstractButton", "QComboBox", "QLineEdit", "QAbstractSlider", "QAbstractSpinBox",
                             "QAbstractItemView", "QwtAbstractSlider", "QwtWheel"}) {
        if (object.inherits(name))
            return true;
    }
    return object.inherits("QLabel") && object.property("text").toString().contains("<a href");
}

/// The controls below an object, without the parts of which a control consists.
QStringList controlsOf(const QObject &parent)
{
    QStringList names;
    for (const QObject *child : parent.children())
        names += isControl(*child) ? QStringList{nameOf(*child)} : controlsOf(*child);
    return names;
}

void type(QLineEdit &field, const QString &text)
{
    field.selectAll();
    if (text.isEmpty())
        QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
    QTest::keyClick(&field, Qt::Key_Return);
}

void useCombo(QComboBox &combo, const QString &step)
{
    if (step.endsWith("↵")) { // chooses the current row in the list again
        combo.showPopup();
        QTest::keyClick(combo.view(), Qt::Key_Return);
    } else if (step.contains('=')) {
        type(*combo.lineEdit(), step.section('=', 1));
    } else {
        QTest::keyClick(&combo, combo.currentIndex() + 1 < combo.count() ? Qt::Key_Down : Qt::Key_Up);
    }
}

/// Uses a control of the panel as a user does. `step` is the control's name. For a text field, "=" and
/// the typed text follow; for a label, "=" and the clicked link; for a colour button, "=" and the chosen
/// colour.
void use(const QWidget &panel, const QString &step)
{
    const QString name = step.section('=', 0, 0);
    const QString text = step.section('=', 1);
    const QList<QWidget *> widgets = panel.findChildren<QWidget *>();
    const auto found = std::find_if(widgets.begin(), widgets.end(),
                                    [&](const QWidget *widget) { return nameOf(*widget) == name; });
    QVERIFY2(found != widgets.end(), qPrintable(step));
    if (const auto label = qobject_cast<QLabel *>(*found)) {
        emit label->linkActivated(text);
    } else if (const auto button = qobject_cast<QAbstractButton *>(*found)) {
        QTimer::singleShot(0, button, [text] {
            if (const auto dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget())) {
                dialog->setCurrentColor(QColor(text));
                dialog->accept();
            }
        });
        button->click();
    } else if (const auto combo = qobject_cast<QComboBox *>(*found)) {
        useCombo(*combo, step);
    } else if (const auto spin = qobject_cast<QAbstractSpinBox *>(*found)) {
        type(*spin->findChild<QLineEdit *>(), text);
    } else if (const auto field = qobject_cast<QLineEdit *>(*found)) {
        type(*field, text);
    } else {
        QTest::keyClick(*found, Qt::Key_Right); // a slider, the wheel or the compass
    }
}

/// The argument fragment, with what else the panel tells the tool in front of it: the mode, the table, or in
/// place of their file the observers.
QString shownBy(optionsWidget &panel)
{
    static const QRegularExpression pointFile("-point_file \\S+ ");
    const ProcessOptions shown = panel.processOptions();
    QString text;
    if (std::holds_alternative<TerrainIndexOptions>(shown))
        text = processWord(shown) + ' ';
    if (const auto slope = std::get_if<SlopeOptions>(&shown); slope && !slope->classes.isEmpty())
        text = QFileInfo(slope->classes).fileName() + ' ';
    if (const auto aspect = std::get_if<AspectOptions>(&shown); aspect && aspect->directions > 0)
        text = QString("%1 ").arg(aspect->directions);
    if (const auto contours = std::get_if<ContourOptions>(&shown)) {
        const ContourSteps steps = contourInput(*contours, {}).contours;
        for (const QString &setting : steps.isFinished || steps.smoothing > 0 ? steps.settings : QStringList())
            text += setting + ' ';
    }
    if (const auto colors = std::get_if<ColorReliefOptions>(&shown))
        text = colors->table + (colors->spread ? " spread " : " ");
    if (const auto observers = std::get_if<IntervisibilityOptions>(&shown)) {
        for (const ObserverPoint &point : observers->observers)
            text += QString("%1 %2 %3 %4 %5; ")
                        .arg(QString::number(point.x, 'f', 0), QString::number(point.y, 'f', 0))
                        .arg(point.height)
                        .arg(altitudeModeText(point.mode))
                        .arg(point.maxDistance);
    }
    return text + panel.getCommandArguments().remove(pointFile) + (panel.isComplete() ? "" : "incomplete");
}

} // namespace

void ControlsTest::initTestCase()
{
    setUpGdal();
    m_dem = {.path = m_folder.filePath("dem.tif"),
             .extremes = {.known = true, .minimum = 387, .maximum = 2349}};
    QVERIFY(writeRaster(m_dem.path, 3, 3, QVector<float>(9, 100)));
}

std::unique_ptr<optionsWidget> ControlsTest::makePanel(const QByteArray &process)
{
    if (process == "shaded")
        return std::make_unique<shadedOptionsWidget>();
    if (process == "slope")
        return std::make_unique<slopeOptionsWidget>();
    if (process == "aspect")
        return std::make_unique<aspectOptionsWidget>();
    if (process == "analysis")
        return std::make_unique<tri_tpi_roughnessOptionsWidget>();
    if (process == "contour")
        return std::make_unique<contourOptionsWidget>();
    if (process == "views")
        return std::make_unique<intervisibilityOptionsWidget>(m_workFolder);
    auto panel = std::make_unique<colorReliefOptionsWidget>(m_workFolder);
    panel->loadLibrary(libraryFolder);
    return panel;
}

void ControlsTest::newPanels()
{
    // The colour relief panel holds the default table by value, under its name in the library.
    const ColorReliefOptions colors{
        .table = "dtm", .colors = readColorTable(libraryFolder + '/' + ColorReliefOptions().table).entries};
    QVERIFY(!colors.colors.isEmpty());
    const ProcessOptions defaults[] = {ShadedOptions{},         SlopeOptions{}, AspectOptions{},
                                       TerrainIndexOptions{},   colors,         ContourOptions{},
                                       IntervisibilityOptions{}};
    int resetButtons = 0;
    for (const char *name : {"shaded", "slope", "aspect", "analysis", "colors", "contour", "views"}) {
        const auto panel = makePanel(name);
        const QSignalSpy changes(panel.get(), SIGNAL(completeChanged()));
        QTest::qWait(pauseOf(name));
        QVERIFY2(std::count(std::begin(defaults), std::end(defaults), panel->processOptions()) == 1, name);
        QVERIFY2(changes.isEmpty(), name);
        for (const auto reset : panel->findChildren<QAbstractButton *>(QRegularExpression("^m_pPBReset"))) {
            QVERIFY2(!reset->isEnabled(), qPrintable(reset->objectName()));
            ++resetButtons;
        }
    }
    QCOMPARE(resetButtons, 12);
}

void ControlsTest::everyControlIsListed()
{
    QMap<QString, QStringList> used;
    for (const Row &row : rows()) {
        for (const QString &step : row.steps.split(" > "))
            used[row.panel] += step.section('=', 0, 0);
    }
    QCOMPARE(used.size(), 7);
    for (const QString &name : used.keys()) {
        const auto panel = makePanel(name.toLatin1());
        panel->setDem(m_dem);
        for (const QString &control : controlsOf(*panel)) {
            const QString place = name + ' ' + control;
            QVERIFY2(used[name].contains(control) || testedElsewhere.contains(place), qPrintable(place));
        }
    }
}

void ControlsTest::controls_data()
{
    QTest::addColumn<int>("at");
    const QVector<Row> all = rows();
    for (int at = 0; at < all.size(); ++at)
        QTest::addRow("%s: %s", all.at(at).panel, qPrintable(all.at(at).steps)) << at;
}

void ControlsTest::controls()
{
    QFETCH(int, at);
    const Row row = rows().at(at);
    const auto panel = makePanel(row.panel);
    panel->setDem(m_dem);
    QuvoFilerDialog::answerBeforehand({libraryFolder + "/viridis.txt"});
    Prompt::answerBeforehand({true});
    QStringList steps = row.steps.split(" > ");
    const QString last = steps.takeLast();
    for (const QString &step : steps)
        use(*panel, step);
    QTest::qWait(pauseOf(row.panel));
    const QSignalSpy changes(panel.get(), SIGNAL(completeChanged()));
    QVector<QPair<int, QString>> reported; // signals before each call of the listener, and what it saw
    panel->setChangeListener([&] { reported += {static_cast<int>(changes.count()), shownBy(*panel)}; });
    use(*panel, last);
    const auto atOnce = reported;
    QTest::qWait(pauseOf(row.panel));
    QCOMPARE(shownBy(*panel), row.shown);
    QCOMPARE(changes.count(), row.changes);
    QCOMPARE(atOnce.isEmpty(), row.changes == 0);
    QVERIFY(atOnce.isEmpty() || atOnce.first().first == 0);
    QVERIFY(atOnce.isEmpty() || atOnce.last().second == row.shown);
}

QTEST_MAIN(ControlsTest)
#include "controls_test.moc"
