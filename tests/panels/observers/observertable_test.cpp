#include "panels/observers/ObserverTable.h"

#include "dataset/gdalmessages.h"
#include "messages/Prompt.h"
#include "panels/observers/PositionFields.h"
#include "panels/options/observerlines.h"
#include "panels/options/vectorobservers.h"
#include "tests/support/rasters.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <cmath>
#include <functional>
#include <limits>

class ObserverTableTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cellsKeepTheirValues();
    void rowsHaveOneHeight();
    void movesThatJoin();
    void stepsByKeys();
    void everyStepComesBack();
    void clicksSort();
    void hiddenColumns();
    void seenAreas();
    void manyPoints();
    void anotherDem();
    void positionIsUndone();
    void unusableNumbers_data();
    void unusableNumbers();
    void unusableHeights();

private:
    QTemporaryDir m_folder;
    DemGround m_ground;
    DemGround m_higher;
};

namespace
{

struct Table
{
    ObserverPointsModel model;
    QTableView view;
    ObserverTable table{&view, model};

    explicit Table(const DemGround &ground)
    {
        model.setGround(ground);
        view.setSelectionBehavior(QAbstractItemView::SelectRows); // as in the form
        view.resize(400, 300);
        view.show();
        view.activateWindow();
        view.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&view));
    }
    void addRow(int count)
    {
        QList<ObserverPoint> points;
        for (int at = 0; at < count; ++at)
            points += ObserverPoint{.x = 500005.0 + 10 * (at % 2), .y = 5099995.0, .height = 1.0 + at};
        table.addPoints(points);
    }
    void select(const QVector<int> &rows)
    {
        view.clearSelection();
        for (const int row : rows)
            view.selectionModel()->select(model.index(row, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    QList<double> heights() const
    {
        QList<double> heights;
        for (const ObserverPoint &point : model.points())
            heights += point.height;
        return heights;
    }
    QLineEdit *edit(int row, int column)
    {
        view.edit(model.index(row, column));
        return view.viewport()->findChild<QLineEdit *>();
    }
};

} // namespace

void ObserverTableTest::initTestCase()
{
    setUpGdal();
    // 3 x 1 cells of 10 m from (500000, 5100000); the last one has no data.
    const QString path = m_folder.filePath(QStringLiteral("dem.tif"));
    const QString higher = m_folder.filePath(QStringLiteral("higher.tif"));
    QVERIFY(writeRaster(path, 3, 1, {10, 20, -9999}) && writeRaster(higher, 3, 1, {-9999, 120, 130}));
    m_ground = DemGround(path, 1);
    m_higher = DemGround(higher, 1);
}

void ObserverTableTest::cellsKeepTheirValues()
{
    Table table(m_ground);
    const QVector<double> values{1.23456789, 0.1 + 0.2, -1e-17, 5e-324, 9999999.999999998, 2.0};
    QList<ObserverPoint> points;
    for (const double value : values)
        points += ObserverPoint{.x = 500005.0, .y = 5099995.0, .height = value, .maxDistance = std::abs(value)};
    table.table.addPoints(points);
    for (int row = 0; row < values.size(); ++row) {
        for (const int column : {ObserverPointsModel::HeightColumn, ObserverPointsModel::DistanceColumn}) {
            QLineEdit *editor = table.edit(row, column);
            QVERIFY(editor && editor->hasAcceptableInput());
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_VERIFY(!table.view.viewport()->findChild<QLineEdit *>());
        }
    }
    QVERIFY(table.model.points() == points);
    QCOMPARE(table.model.history().count(), 1);
    QCOMPARE(table.model.index(5, 1).data().toString(), QStringLiteral("2.000"));

    QLineEdit *editor = table.edit(0, ObserverPointsModel::DistanceColumn);
    editor->selectAll();
    QTest::keyClicks(editor, "-1e12"); // the sign is refused
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(table.model.point(0).maxDistance, longestDistance);
}

void ObserverTableTest::rowsHaveOneHeight()
{
    Table table(m_ground);
    table.addRow(3);
    const QHeaderView *header = table.view.verticalHeader();
    QCOMPARE(header->sectionResizeMode(0), QHeaderView::Fixed);
    QVERIFY(header->defaultSectionSize()
            >= table.edit(0, ObserverPointsModel::HeightColumn)->sizeHint().height());
    QFont large = table.view.font();
    large.setPointSize(3 * large.pointSize());
    const int before = header->sectionSize(2);
    table.view.setFont(large);
    QVERIFY(header->sectionSize(2) > 2 * before);
}

void ObserverTableTest::movesThatJoin()
{
    Table table(m_ground);
    table.addRow(2);
    const auto move = [&](int row, double x, bool joins) {
        ObserverPoint point = table.model.point(row);
        point.x = x;
        table.model.changePoints({{row, point}}, joins);
    };
    const auto steps = [&] { return table.model.history().count() - 1; };
    for (const double x : {500006.0, 500007.0, 500008.0})
        move(0, x, true);
    QCOMPARE(steps(), 1);
    move(1, 500016.0, true); // another point
    move(1, 500017.0, false);
    move(1, 500018.0, true);
    QCOMPARE(steps(), 4);
    for (int step = 0; step < 4; ++step)
        table.model.history().undo();
    QCOMPARE(table.model.point(0).x, 500005.0);
    table.model.history().redo();
    QCOMPARE(table.model.point(0).x, 500008.0);
    move(0, 500005.0, true); // back where the moves began
    QCOMPARE(steps(), 0);
    move(0, 500025.0, true); // no data: the point is switched off
    table.model.history().undo();
    QVERIFY(table.model.point(0).enabled);
}

void ObserverTableTest::stepsByKeys()
{
    Table table(m_ground);
    table.addRow(5);
    table.select({3, 1});
    QTest::keyClick(&table.view, Qt::Key_Delete);
    QCOMPARE(table.heights(), (QList<double>{1, 3, 5}));
    QCOMPARE(table.model.undoName(), QStringLiteral("suppression de 2 points"));
    QCOMPARE(table.table.currentRow(), 1);
    table.select({0, 1, 2});
    QTest::keyClick(&table.view, Qt::Key_Space);
    QCOMPARE(table.model.enabledCount(), 0);
    QCOMPARE(table.view.actions().first()->text(), QStringLiteral("Annuler : modification de 3 points"));

    table.table.choose(0);
    for (int step = 0; step < 2; ++step)
        QTest::keyClick(&table.view, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(table.heights(), (QList<double>{1, 2, 3, 4, 5}));
    QCOMPARE(table.model.enabledCount(), 5);
    QCOMPARE(table.table.currentRow(), 1); // the first point that came back
    QVERIFY(table.view.selectionModel()->isRowSelected(1, {}));
    QTest::keyClick(&table.view, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(table.heights(), (QList<double>{1, 3, 5}));
    QVERIFY(!table.model.redoName().isEmpty());

    Prompt::answerBeforehand({true});
    table.table.removeAll();
    QVERIFY(table.model.rowCount() == 0 && table.model.redoName().isEmpty());
    QTest::keyClick(&table.view, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(table.model.rowCount(), 3);
}

void ObserverTableTest::everyStepComesBack()
{
    Table table(m_ground);
    QRandomGenerator random(7);
    QVector<QList<ObserverPoint>> states{table.model.points()};
    while (states.size() < 60) {
        const int rows = table.model.rowCount();
        QVector<int> some;
        NumberedPoints moved;
        for (int row = 0; row < rows; ++row) {
            if (random.bounded(3) > 0)
                continue;
            some += row;
            moved += {row, table.model.point(row)};
            moved.last().point.x = 500000.0 + random.bounded(30);
            moved.last().point.enabled = true;
        }
        switch (random.bounded(6)) {
        case 0:
            table.model.removePoints(some);
            break;
        case 1:
            table.model.changePoints(moved);
            break;
        case 3:
            table.model.sort(ObserverPointsModel::HeightColumn,
                             rows % 2 > 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
            break;
        case 2:
            table.model.openSettings(table.model.points().mid(rows / 2));
            break;
        default:
            table.addRow(1 + random.bounded(4));
        }
        if (table.model.points() != states.last())
            states += table.model.points();
    }
    QUndoStack &history = table.model.history();
    QCOMPARE(history.count(), states.size() - 1);
    for (int turn = 0; turn < 2; ++turn) {
        for (int step = history.index(); step > 0; --step) {
            QVERIFY2(table.model.points() == states.at(step), qPrintable(table.model.undoName()));
            history.undo();
        }
        for (int step = 0; step < history.count(); ++step) {
            QVERIFY2(table.model.points() == states.at(step), qPrintable(table.model.redoName()));
            history.redo();
        }
    }
    QVERIFY(table.model.points() == states.last());
}

void ObserverTableTest::clicksSort()
{
    Table table(m_ground);
    QList<ObserverPoint> points;
    for (const char *name : {"P10", "", "été", "p2", "zone"})
        points +=
            ObserverPoint{.x = 500005.0,
                          .y = 5099995.0,
                          .height = static_cast<double>(points.size()),
                          .maxDistance = points.isEmpty() ? 0.0 : 500.0 / static_cast<double>(points.size()),
                          .name = QString::fromUtf8(name)};
    table.table.addPoints(points);
    table.table.choose(3); // "p2"
    QHeaderView *titles = table.view.horizontalHeader();
    QCOMPARE(titles->visualIndex(ObserverPointsModel::NameColumn), 1);
    const auto click = [&](int column) {
        const QPoint place(titles->sectionViewportPosition(column) + titles->sectionSize(column) / 2, 5);
        QTest::mouseClick(titles->viewport(), Qt::LeftButton, {}, place);
    };
    click(ObserverPointsModel::NameColumn);
    QCOMPARE(table.heights(), (QList<double>{2, 3, 0, 4, 1})); // without a name: last
    QVERIFY(table.table.currentRow() == 1 && table.view.selectionModel()->isRowSelected(1, {}));
    QCOMPARE(table.model.undoName(), QStringLiteral("tri des points"));
    QVERIFY(titles->isSortIndicatorShown());
    click(ObserverPointsModel::NameColumn);
    QCOMPARE(table.heights(), (QList<double>{4, 0, 3, 2, 1}));
    click(ObserverPointsModel::DistanceColumn); // 0 is no limit
    QCOMPARE(table.heights(), (QList<double>{4, 3, 2, 1, 0}));
    const auto steps = table.model.history().count();
    click(ObserverPointsModel::ModeColumn); // all are equal: no step
    QCOMPARE(table.model.history().count(), steps);
    for (int step = 0; step < 3; ++step)
        QTest::keyClick(&table.view, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(table.model.points() == points && table.table.currentRow() == 3);
    QVERIFY(!titles->isSortIndicatorShown());
}

void ObserverTableTest::hiddenColumns()
{
    Table table(m_ground);
    QToolButton button;
    table.table.setColumnsButton(&button);
    table.table.retranslate();
    const int azimuth = ObserverPointsModel::FirstLimitColumn + 1;
    const int leastDistance = ObserverPointsModel::SeenColumn - 1;
    table.addRow(1);
    for (int column = ObserverPointsModel::FirstLimitColumn; column < ObserverPointsModel::ColumnCount;
         ++column)
        QVERIFY(table.view.isColumnHidden(column) && !table.view.isColumnHidden(column - 1 - limitCount));
    QAction *shown = button.menu()->actions().at(azimuth - ObserverPointsModel::NameColumn);
    QVERIFY(shown->text() == "Azimut de" && !shown->isChecked());
    table.table.addPoints({{.limits = {.leastDistance = 5.0}}}); // shows its column
    QVERIFY(!table.view.isColumnHidden(leastDistance) && table.view.isColumnHidden(azimuth));
    shown->trigger();
    QVERIFY(!table.view.isColumnHidden(azimuth));

    // A limit can be typed and emptied again; a name is one line.
    for (const auto &[typed, value] :
         QVector<QPair<QString, std::optional<double>>>{{"361", 360.0}, {"12,5", 12.5}, {"", std::nullopt}}) {
        QLineEdit *editor = table.edit(0, azimuth);
        QVERIFY(editor);
        editor->clear();
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!table.view.viewport()->findChild<QLineEdit *>());
        QVERIFY2(table.model.point(0).limits.azimuthFrom == value, qPrintable(typed));
    }
    table.model.setData(table.model.index(0, ObserverPointsModel::NameColumn), " Pic\tdu Midi\n");
    QCOMPARE(table.model.point(0).name, QStringLiteral("Pic du Midi"));

    // What is copied is pasted as it was.
    table.view.selectAll();
    QTest::keyClick(&table.view, Qt::Key_C, Qt::ControlModifier);
    table.table.paste({});
    QCOMPARE(table.model.rowCount(), 4);
    QVERIFY(table.model.points().mid(2) == table.model.points().mid(0, 2));
    QCoreApplication::processEvents();
}

void ObserverTableTest::seenAreas()
{
    Table table(m_ground);
    Prompt::answerBeforehand({});
    table.addRow(3);
    table.table.addPoints({{.x = 500025.0, .y = 5099995.0}}); // no ground: the tool does not get it
    QCoreApplication::processEvents();
    table.model.setData(table.model.index(1, ObserverPointsModel::EnabledColumn), false);
    const auto shown = [&] {
        QStringList texts;
        for (int row = 0; row < table.model.rowCount(); ++row)
            texts += table.model.index(row, ObserverPointsModel::SeenColumn).data().toString();
        return texts.join('|');
    };
    const auto set = [&] { table.model.setSeenAreas({1.25, 30.0}); };
    set();
    QVERIFY(!table.table.showsSeenAreas()); // the user shows the column
    const QLocale locale;
    QCOMPARE(shown(),
             QStringLiteral("%1||%2|").arg(locale.toString(1.25, 'f', 2), locale.toString(30.0, 'f', 2)));
    table.model.sort(ObserverPointsModel::SeenColumn, Qt::DescendingOrder);
    QCOMPARE(shown(),
             QStringLiteral("%1|%2||").arg(locale.toString(30.0, 'f', 2), locale.toString(1.25, 'f', 2)));
    QVERIFY(!table.model.setData(table.model.index(0, ObserverPointsModel::SeenColumn), "7"));
    const QVector<std::function<void()>> changes{
        [&] { table.model.setPoint(2, {.x = 500015.0, .y = 5099995.0}); },
        [&] { table.model.removePoints({3}); }, [&] { table.addRow(1); },
        [&] { table.model.setGround(m_ground); },
        [&] { table.model.setSeenAreas({1.0}); }}; // of another list of observers
    for (const auto &change : changes) {
        table.model.setSeenAreas(QVector<double>(table.model.observers().size(), 2.0));
        QVERIFY(shown() != QString(table.model.rowCount() - 1, '|'));
        change();
        QCOMPARE(shown(), QString(table.model.rowCount() - 1, '|'));
    }
}

void ObserverTableTest::manyPoints()
{
    Table table(m_ground);
    QList<ObserverPoint> points;
    constexpr int count = 100000;
    for (int at = 0; at < count; ++at)
        points += ObserverPoint{.x = 500005.0, .y = 5099995.0, .height = 1.0 * (count - at)};
    int signalCount = 0;
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(&table.model, signal, this, [&] { ++signalCount; });
    table.table.addPoints(points);
    table.view.selectAll();
    table.model.sort(ObserverPointsModel::HeightColumn, Qt::AscendingOrder);
    QCOMPARE(table.model.point(0).height, 1.0);
    table.table.removeSelected();
    QVERIFY(table.model.rowCount() == 0 && signalCount == 2);
}

void ObserverTableTest::anotherDem()
{
    Table table(m_ground);
    Prompt::answerBeforehand({});
    table.addRow(2);
    table.table.addPoints({{.x = 500025.0, .y = 5099995.0}});
    QCoreApplication::processEvents();
    QCOMPARE(Prompt::takeShown().size(), 1);
    QVERIFY(!table.model.point(2).enabled
            && table.model.history().count() == 2); // switched off in the same step
    table.model.removePoints({1});
    table.model.removePoints({0});

    table.model.setGround(m_higher);
    for (int step = 0; step < 2; ++step)
        table.model.history().undo();
    QCoreApplication::processEvents();
    QVERIFY(Prompt::takeShown().isEmpty() && table.model.history().canRedo());
    QCOMPARE(table.model.groundlessCount(), 1); // the first point came back enabled
    const QList<ToolObserver> observers = table.model.observers();
    QCOMPARE(observers.size(), 1);
    QCOMPARE(observers.first().z, 122.0);
    table.model.setData(table.model.index(2, ObserverPointsModel::EnabledColumn), true);
    QCOMPARE(table.model.enabledCount(), 2); // the change has switched off the first point
    table.model.history().undo();
    QVERIFY(table.model.point(0).enabled && !table.model.point(2).enabled);
    QCoreApplication::processEvents();
}

void ObserverTableTest::positionIsUndone()
{
    Table table(m_ground);
    table.addRow(1);
    QWidget window;
    QLineEdit x(&window);
    QLineEdit y(&window);
    PositionFields fields(&x, &y);
    table.table.addHistoryKeys(&x);
    connect(&fields, &PositionFields::moved, this, [&](const QPointF &position) {
        ObserverPoint point = table.model.point(0);
        point.x = position.x();
        table.model.setPoint(0, point);
    });
    const auto show = [&] { fields.show(table.model.point(0)); };
    connect(&table.model, &QAbstractItemModel::dataChanged, this, show);
    show();
    window.show();
    window.activateWindow();
    x.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClicks(&x, "0");
    QTest::keyClick(&x, Qt::Key_Z, Qt::ControlModifier); // the typed digit
    QVERIFY(x.text() == "500005" && table.model.history().count() == 1);
    QTest::keyClick(&x, Qt::Key_Backspace);
    QTest::keyClick(&x, Qt::Key_Return);
    QCOMPARE(table.model.point(0).x, 50000.0);
    QTest::keyClick(&x, Qt::Key_Z, Qt::ControlModifier); // the move
    QVERIFY(table.model.point(0).x == 500005.0 && x.text() == "500005");
    QCoreApplication::processEvents();
}

void ObserverTableTest::unusableNumbers_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("good");
    const double infinite = std::numeric_limits<double>::infinity();
    const QVector<std::tuple<const char *, double, bool>> rows{
        {"x", std::nan(""), false}, {"x", 1.1e15, false},     {"x", -1e15, true},
        {"y", -infinite, false},    {"y", 1e15, true},        {"height", std::nan(""), false},
        {"height", 1e8, false},     {"height", -1e7, true},   {"distance", std::nan(""), false},
        {"distance", -0.5, false},  {"distance", 0.0, true},  {"distance", infinite, false},
        {"distance", 1e9, true},    {"distance", 1e10, false}};
    for (const auto &[member, value, good] : rows)
        QTest::addRow("%s %g", member, value) << QString::fromLatin1(member) << value << good;
}

void ObserverTableTest::unusableNumbers()
{
    QFETCH(QString, member);
    QFETCH(double, value);
    QFETCH(bool, good);
    QMap<QString, double> values{{"x", 500005}, {"y", 5099995}, {"height", 2}, {"distance", 30}};
    values[member] = value;
    const ObserverPoint point{
        .x = values["x"], .y = values["y"], .height = values["height"], .maxDistance = values["distance"]};
    QCOMPARE(pointProblem(point).isEmpty(), good);
    QCOMPARE(readPointRows(pointRows({point})).problem.isEmpty(), good);
    QVariantMap row = pointRows({{}}).first().toMap();
    row.insert("colour", 3);
    QVERIFY(readPointRows(QVariantList{row}).problem.contains("colour"));
    const QString line = QStringLiteral("%1 %2 %3 Relative %4")
                             .arg(point.x, 0, 'g', 17)
                             .arg(point.y, 0, 'g', 17)
                             .arg(point.height)
                             .arg(point.maxDistance);
    const PointLinesReading lines = readPointLines(line, {});
    QVERIFY(lines.points.size() == good && lines.problems.size() == !good);
    if (member == "height" || member == "distance") {
        Table table(m_ground);
        table.addRow(1);
        const int column =
            member == "height" ? ObserverPointsModel::HeightColumn : ObserverPointsModel::DistanceColumn;
        QCOMPARE(table.model.setData(table.model.index(0, column), value), good);
    }
}

void ObserverTableTest::unusableHeights()
{
    VectorObservers source;
    for (const double value : {3.0, std::nan(""), 1e20})
        source.sites += VectorSite{.z = value, .values = {value}};
    source.sites += VectorSite{};
    source.numericAttributes += "mast";
    const ObserverPoint defaults;
    for (const HeightChoice &choice : {HeightChoice{true, {}}, HeightChoice{false, "mast"}}) {
        const SampledObservers observers = observersFrom(source, 1.0, defaults, choice);
        QCOMPARE(observers.withoutHeight, 3);
        QCOMPARE(observers.points.at(0).height, 3.0);
        for (int at = 1; at < 4; ++at)
            QVERIFY(observers.points.at(at).height == defaults.height
                    && observers.points.at(at).mode == AltitudeMode::Relative);
    }
    QCOMPARE(observersFrom(source, 1.0, defaults).withoutHeight, 0);
}

QTEST_MAIN(ObserverTableTest)
#include "observertable_test.moc"
