#include "app/process/demremarks.h"
#include "app/process/demtreatment.h"

#include <QTest>

#include <functional>

namespace
{

DemFacts inMetres()
{
    DemFacts facts;
    facts.isOpen = facts.isGeoreferenced = true;
    facts.width = 300;
    facts.height = 200;
    facts.toGround = {500000.0, 10.0, 0.0, 5100000.0, 0.0, -10.0};
    facts.crs = DemCrs::Projected;
    facts.crsName = QStringLiteral("UTM");
    facts.cellType = QStringLiteral("Float32");
    return facts;
}

using Change = std::function<void(DemFacts &)>;

void inDegrees(DemFacts &facts)
{
    facts.crs = DemCrs::Geographic;
    facts.unit = 0.017453292519943295;
    facts.toGround = {8.0, 0.001, 0.0, 47.0, 0.0, -0.001};
}

} // namespace

Q_DECLARE_METATYPE(Change)

/// What is done with a DEM for a process, and what the user is told.
class DemRemarksTest : public QObject
{
    Q_OBJECT

private slots:
    void treatment_data();
    void treatment();
    void remarks_data();
    void remarks();
    void ratios_data();
    void ratios();
};

void DemRemarksTest::treatment_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>(
        "expected"); // of shaded relief, with a ratio of one's own, slope, aspect, TRI, contours

    const auto row = [](const char *name, const Change &change, const char *expected) {
        QTest::newRow(name) << change << QString(expected);
    };
    row(
        "metres", [](DemFacts &) {}, "-,-,-,-,-,-");
    row("degrees", inDegrees, "m,-,m,d,-,-");
    row(
        "feet everywhere", [](DemFacts &facts) { facts.unit = 0.3048; }, "-,-,-,-,-,-");
    row(
        "heights in feet", [](DemFacts &facts) { facts.elevationUnit = 0.3048; }, "m,-,m,-,m,-");
    row(
        "map in feet, heights in metres",
        [](DemFacts &facts) {
            facts.unit = 0.3048;
            facts.elevationUnit = 1.0;
        },
        "m,-,m,-,-,-");
    row(
        "decimetres", [](DemFacts &facts) { facts.elevationScale = 0.1; }, "m,-,m,-,m,-");
    row(
        "rows from the south", [](DemFacts &facts) { facts.toGround[5] = 10.0; }, "t,t,t,t,t,-");
    row(
        "columns from the east", [](DemFacts &facts) { facts.toGround[1] = -10.0; }, "t,t,t,t,t,-");
    row(
        "rotated", [](DemFacts &facts) { facts.toGround = {0.0, 8.0, 6.0, 0.0, 6.0, -8.0}; }, "t,t,t,t,t,-");
    row(
        "long cells", [](DemFacts &facts) { facts.toGround[5] = -20.0; }, "-,-,-,d,-,-");
    row(
        "a distorting projection",
        [](DemFacts &facts) {
            facts.groundUnits = {QSizeF(0.5, 0.5), QSizeF(0.6, 0.6)};
        },
        "m,-,m,-,-,-");
    row(
        "no georeference",
        [](DemFacts &facts) {
            facts.isGeoreferenced = false;
            facts.crs = DemCrs::None;
            facts.toGround = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
        },
        "m,m,-,-,-,-");
    row(
        "unreadable", [](DemFacts &facts) { facts = DemFacts(); }, "-,-,-,-,-,-");
}

void DemRemarksTest::treatment()
{
    QFETCH(Change, change);
    QFETCH(QString, expected);
    DemFacts facts = inMetres();
    change(facts);
    QStringList found;
    for (const ProcessOptions &options :
         QList<ProcessOptions>{ShadedOptions(), ShadedOptions{.scaleIndex = -1, .scaleText = "2"},
                               SlopeOptions(), AspectOptions(), TerrainIndexOptions(), ContourOptions()}) {
        const DemTreatment treatment = treatmentOf(cellUse(options), facts);
        QString text;
        for (const auto &[is, letter] :
             {std::pair{treatment.turn, 't'}, {treatment.metres, 'm'}, {treatment.directions, 'd'}}) {
            if (is)
                text += QLatin1Char(letter);
        }
        found += text.isEmpty() ? QStringLiteral("-") : text;
        QCOMPARE(treatmentText(treatment, facts, cellUse(options), QLocale::c()).isEmpty(),
                 !treatment.isNeeded());
    }
    QCOMPARE(found.join(','), expected);
}

