#include "app/process/tools.h"

#include "tests/support/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class ToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void missingTools();
};

void ToolsTest::missingTools()
{
    const QTemporaryDir folder;
    const QStringList names{"gdal_dem.exe", "gdal_contour.exe", "gdal_translate.exe",
                            "gdal_intervisibility.exe"};
    for (const QString &name : names)
        writeFile(folder.filePath(name), "");
    QVERIFY(findTools(folder.path()).isComplete());
    for (const QString &name : names) {
        QVERIFY(QFile::remove(folder.filePath(name)));
        QVERIFY(QFile::link("/no/such/tool", folder.filePath(name)));
        const ToolPaths tools = findTools(folder.path());
        const bool mayStart = name == names.last(); // only this tool may be missing
        QCOMPARE(tools.isComplete(), mayStart);
        QCOMPARE(startProblems(tools).isEmpty(), mayStart);
        QVERIFY(mayStart || startProblems(tools).contains("/no/such/tool")); // where the link leads
        QVERIFY(QFile::remove(folder.filePath(name)));
        writeFile(folder.filePath(name), "");
    }
    QCOMPARE(findTools(folder.path()).translate, folder.filePath("gdal_translate.exe"));
}

QTEST_APPLESS_MAIN(ToolsTest)
#include "tools_test.moc"
