#include "panels/optiontips.h"

#include "dataset/workfolder.h"
#include "panels/contourOptionsWidget.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>

class OptionTipsTest : public QObject
{
    Q_OBJECT

private slots:
    void tips_data();
    void tips();
    void remarkStandsFirstAndGoes();
};

void OptionTipsTest::tips_data()
{
    QTest::addColumn<QString>("range");
    QTest::addColumn<QString>("standard");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("meaning");
    QTest::addColumn<QString>("tip");
    const auto row = [](const char *name, const char *range, const char *standard, const char *argument,
                        const char *meaning, const char *tip) {
        QTest::newRow(name) << range << standard << argument << meaning << tip;
    };
    row("number", "0 - 90", "45", "-alt", "",
        "Hauteur du soleil.\nDe 0 à 90\nPar défaut : 45\nOption de l'outil : -alt");
    row("below zero", "-9 - 9", "0", "-off", "",
        "Hauteur du soleil.\nDe -9 à 9\nPar défaut : 0\nOption de l'outil : -off");
    row("bounds that nobody meets", "0 - 1e+09", "", "-i", "", "Hauteur du soleil.\nOption de l'outil : -i");
    row("switch", "true | false", "false", "", "", "Hauteur du soleil.\nPar défaut : non");
    row("meaning of its own", "-1 - 3", "0", "-s", "Rapport des unités.",
        "Rapport des unités.\nOption de l'outil : -s");
}

void OptionTipsTest::tips()
{
    QFETCH(QString, range);
    QFETCH(QString, standard);
    QFETCH(QString, argument);
    QFETCH(QString, meaning);
    QTEST(optionTip({"field", range, standard, "hauteur du soleil"}, argument, meaning), "tip");
}

void OptionTipsTest::remarkStandsFirstAndGoes()
{
    contourOptionsWidget panel;
    setOptionTips(panel, panel.processOptions());
    const auto ring = panel.findChild<QLineEdit *>("m_pLERing");
    const auto areas = panel.findChild<QCheckBox *>("m_pChBAreas");
    const QString tip = ring->toolTip();
    QVERIFY2(tip.startsWith("Longueur en dessous de laquelle"), qPrintable(tip));
    areas->click();
    QCOMPARE(ring->toolTip(), "Les surfaces n'ont pas de courbes.\n\n" + tip);
    areas->click();
    QCOMPARE(ring->toolTip(), tip);
}

QTEST_MAIN(OptionTipsTest)
#include "optiontips_test.moc"
