#include "dataset/chooser/ImageChooser.h"

#include "dataset/QuvoFilerDialog.h"
#include "dataset/chooser/SourcePreview.h"
#include "dataset/chooser/TileForm.h"
#include "dataset/gdalmessages.h"
#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "messages/rasterheader.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

namespace
{

/// The chooser, shown, with access to its controls.
struct ShownChooser
{
    explicit ShownChooser(SourceWanted wanted = SourceWanted::Rasters)
        : window(wanted, folder)
    {
        window.show();
    }
    template <class Widget> Widget *find(const char *name) { return window.findChild<Widget *>(name); }
    /// Number of different colours in the picture.
    int colours()
    {
        const QImage picture = window.findChild<SourcePreview *>()->grab().toImage();
        QSet<QRgb> seen;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                seen += picture.pixel(x, y);
        }
        return static_cast<int>(seen.size());
    }
    QLineEdit *field() { return find<QLineEdit>("m_pLESource"); }
    QTreeWidget *items() { return find<QTreeWidget>("m_pItems"); }
    QTreeWidget *parts() { return find<QTreeWidget>("m_pParts"); }
    QPushButton *button(const char *name) { return find<QPushButton>(name); }
    QString problem() { return find<QLabel>("m_pLProblem")->text(); }
    void open(const QString &name)
    {
        window.setSource(name);
        QTRY_VERIFY(!window.isBusy());
    }

    WorkFolder folder;
    ImageChooser window;
};

} // namespace

class ImageChooserTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void init();
    void bandByKeyboard();
    void filesOfAFolder();
    void fileDialogs();
    void failuresKeepTheDialogUsable();
    void layers();
    void fileWithoutHeader();
    void olderHeader();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void ImageChooserTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(writeRaster(path("dem.tif"), 3, 2, {1, -9999, 3, 4, 5, 7}, 2));
    Prompt::answerBeforehand({});
    QuvoFilerDialog::answerBeforehand({});
}

void ImageChooserTest::bandByKeyboard()
{
    ShownChooser chooser;
    chooser.field()->setFocus();
    QTest::keyClicks(chooser.field(), path("dem.tif"));
    QVERIFY(!chooser.button("m_pPBChoose")->isEnabled());
    QTest::keyClick(chooser.field(), Qt::Key_Return);
    QTRY_VERIFY(!chooser.window.isBusy());
    QVERIFY(chooser.window.isVisible() && chooser.window.isComplete());
    QCOMPARE(chooser.parts()->topLevelItemCount(), 2);
    QVERIFY(chooser.colours() > 3);
    const auto facts = chooser.find<QTreeWidget>("m_pFacts");
    QVERIFY(facts->topLevelItem(facts->topLevelItemCount() - 1)->text(1).contains("16")); // % of voids
    chooser.parts()->setFocus();
    QTest::keyClick(chooser.parts(), Qt::Key_Down);
    QCOMPARE(chooser.window.band(), 2);

    QTest::keyClicks(chooser.field(), "x"); // another source than the one that is shown
    QVERIFY(!chooser.button("m_pPBChoose")->isEnabled());
    QTest::keyClick(chooser.field(), Qt::Key_Backspace);
    chooser.field()->setFocus();
    QTest::keyClick(chooser.field(), Qt::Key_Return);
    QCOMPARE(chooser.window.result(), int(QDialog::Accepted));
    QCOMPARE(chooser.window.name(), path("dem.tif"));
    QCOMPARE(chooser.window.band(), 2);
}

void ImageChooserTest::filesOfAFolder()
{
    QVERIFY(QFile::copy(path("dem.tif"), path("b.tif")));
    QVERIFY(QFile::copy(path("dem.tif"), path("a.tif")));
    ShownChooser chooser;
    chooser.open(m_folder->path());
    QCOMPARE(chooser.items()->topLevelItemCount(), 3);
    QTRY_VERIFY(chooser.window.isComplete()); // the first file, in the order of the names
    QCOMPARE(chooser.window.name(), path("a.tif"));
    chooser.items()->setCurrentItem(chooser.items()->topLevelItem(1));
    QCOMPARE(chooser.window.name(), path("b.tif"));
    chooser.open(path("dem.tif"));
    QVERIFY(chooser.items()->isHidden());

    QVERIFY(QDir(m_folder->path()).mkdir("empty"));
    chooser.open(path("empty"));
    QVERIFY(!chooser.window.isComplete());
    QVERIFY(chooser.problem().contains("Rien"));
}

void ImageChooserTest::fileDialogs()
{
    ShownChooser chooser;
    QuvoFilerDialog::answerBeforehand({path("dem.tif"), QString()});
    chooser.button("m_pPBFile")->click();
    QCOMPARE(chooser.window.name(), path("dem.tif"));
    const QString filter = QuvoFilerDialog::takeShown().value(0);
    QVERIFY(filter.contains("GeoTIFF (*.tif") && !filter.contains("*.shp"));
    chooser.button("m_pPBFile")->click(); // cancelled
    QCOMPARE(chooser.window.name(), path("dem.tif"));
    QCOMPARE(QuvoFilerDialog::takeShown().value(0).section('|', 1, 1), path("dem.tif"));
}

