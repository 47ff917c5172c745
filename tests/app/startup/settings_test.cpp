#include "app/startup/settings.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8()); } // not the user's own settings
    void settings();
    void geometryOnScreens_data();
    void geometryOnScreens();

private:
    QTemporaryDir m_home;
};

void SettingsTest::settings()
{
    QSettings("KARVEX", "Riglios").clear();
    QCOMPARE(readLastGeometry().size, QSize(707, 740));
    QCOMPARE(readLastGeometry().position, QPoint(155, 10));
    QVERIFY(readLastGeometry().showPreview);
    writeLastGeometry({{800, 600}, {-5, 7}, false});
    QCOMPARE(readLastGeometry().size, QSize(800, 600));
    QCOMPARE(readLastGeometry().position, QPoint(-5, 7));
    QVERIFY(!readLastGeometry().showPreview);

    writeRecentFiles({"/a", "/b", "/c"});
    writeRecentFiles({"/é", "/a"});
    QCOMPARE(readRecentFiles(), (QStringList{"/é", "/a"}));
    QCOMPARE(QSettings("KARVEX", "Riglios").value("RecentUsedListFile/File_1").toString(),
             QStringLiteral("/a"));
    QSettings("KARVEX", "Riglios").clear();
}

void SettingsTest::geometryOnScreens_data()
{
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QRect>("shown");

    QTest::newRow("inside") << QRect(10, 10, 300, 200) << QRect(10, 10, 300, 200);
    QTest::newRow("on the second screen") << QRect(1100, 50, 300, 200) << QRect(1100, 50, 300, 200);
    QTest::newRow("on both screens") << QRect(900, 50, 300, 200) << QRect(900, 50, 300, 200);
    QTest::newRow("on a screen that is gone") << QRect(5000, 50, 300, 200) << QRect(690, 50, 300, 200);
    QTest::newRow("above") << QRect(10, -500, 300, 200) << QRect(10, 0, 300, 200);
    QTest::newRow("gone and too large") << QRect(10, -3000, 3000, 2000) << QRect(0, 0, 990, 770);
    QTest::newRow("its frame fits just") << QRect(690, 570, 300, 200) << QRect(690, 570, 300, 200);
    QTest::newRow("its frame is below the screen") << QRect(10, 571, 300, 200) << QRect(10, 570, 300, 200);
    QTest::newRow("too high for the second screen") << QRect(1100, 10, 300, 590) << QRect(1100, 0, 300, 570);
}

void SettingsTest::geometryOnScreens()
{
    QFETCH(QRect, wanted);
    QTEST(visibleGeometry(wanted, QSize(10, 30), {QRect(0, 0, 1000, 800), QRect(1000, 0, 800, 600)}), "shown");
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "settings_test.moc"
