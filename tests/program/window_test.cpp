#include "tests/support/files.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

/// The program QuvoDemToolBox as a desktop starts and ends it, without a display.
class WindowTest : public QObject
{
    Q_OBJECT

private slots:
    void startsAndEnds_data();
    void startsAndEnds();
};

namespace
{

bool handlesSigterm(qint64 process)
{
    static const QRegularExpression caught("SigCgt:\\s*([0-9a-f]+)");
    const QString status = QString::fromLatin1(bytesOf(QStringLiteral("/proc/%1/status").arg(process)));
    return caught.match(status).captured(1).toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1;
}

} // namespace

void WindowTest::startsAndEnds_data()
{
    const QString dem = QStringLiteral(QUVO_TREE "/samples/sample_dem.tif");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("recent"); // the first recent DEM
    QTest::newRow("plain") << QStringList{} << QString();
    QTest::newRow("a file of a file manager") << QStringList{dem} << dem;
    QTest::newRow("a DEM") << QStringList{"-keep_startingdir", "-startingdtm", dem} << dem;
}

void WindowTest::startsAndEnds()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, recent);
    const QTemporaryDir home;
    QVERIFY(QDir(home.path()).mkdir("tmp"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", home.path());
    environment.insert("TMPDIR", home.filePath("tmp"));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(QUVO_TREE "/QuvoDemToolBox"), arguments);
    const auto settings = [&](const QString &key) {
        return QSettings(home.filePath("KARVEX/Riglios.conf"), QSettings::IniFormat).value(key).toString();
    };
    QVERIFY(program.waitForStarted()); // until then the process has the handlers of this test
    QTRY_VERIFY(handlesSigterm(program.processId()));
    QTRY_COMPARE(settings("RecentUsedListFile/File_0"), recent);
    QVERIFY(::kill(static_cast<pid_t>(program.processId()), SIGTERM) == 0);
    QVERIFY(program.waitForFinished(20000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    // Qt's platform without a display says this of windows in general.
    const QByteArray expected = "This plugin does not support propagateSizeHints()\n";
    QCOMPARE(program.readAllStandardError().replace(expected, ""), QByteArray());
    QVERIFY(QDir(home.filePath("tmp")).isEmpty());
    QVERIFY(!settings("LastGeometry/showPreview").isEmpty()); // closed like by its button
}

QTEST_GUILESS_MAIN(WindowTest)
#include "window_test.moc"
