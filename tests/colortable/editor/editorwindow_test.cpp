#include "colortable/colortablefile.h"
#include "colortable/editor/ColorGrid.h"
#include "colortable/editor/ColorTableEditor.h"
#include "colortable/editor/ColorTriangle.h"
#include "colortable/editor/CursorFields.h"
#include "colortable/editor/GradientView.h"
#include "colortable/editor/LibraryList.h"
#include "colortable/editor/tablefiles.h"
#include "colortable/editor/tablelibrary.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/gdalmessages.h"
#include "messages/Prompt.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QAction>
#include <QCheckBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/// The editor's window, used with mouse and keys.
class EditorWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_editor.reset(); }

    void mouseMovesAddsAndRemoves();
    void keysDoTheSame();
    void colorsArePicked();
    void everyStepIsUndone();
    void previewFollowsAndEqualsTheTable();
    void percentagesUseTheDem();
    void savesAndAsks();
    void badFilesAreRefused();
    void libraryFolder();

private:
    const EditedTable &table() const { return m_editor->table(); }
    GradientView &gradient() const { return *m_editor->findChild<GradientView *>(); }
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void undo() const { QTest::keyClick(m_editor.get(), Qt::Key_Z, Qt::ControlModifier); }
    QPoint rampPlace(double part) const
    {
        return {14 + static_cast<int>(part * (gradient().width() - 28)), gradient().handlePlace(0).y() - 30};
    }

    /// QTest::mouseMove() moves the pointer of the screen, which the offscreen platform has not.
    void drag(const QPoint &to) const
    {
        QMouseEvent move(QEvent::MouseMove, to, gradient().mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&gradient(), &move);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ColorTableEditor> m_editor;
};

namespace
{

const QByteArray simpleTable = "0.0\t0\t0\t255\t255\n100.0\t0\t255\t0\t255\n200.0\t255\t0\t0\t255\n";

} // namespace

void EditorWindowTest::initTestCase()
{
    setUpGdal();
}

void EditorWindowTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX"));
    QVERIFY(QDir().mkpath(path("library")));
    const QString file = writeFile(path("library/simple.txt"), simpleTable);
    QVERIFY(writeRaster(path("dem.tif"), 2, 2, {0, 100, 200, -9999}));
    m_editor = std::make_unique<ColorTableEditor>(EditorStart{.file = file,
                                                              .entries = readColorTable(file).entries,
                                                              .libraryFolder = path("library"),
                                                              .ownFolder = path("own"),
                                                              .dem = path("dem.tif"),
                                                              .band = 1,
                                                              .minimum = 0.0,
                                                              .maximum = 200.0,
                                                              .hasExtremes = true});
    m_editor->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
    QTest::qWait(50); // the DEM is read
    Prompt::answerBeforehand({});
    QuvoFilerDialog::answerBeforehand({});
}

void EditorWindowTest::mouseMovesAddsAndRemoves()
{
    QTest::mouseDClick(&gradient(), Qt::LeftButton, {}, rampPlace(0.25));
    QCOMPARE(table().cursors.size(), 4);
    const double added = table().cursors.at(1).value;
    QVERIFY2(added > 30.0 && added < 70.0, qPrintable(QString::number(added)));

    const QPoint handle = gradient().handlePlace(1);
    QTest::mousePress(&gradient(), Qt::LeftButton, {}, handle);
    for (int step = 1; step <= 10; ++step)
        drag(handle + QPoint(2 * step, 0));
    QTest::mouseRelease(&gradient(), Qt::LeftButton, {}, handle + QPoint(20, 0));
    QVERIFY(table().cursors.at(1).value > added);
    undo(); // the whole movement
    QCOMPARE(table().cursors.at(1).value, added);

    QTest::mousePress(&gradient(), Qt::LeftButton, {}, handle);
    drag(handle + QPoint(3, 0));
    drag(handle + QPoint(3, -140));
    QTest::mouseRelease(&gradient(), Qt::LeftButton, {}, handle + QPoint(3, -140));
    QCOMPARE(table().cursors.size(), 3);
}