void ImageChooserTest::failuresKeepTheDialogUsable()
{
    ShownChooser chooser;
    for (const QString &name : {path("absent.tif"), QString("/dev/null"), QString("nothing at all"),
                                QString("NETCDF:x"), QString("/vsicurl/http://127.0.0.1:9/a.tif")}) {
        chooser.open(path("dem.tif"));
        QVERIFY(chooser.window.isComplete() && chooser.find<QLabel>("m_pLProblem")->isHidden());
        chooser.open(name);
        QVERIFY2(!chooser.window.isComplete() && !chooser.problem().isEmpty(), qPrintable(name));
        QVERIFY(chooser.find<QLabel>("m_pLProblem")->isVisible() && chooser.parts()->isHidden());
    }
}

void ImageChooserTest::layers()
{
    writeFile(path("lines.csv"), "id,WKT\n1,\"LINESTRING (0 0,10 20)\"\n");
    writeFile(path("points.csv"), "id,WKT\n1,\"POINT (1 2)\"\n");
    ShownChooser chooser(SourceWanted::Vectors);
    chooser.open(path("lines.csv"));
    QVERIFY(chooser.window.isComplete());
    QCOMPARE(chooser.window.layer(), QString("lines"));
    QCOMPARE(chooser.parts()->topLevelItem(0)->text(0), QString("lines"));
    QVERIFY(chooser.colours() > 1); // the line is drawn
    chooser.open(path("dem.tif"));
    QVERIFY(!chooser.window.isComplete() && chooser.problem().contains("raster"));
    QCOMPARE(chooser.colours(), 1);
}

void ImageChooserTest::fileWithoutHeader()
{
    const QByteArray cells(12, '\1');
    writeFile(path("dem.hgt"), cells);
    ShownChooser chooser;
    chooser.open(path("dem.hgt"));
    QVERIFY(chooser.problem().contains(".hgt") && chooser.button("m_pPBReadTile")->isVisible());
    QTimer::singleShot(0, [] {
        auto form = qobject_cast<TileForm *>(QApplication::activeModalWidget());
        QVERIFY(form);
        const auto accept = form->findChildren<QPushButton *>().first();
        const auto counts = form->findChildren<QSpinBox *>();
        counts.at(0)->setValue(4);
        QVERIFY(!accept->isEnabled()); // 4 × 2 cells are not in the file
        counts.at(0)->setValue(2);
        counts.at(1)->setValue(3);
        QVERIFY(accept->isEnabled());
        form->accept();
    });
    chooser.button("m_pPBReadTile")->click();
    QTRY_VERIFY(!chooser.window.isBusy());
    QVERIFY2(chooser.window.isComplete(), qPrintable(chooser.problem()));
    QVERIFY(chooser.window.name().startsWith(chooser.folder.path()));
    QCOMPARE(bytesOf(path("dem.hgt")), cells);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), (QStringList{"dem.hgt", "dem.tif"}));
}

void ImageChooserTest::olderHeader()
{
    const QByteArray older = QByteArray(rasterHeaderBytes({}).data(), rasterHeaderSize).replace(26, 3, "im*");
    writeFile(path("older"), older);
    qunsetenv("LUMAGRAF_HOME");
    ShownChooser chooser;
    chooser.open(path("dem.tif"));
    QVERIFY(chooser.button("m_pPBConvert")->isHidden());
    chooser.open(path("older"));
    QVERIFY(!chooser.window.isComplete() && chooser.button("m_pPBConvert")->isVisible());
    chooser.button("m_pPBConvert")->click(); // "no"
    QVERIFY(Prompt::takeShown().value(0).contains(path("older")));
    QCOMPARE(bytesOf(path("older")), older);

    Prompt::answerBeforehand({true});
    chooser.button("m_pPBConvert")->click(); // without a dictionary
    QVERIFY(Prompt::takeShown().value(1).contains("introuvables"));
    QCOMPARE(bytesOf(path("older")), older);

    qputenv("LUMAGRAF_HOME", QUVO_TREE);
    qputenv("GEOLANGUE", "FRENCH");
    Prompt::answerBeforehand({true});
    chooser.button("m_pPBConvert")->click();
    QCOMPARE(Prompt::takeShown().size(), 1); // the question alone
    QCOMPARE(bytesOf(path("older")).mid(26, 3), QByteArray("im2"));
    QVERIFY(chooser.button("m_pPBConvert")->isHidden());
}

QTEST_MAIN(ImageChooserTest)
#include "imagechooser_test.moc"
