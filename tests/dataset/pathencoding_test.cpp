#include "dataset/pathencoding.h"

#include "tests/support/files.h"

#include <QTemporaryDir>
#include <QTest>

class PathEncodingTest : public QObject
{
    Q_OBJECT

private slots:
    void dataSetNames();
};

void PathEncodingTest::dataSetNames()
{
    const QTemporaryDir folder;
    const QString local = writeFile(folder.filePath("a:b.tif"), {});
    QCOMPARE(dataSetName(local, QString()), local);
    QCOMPARE(dataSetName(QStringLiteral("../dem.tif"), QStringLiteral("/some/folder")),
             QStringLiteral("/some/dem.tif"));
    for (const QString &name : {QStringLiteral("/vsizip/a.zip/b.tif"), QStringLiteral("NETCDF:\"a b.nc\":z")})
        QCOMPARE(dataSetName(name, QStringLiteral("/some")), name);
}

QTEST_APPLESS_MAIN(PathEncodingTest)
#include "pathencoding_test.moc"
