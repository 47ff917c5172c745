#include "panels/controls/QEditableComboBox.h"
#include "tests/support/maindialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>

#include <gdal_priv.h>

#include <cmath>

/// What the main dialog says of its DEM and of the ratio of units, and the part of the DEM.
class DemLookTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init();
    void lineFollowsDemAndProcess();
    void ratioOffersTrueMetres();
    void readAsItIs();
    void productsInTrueMetres();
    void partOfTheDem();

private:
    QString degrees() const { return path("degrés.tif"); }
};

namespace
{

struct Dialog : ShownDialog
{
    using ShownDialog::ShownDialog;
    /// The whole line, which may be shortened on the screen.
    QString line() { return find<QLabel>("m_pLDemLook")->toolTip(); }
    QWidget *panel() { return find<QTabWidget>("m_pTabWidget")->currentWidget(); }
};

/// Reads the cell in the middle of a raster; NaN where it cannot be read.
float middleOf(const QString &raster)
{
    float cell = std::numeric_limits<float>::quiet_NaN();
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(raster.toUtf8().constData(), GDAL_OF_RASTER));
    if (!dataset
        || dataset->GetRasterBand(1)->RasterIO(GF_Read, dataset->GetRasterXSize() / 2,
                                               dataset->GetRasterYSize() / 2, 1, 1, &cell, 1, 1, GDT_Float32, 0,
                                               0, nullptr)
            != CE_None)
        return std::numeric_limits<float>::quiet_NaN();
    return cell;
}

} // namespace

void DemLookTest::init()
{
    setUpTest(60);
    QSettings("KARVEX", "Riglios").setValue("LastGeometry/showPreview", false); // only the tests run tools
    QVector<float> values;
    for (int cell = 0; cell < 60 * 60; ++cell)
        values += cell < 360 ? -9999.0F : static_cast<float>(cell % 60);
    QVERIFY(writeRaster(path("metres.tif"), 60, 60, values));
    QVERIFY(copyRaster(path("metres.tif"), degrees(),
                       {"-a_srs", "EPSG:4326", "-a_ullr", "8", "47", "8.006", "46.994"}));
}

void DemLookTest::lineFollowsDemAndProcess()
{
    Dialog dialog(m_tools);
    QVERIFY(dialog.line().isEmpty() && !dialog.find<QToolButton>("m_pTBDemLook")->isVisible());
    dialog.window.setInputDem(path("dem.tif"));
    QVERIFY2(dialog.line().startsWith("60 × 60 cellules · WGS 84 / UTM"), qPrintable(dialog.line()));
    QVERIFY(!dialog.line().contains("Degrés"));
    dialog.window.setInputDem(degrees());
    QVERIFY2(dialog.line().contains("Degrés : une cellule mesure 7.6"), qPrintable(dialog.line()));
    QTRY_VERIFY2(dialog.line().contains("de cellules sans donnée"), qPrintable(dialog.line()));
    dialog.find<QTabWidget>("m_pTabWidget")->setCurrentIndex(2);
    QVERIFY2(dialog.line().contains("les orientations en tiennent compte")
                 && dialog.line().contains("qui valent 0 dans le produit"),
             qPrintable(dialog.line()));
    dialog.find<QTabWidget>("m_pTabWidget")->setCurrentIndex(6);
    QVERIFY2(!dialog.line().contains("mesure"), qPrintable(dialog.line()));
    dialog.find<QToolButton>("m_pTBDemLook")->click();
    const auto details = dialog.find<QDialog>("demLookDialog");
    QVERIFY(details && details->findChild<QLabel *>()->text().contains("sans donnée"));
    details->close();
}

void DemLookTest::ratioOffersTrueMetres()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(degrees());
    dialog.find<QTabWidget>("m_pTabWidget")->setCurrentIndex(1);
    const auto scale = dialog.panel()->findChild<QEditableComboBox *>();
    const auto note = dialog.panel()->findChild<QLabel *>("m_pScaleNote");
    QVERIFY(note->isHidden());
    scale->setCurrentIndex(2);
    QVERIFY2(note->text().contains("compte pour 11.1 m × 11.1 m ; elle mesure 7.6"), qPrintable(note->text()));
    QVERIFY(!dialog.line().contains("Degrés"));
    emit note->linkActivated(QStringLiteral("first"));
    QCOMPARE(scale->currentIndex(), 0);
    QVERIFY(note->isHidden() && dialog.line().contains("Degrés"));
    dialog.window.setInputDem(path("dem.tif"));
    scale->setCurrentIndex(1);
    QVERIFY(note->text().contains("elle mesure 10.0 m"));
}

void DemLookTest::readAsItIs()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(degrees());
    QTimer::singleShot(0, &dialog.window, [] {
        QWidget *options = QApplication::activeModalWidget();
        options->findChild<QCheckBox *>("m_pChBAsIs")->setChecked(true);
        options->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    });
    dialog.find<QPushButton>("m_pPBOutputFileAdvancedOptions")->click();
    QVERIFY2(dialog.line().contains("tel quel"), qPrintable(dialog.line()));
    QVERIFY(dialog.window.recipe().outputOptions.asIs);
}

void DemLookTest::productsInTrueMetres()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(degrees());
    dialog.find<QTabWidget>("m_pTabWidget")->setCurrentIndex(1);
    dialog.launchButton()->click();
    QTRY_VERIFY_WITH_TIMEOUT(dialog.result(), 20000);
    const float slope = middleOf(dialog.find<QLineEdit>("m_pLEOutputFile")->text());
    const double expected = std::atan(1.0 / 7.613) * 180.0 / M_PI; // 1 m over a cell's width
    QVERIFY2(std::abs(slope - expected) < 0.01, qPrintable(QString::number(slope)));
    const QString command = dialog.window.commandToCopy();
    QVERIFY2(command.contains("QuvoDemBatch"), qPrintable(command));
}

void DemLookTest::partOfTheDem()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(degrees());
    const auto button = dialog.find<QToolButton>("m_pTBDemPart");
    const auto choose = [&](int column) {
        QTimer::singleShot(0, &dialog.window, [column] {
            QWidget *part = QApplication::activeModalWidget();
            part->findChild<QAbstractSpinBox *>("m_pSBColumn")->setProperty("value", column);
            part->findChild<QPushButton *>("m_pPBAccept")->click();
        });
        button->click();
    };
    choose(20);
    QCOMPARE(dialog.window.recipe().part.left(), 20);
    QVERIFY2(button->text().contains("40 × 60"), qPrintable(button->text()));
    Recipe settings = dialog.window.recipe();
    settings.part = QRect(5, 6, 30, 20);
    dialog.window.setRecipe(settings);
    QCOMPARE(dialog.window.recipe().part, QRect(5, 6, 30, 20));
    dialog.launchButton()->click();
    QTRY_VERIFY_WITH_TIMEOUT(dialog.result(), 20000);
    const std::unique_ptr<GDALDataset> product(GDALDataset::Open(
        dialog.find<QLineEdit>("m_pLEOutputFile")->text().toUtf8().constData(), GDAL_OF_RASTER));
    QVERIFY(product && product->GetRasterXSize() == 30 && product->GetRasterYSize() == 20);
    dialog.window.setInputDem(path("dem.tif")); // another DEM is read whole
    QVERIFY(dialog.window.recipe().part.isNull());
}

QTEST_MAIN(DemLookTest)
#include "demlook_test.moc"
