#include "app/recipe/lightrecipes.h"
#include "messages/Prompt.h"
#include "panels/light/ColorShading.h"
#include "panels/light/LightList.h"
#include "panels/light/lightpicture.h"
#include "panels/shadedOptionsWidget.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

/// The kinds of light, the lights to choose from, and their part in the colour relief.
class LightTest : public QObject
{
    Q_OBJECT

private slots:
    void greysOutWhatTheToolRefuses();
    void presetsKeepUnitsAndEdges();
    void ownLightsAreRecipes();
    void shadingTakesThePanelsLight();
    void pictures();
};

void LightTest::greysOutWhatTheToolRefuses()
{
    shadedOptionsWidget panel;
    auto kind = panel.findChild<QComboBox *>("m_pCBLight");
    auto azimuth = panel.findChild<QWidget *>("m_pAZimuthFrame");
    auto altitude = panel.findChild<QWidget *>("m_pSunFrame");
    auto reason = panel.findChild<QLabel *>("m_pLightLabel");
    const QSignalSpy changed(&panel, &shadedOptionsWidget::completeChanged);
    kind->setCurrentIndex(1);
    QVERIFY(!azimuth->isEnabled() && altitude->isEnabled());
    QVERIFY(reason->text().contains("plusieurs côtés"));
    QCOMPARE(panel.getCommandArguments(), QStringLiteral("-z 1 -s 1 -alt 45  -multidirectional"));
    QTRY_COMPARE(changed.count(), 1);
    kind->setCurrentIndex(3);
    QVERIFY(azimuth->isEnabled() && !altitude->isEnabled());
    QVERIFY(!panel.findChild<QLabel *>("m_pSunNote")->isHidden());
    QVERIFY(reason->text().contains("nord-ouest"));
    kind->setCurrentIndex(0);
    QVERIFY(azimuth->isEnabled() && altitude->isEnabled());
    QVERIFY(panel.findChild<QLabel *>("m_pSunNote")->isHidden());
    QCOMPARE(panel.getCommandArguments(), QStringLiteral("-z 1 -s 1 -az -45 -alt 45 "));
}

void LightTest::presetsKeepUnitsAndEdges()
{
    shadedOptionsWidget panel;
    panel.setProcessOptions(
        ShadedOptions{.scaleIndex = -1, .scaleText = "7", .compass = 12, .computeEdges = true});
    auto list = panel.findChild<LightList *>();
    QCOMPARE(list->currentRow(), -1); // no light has this direction
    for (int row = 0; row < list->count(); ++row) {
        list->setCurrentRow(row);
        QTest::keyClick(list, Qt::Key_Return);
        const ShadedOptions options = panel.options();
        QVERIFY(isSameLight(options, builtInLights().at(row).options));
        QCOMPARE(options.scaleText, QStringLiteral("7"));
        QVERIFY(options.computeEdges);
        QCOMPARE(list->currentRow(), row);
    }
}

void LightTest::ownLightsAreRecipes()
{
    const QTemporaryDir folder;
    LightRecipes shelf(folder.filePath("lumières"));
    const ShadedOptions light{.exaggeration = 2.5, .compass = 10, .light = "combined"};
    QCOMPARE(shelf.keep("Été / \"soir\" 100%", light), QString());
    QCOMPARE(shelf.keep("aube", {}), QString());
    writeFile(folder.filePath("lumières/autre.json"), "{\"format\": 1, \"process\": \"slope\"}");
    writeFile(folder.filePath("lumières/cassé.json"), "{");
    const QVector<LightPreset> lights = shelf.lights();
    QCOMPARE(lights.size(), 2);
    QCOMPARE(lights.last().name, QStringLiteral("Été / \"soir\" 100%"));
    QCOMPARE(lights.last().options, light);
    QVERIFY(lights.last().isOwn);

    LightList list;
    list.setShelf(&shelf);
    list.setCurrentRow(list.count() - 1);
    Prompt::answerBeforehand({false, true});
    QTest::keyClick(&list, Qt::Key_Delete);
    QCOMPARE(shelf.lights().size(), 2);
    QTest::keyClick(&list, Qt::Key_Delete);
    QCOMPARE(shelf.lights().size(), 1);
    list.setCurrentRow(0);
    QTest::keyClick(&list, Qt::Key_Delete); // the program's own stay, and nothing is asked
    QCOMPARE(Prompt::takeShown().size(), 2);
}

void LightTest::shadingTakesThePanelsLight()
{
    ColorShading shading;
    const QSignalSpy changed(&shading, &ColorShading::changed);
    const auto options = [&] {
        ColorReliefOptions record;
        shading.addTo(record);
        return record;
    };
    const ShadedOptions evening{.compass = 330, .altitude = 10, .computeEdges = true};
    shading.setPanelLight(evening);
    QCOMPARE(changed.count(), 0); // nothing is shaded
    shading.findChild<QCheckBox *>("m_pChBShade")->setChecked(true);
    QVERIFY(options().shaded && isSameLight(options().shade, evening));
    shading.setPanelLight({.altitude = 80});
    QCOMPARE(changed.count(), 2);
    QCOMPARE(options().shade.altitude, 80);

    ColorReliefOptions own{.shaded = true, .shadeStrength = 35, .shade = {.light = "igor"}};
    shading.showOptions(own);
    QVERIFY(shading.findChild<QRadioButton *>("m_pRBOwnLight")->isChecked());
    shading.setPanelLight({.altitude = 70});
    QCOMPARE(options().shade, own.shade);
    QCOMPARE(options().shadeStrength, 35);
    own.shade = {.altitude = 70};
    shading.showOptions(own);
    QVERIFY(!shading.findChild<QRadioButton *>("m_pRBOwnLight")->isChecked());
}

void LightTest::pictures()
{
    const QTemporaryDir folder;
    QVERIFY(writeHill(folder.filePath("dem.tif"), 40));
    const QSize size(20, 10);
    QVector<QImage> pictures;
    for (const LightPreset &light : builtInLights()) {
        const QImage picture = lightPicture(folder.filePath("dem.tif"), light.options, size);
        QCOMPARE(picture.size(), size);
        QVERIFY(!pictures.contains(picture));
        pictures += picture;
    }
    QVERIFY(lightPicture(folder.filePath("dem.tif"), {}, {40, 40}).isNull());
    QVERIFY(lightPicture(folder.filePath("none.tif"), {}, size).isNull());
}

QTEST_MAIN(LightTest)
#include "light_test.moc"