void DemRemarksTest::remarks_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<double>("lowest");
    QTest::addColumn<double>("voids");
    QTest::addColumn<QStringList>("expected"); // beginnings of the remarks; "!" before an urgent one

    const auto row = [](const char *name, const Change &change, double lowest, double voids,
                        const QStringList &expected) {
        QTest::newRow(name) << change << lowest << voids << expected;
    };
    const Change none = [](DemFacts &) {};
    row("nothing to say", none, 120.0, 0.0, {});
    row("degrees and voids", inDegrees, 120.0, 0.16, {"Degrés : une cellule mesure 76.", "Environ 16 % de"});
    row("few voids", none, 120.0, 0.002, {"Environ 0.2 % de"});
    row("a void that is an elevation", none, -9999.0, 0.0, {"!La valeur -9999 n'est"});
    row("the lowest float", none, -3.4028234663852886e38, 0.0, {"!La valeur -3.402823e+38"});
    row("below the sea", none, -430.0, 0.0, {});
    row("a picture", [](DemFacts &facts) { facts.cellType = "Byte"; }, 0.0, 0.0,
        {"!Altitudes stockées en octets"});
    row("no CRS", [](DemFacts &facts) { facts.crs = DemCrs::None; }, 0.0, 0.0,
        {"Aucun système de coordonnées : ses"});
    row("no CRS, degrees perhaps; urgent remarks come first",
        [](DemFacts &facts) {
            inDegrees(facts);
            facts.crs = DemCrs::None;
            facts.unit = 1.0;
            facts.width = facts.height = 6000;
        },
        0.0, 0.0, {"!Aucun système de coordonnées, mais", "Pas de vues d'ensemble"});
}

void DemRemarksTest::remarks()
{
    QFETCH(Change, change);
    QFETCH(double, lowest);
    QFETCH(double, voids);
    QFETCH(QStringList, expected);
    DemFindings findings{.facts = inMetres(), .extremes = {.known = true, .minimum = lowest}, .voids = voids};
    change(findings.facts);
    ProcessingRequest request;
    request.process = Process::Slope;
    request.cellUse = cellUse(SlopeOptions());
    const QVector<DemRemark> found = demRemarks(findings, request, QLocale::c());
    QCOMPARE(found.size(), expected.size());
    for (int at = 0; at < expected.size(); ++at) {
        const QString text = (found.at(at).isUrgent ? "!" : "") + found.at(at).text;
        QVERIFY2(text.startsWith(expected.at(at)), qPrintable(text));
    }
}

void DemRemarksTest::ratios_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QString>("expected");
    const Change none = [](DemFacts &) {};
    QTest::newRow("metres") << none << 1.0 << QString();
    QTest::newRow("feet instead of metres")
        << none << 0.31 << "compte pour 3.10 m × 3.10 m ; elle mesure 10.0 m";
    QTest::newRow("degrees") << Change(inDegrees) << 111120.0
                             << "compte pour 111 m × 111 m ; elle mesure 76.2 m × 111 m";
    QTest::newRow("degrees as metres") << Change(inDegrees) << 1.0 << "compte pour 0.00100 m × 0.00100 m";
}

void DemRemarksTest::ratios()
{
    QFETCH(Change, change);
    QFETCH(double, ratio);
    QFETCH(QString, expected);
    DemFacts facts = inMetres();
    change(facts);
    const QString found = ratioText(facts, ratio, QLocale::c());
    QVERIFY2(found.contains(expected) && found.isEmpty() == expected.isEmpty(), qPrintable(found));
}

QTEST_GUILESS_MAIN(DemRemarksTest)
#include "demremarks_test.moc"