void EditorWindowTest::keysDoTheSame()
{
    gradient().setFocus();
    QTest::keyClick(&gradient(), Qt::Key_Up);
    QTest::keyClick(&gradient(), Qt::Key_Right);
    QCOMPARE(table().cursors.at(1).value, 102.0);
    QTest::keyClick(&gradient(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(table().cursors.at(1).value, 82.0);
    QTest::keyClick(&gradient(), Qt::Key_Insert);
    QCOMPARE(table().cursors.size(), 4);
    QCOMPARE(table().cursors.at(2).value, 141.0);
    QTest::keyClick(&gradient(), Qt::Key_Delete);
    QCOMPARE(table().cursors.size(), 3);

    auto &value = *m_editor->findChild<QDoubleSpinBox *>();
    QTest::keyClick(&gradient(), Qt::Key_Home);
    value.setFocus();
    value.selectAll();
    QTest::keyClicks(&value, value.locale().toString(150.5, 'f', 1));
    QTest::keyClick(&value, Qt::Key_Return);
    QCOMPARE(table().cursors.at(1).value, 150.5); // beyond its neighbour
    QVERIFY(m_editor->isVisible());               // Return in a field does not close the window
}

void EditorWindowTest::colorsArePicked()
{
    auto &code =
        *m_editor->findChild<CursorFields *>()->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly);
    code.setFocus();
    code.selectAll();
    QTest::keyClicks(&code, "12345680");
    QTest::keyClick(&code, Qt::Key_Tab);
    QCOMPARE(table().cursors.at(0).color, QColor(0x12, 0x34, 0x56, 0x80));

    auto &grid = *m_editor->findChild<ColorGrid *>();
    QTest::mouseClick(&grid, Qt::LeftButton, {}, QPoint(30, 10));   // the table's second colour
    QCOMPARE(table().cursors.at(0).color, QColor(0, 255, 0, 0x80)); // alpha stays

    auto &triangle = *m_editor->findChild<ColorTriangle *>();
    const ColorPlaces places(QRectF((triangle.width() - qMin(triangle.width(), triangle.height()) + 6) / 2.0,
                                    (triangle.height() - qMin(triangle.width(), triangle.height()) + 6) / 2.0,
                                    qMin(triangle.width(), triangle.height()) - 6.0,
                                    qMin(triangle.width(), triangle.height()) - 6.0));
    QTest::mouseClick(&triangle, Qt::LeftButton, {}, places.placeOfHue(2.0 / 3.0).toPoint());
    const QColor blue = table().cursors.at(0).color;
    QVERIFY2(blue.blue() > 240 && blue.red() < 40 && blue.green() < 40, qPrintable(blue.name()));
    QTest::mouseClick(&triangle, Qt::LeftButton, {}, places.center().toPoint());
    const QColor mixed = table().cursors.at(0).color; // a third of each corner
    QVERIFY2(qAbs(mixed.red() - 85) < 12 && qAbs(mixed.blue() - 170) < 12, qPrintable(mixed.name()));
    for (int press = 0; press < 14; ++press) // more than the grid has room for
        QTest::keyClick(&triangle, Qt::Key_Up);
    QVERIFY(table().cursors.at(0).color != mixed);
    QTest::mouseClick(&grid, Qt::LeftButton, {}, QPoint(30, 54)); // the second one of the colours used last
    QCOMPARE(table().cursors.at(0).color, mixed);
    undo();
    QVERIFY(table().cursors.at(0).color != mixed);
    undo(); // all keys
    QCOMPARE(table().cursors.at(0).color, mixed);
}

void EditorWindowTest::everyStepIsUndone()
{
    TableHistory history;
    const EditedTable first = editedTable(parseColorTable(simpleTable + "nv 1 2 3 4\n").entries);
    history.open(first);
    QRandomGenerator random(17);
    const QVector<double> sample{-3, 0, 10, 50, 51, 52, 180, 300};
    for (int step = 0; step < 500; ++step) {
        const EditedTable &now = history.table();
        const int at = random.bounded(static_cast<int>(now.cursors.size()));
        const double value = random.bounded(400.0) - 100.0;
        switch (random.bounded(12)) {
        case 0:
            history.change(withCursor(now, value), "a");
            break;
        case 1:
            history.change(withoutCursor(now, at), "b");
            break;
        case 2:
            history.change(moved(now, at, value), "c", 1 + step / 5);
            break;
        case 3:
            history.change(withValue(now, at, value), "d");
            break;
        case 4:
            history.change(withColor(now, at, QColor(random.generate())), at, "e", 1000 + step / 3);
            break;
        case 5:
            history.change(inverted(now), at, "f");
            break;
        case 6:
            history.change(negative(now), at, "g");
            break;
        case 7:
            history.change(randomized(now, random.generate()), at, "h");
            break;
        case 8:
            history.change(spreadByArea(now, sample), at, "i");
            break;
        case 9:
            history.change(toPercent(now, 0, 200), at, "j");
            break;
        case 10:
            history.change(toAbsolute(now, 0, 200), at, "k");
            break;
        default:
            history.change(withNoData(withEvenSegment(now, at, true), std::nullopt), at, "l");
            break;
        }
        QVERIFY(!history.table().cursors.isEmpty());
        QVERIFY(std::is_sorted(
            history.table().cursors.begin(), history.table().cursors.end(),
            [](const ColorCursor &one, const ColorCursor &other) { return one.value < other.value; }));
    }
    const EditedTable last = history.table();
    while (history.stack().canUndo())
        history.stack().undo();
    QVERIFY(history.table() == first);
    while (history.stack().canRedo())
        history.stack().redo();
    QVERIFY(history.table() == last);
}

void EditorWindowTest::previewFollowsAndEqualsTheTable()
{
    ElevationGridReader reader(path("dem.tif"), 1, 400);
    while (reader.advance(10)) { }
    const ElevationGrid &grid = reader.grid();
    QCOMPARE(grid.width, 2);
    QVERIFY(std::isnan(grid.cells.at(3)));
    const QImage image = reliefImage(grid, {parseColorTable(simpleTable + "nv 9 8 7 6\n").entries, 0.0, 200.0});
    QCOMPARE(image.pixel(0, 0), qRgb(0, 0, 255));
    QCOMPARE(image.pixel(1, 0), qRgb(0, 255, 0));
    QCOMPARE(image.pixel(0, 1), qRgb(255, 0, 0));
    QCOMPARE(image.pixel(1, 1), qRgba(9, 8, 7, 6));

    auto &preview = *m_editor->findChild<ReliefPreview *>();
    const auto center = [&] {
        return preview.grab().toImage().pixel(preview.width() / 2 - 40, preview.height() / 2 - 40);
    };
    const QRgb before = center(); // of the upper left cell
    QTest::mouseClick(m_editor->findChild<ColorGrid *>(), Qt::LeftButton, {}, QPoint(50, 10)); // red for blue
    QVERIFY(qBlue(before) > 150 && qBlue(center()) < 100);
}

void EditorWindowTest::percentagesUseTheDem()
{
    const QList<QAction *> actions = m_editor->findChildren<QAction *>();
    const auto trigger = [&](const QString &text) {
        for (QAction *action : actions) {
            if (action->text() == text) {
                action->trigger();
                return;
            }
        }
        QFAIL(qPrintable(text));
    };
    trigger(QStringLiteral("Passer aux pourcentages des altitudes du MNT"));
    QVERIFY(table().percent);
    QCOMPARE(table().cursors.at(1).value, 50.0);
    QCOMPARE(gradient().sample(), (QVector<double>{0.0, 50.0, 100.0}));
    trigger(QStringLiteral("Passer aux altitudes du MNT"));
    QCOMPARE(table().cursors.at(1).value, 100.0);
    QCOMPARE(gradient().sample(), (QVector<double>{0.0, 100.0, 200.0}));
    trigger(QStringLiteral("Inverser l'ordre"));
    QCOMPARE(table().cursors.at(0).color, QColor(Qt::red));
}

void EditorWindowTest::savesAndAsks()
{
    QSignalSpy created(m_editor.get(), &ColorTableEditor::newColorFileCreated);
    QSignalSpy changed(m_editor.get(), qOverload<>(&ColorTableEditor::currentColorFileDataChanged));
    QSignalSpy used(m_editor.get(),
                    qOverload<const QList<QuvoColorDef> &>(&ColorTableEditor::currentColorFileDataChanged));
    QTest::keyClick(&gradient(), Qt::Key_Delete);
    QVERIFY(m_editor->isWindowModified());

    // A table of the library is saved elsewhere.
    const QString own = path("own/mine.txt");
    QuvoFilerDialog::answerBeforehand({path("own/mine")});
    QVERIFY(m_editor->save());
    QCOMPARE(bytesOf(own), QByteArray("100.0\t0\t255\t0\t255\n200.0\t255\t0\t0\t255\n"));
    QCOMPARE(bytesOf(path("library/simple.txt")), simpleTable);
    QCOMPARE(created.count(), 1);
    QVERIFY(!m_editor->isWindowModified());

    // So is a table in a file that goes with the program.
    ColorTableEditor temporary({.file = own,
                                .isTemporary = true,
                                .entries = readColorTable(own).entries,
                                .libraryFolder = path("library"),
                                .ownFolder = path("own")});
    QTest::keyClick(temporary.findChild<GradientView *>(), Qt::Key_Delete);
    QuvoFilerDialog::answerBeforehand({path("own/kept.txt")});
    QVERIFY(temporary.save());
    QVERIFY(bytesOf(own).startsWith("100.0") && bytesOf(path("own/kept.txt")).startsWith("200.0"));

    // From now on it is saved in its own file; another file is replaced only after a question.
    QTest::keyClick(&gradient(), Qt::Key_Right);
    QVERIFY(m_editor->save());
    QVERIFY(bytesOf(own).startsWith("10"));
    const QString other = writeFile(path("own/other.txt"), "precious");
    Prompt::answerBeforehand({false});
    QuvoFilerDialog::answerBeforehand({other});
    QVERIFY(!m_editor->saveAs());
    QCOMPARE(Prompt::takeShown().size(), 1);
    QCOMPARE(bytesOf(other), QByteArray("precious"));

    // Closing asks; "no" discards.
    QTest::keyClick(&gradient(), Qt::Key_Right);
    Prompt::answerBeforehand({false});
    const QByteArray saved = bytesOf(own);
    m_editor->reject();
    QCOMPARE(Prompt::takeShown().size(), 1);
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(bytesOf(own), saved);

    // Nothing can be written into a folder that is missing: the window stays as it is.
    m_editor->show();
    QuvoFilerDialog::answerBeforehand({path("missing/t.txt")});
    Prompt::answerBeforehand({});
    QVERIFY(!m_editor->saveAs());
    QCOMPARE(Prompt::takeShown().size(), 1);
    QVERIFY(m_editor->isWindowModified());
    QCOMPARE(used.count(), 0);
    QCOMPARE(changed.count(), 0);
}

void EditorWindowTest::badFilesAreRefused()
{
    // Another program's file is not written over in this program's layout.
    const QByteArray foreign = "# QGIS Generated Color Map Export File\nINTERPOLATION:INTERPOLATED\n"
                               "0,10,20,30,255,0\n100,40,50,60,255,100\n";
    emit m_editor->findChild<LibraryList *>()->chosen(writeFile(path("qgis.txt"), foreign));
    QCOMPARE(table().cursors.size(), 2);
    QTest::keyClick(&gradient(), Qt::Key_Right);
    QVERIFY(!m_editor->save()); // the dialog that asks for a name is cancelled
    QCOMPARE(QuvoFilerDialog::takeShown().size(), 1);
    QCOMPARE(bytesOf(path("qgis.txt")), foreign);
    undo();

    // What a format cannot hold is said before it is written.
    Prompt::answerBeforehand({false, true});
    const QList<QuvoColorDef> faint = parseColorTable("0 1 2 3 128\n100 4 5 6 255\n").entries;
    QuvoFilerDialog::answerBeforehand({path("out")});
    exportTable(m_editor.get(), faint, exportKinds().first(), path("qgis.txt"));
    QVERIFY(!QFile::exists(path("out.cpt")));
    exportTable(m_editor.get(), faint, exportKinds().first(), path("qgis.txt"));
    QCOMPARE(readColorTable(path("out.cpt")).entries.size(), 2);
    init();

    auto &list = *m_editor->findChild<LibraryList *>();
    const QString empty = writeFile(path("empty.txt"), "# nothing\n");
    emit list.chosen(empty);
    QCOMPARE(Prompt::takeShown().size(), 1);
    QCOMPARE(table().cursors.size(), 3); // the table stays

    const QString mixed = writeFile(path("mixed.txt"), "50% 1 2 3\n10 4 5 6\nbad 1 1 1\n100% 7 8 9\n");
    Prompt::answerBeforehand({false});
    emit list.chosen(mixed);
    QCOMPARE(table().cursors.size(), 3);
    Prompt::answerBeforehand({true, true});
    emit list.chosen(mixed);
    QCOMPARE(Prompt::takeShown().size(), 2);
    QVERIFY(table().percent);
    QCOMPARE(table().cursors.size(), 2);
}

void EditorWindowTest::libraryFolder()
{
    QString problem;
    const QString copy = copyTable(path("library/simple.txt"), path("own"), problem);
    QCOMPARE(copy, path("own/simple.txt"));
    QCOMPARE(copyTable(copy, path("own"), problem), path("own/simple_1.txt"));
    QCOMPARE(renameTable(copy, "Mes Alpes", problem), path("own/Mes Alpes.txt"));
    QVERIFY(renameTable(path("own/simple_1.txt"), "Mes Alpes", problem).isEmpty() && !problem.isEmpty());
    for (const char *name : {"", "a/b", "..", ".hidden"})
        QVERIFY(tableFileFor(path("own"), name).isEmpty());
    const QVector<LibraryTable> tables = libraryTables(path("library"), path("own"));
    QStringList names;
    for (const LibraryTable &listed : tables)
        names += listed.name + (listed.own ? "*" : "");
    QCOMPARE(names, (QStringList{"simple", "Mes Alpes*", "simple 1*"}));
    QCOMPARE(deleteTable(path("own/simple_1.txt")), QString());
    QVERIFY(!deleteTable(path("own/simple_1.txt")).isEmpty());
}

QTEST_MAIN(EditorWindowTest)
#include "editorwindow_test.moc"
