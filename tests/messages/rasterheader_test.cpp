#include "messages/rasterheader.h"

#include "tests/fuzz/mutations.h"
#include "tests/support/dictionaries.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class RasterHeaderTest : public QObject
{
    Q_OBJECT

private slots:
    void headers();
    void opening();
    void mutations();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

void RasterHeaderTest::headers()
{
    for (const char *magic : {"im2", "mi2"}) {
        RasterHeader header;
        header.firstDimension = 0x01020304;
        header.word24 = -2;
        header.magic = magic;
        header.marker = "m*";
        header.reals40[3] = 2.5;
        header.comment = std::string(128, 'c');
        const RasterHeaderBytes bytes = rasterHeaderBytes(header);
        QCOMPARE(bytes[0], magic[0] == 'i' ? '\1' : '\4'); // on a little-endian host
        const RasterHeader read = parseRasterHeader({bytes.data(), bytes.size()});
        QCOMPARE(read.firstDimension, 0x01020304u);
        QCOMPARE(read.word24, short(-2));
        QCOMPARE(read.reals40[3], 2.5);
        QCOMPARE(read.comment, header.comment);
        QCOMPARE(read.marker, std::string("m*"));
    }
    const RasterHeaderBytes odd = rasterHeaderBytes({});
    QCOMPARE(std::string(odd.data() + 26, 5), std::string("mi2m#"));
}

void RasterHeaderTest::opening()
{
    // The child opens the files as a user without rights, who must be able to enter the folder.
    QVERIFY(QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755)));
    QVERIFY(QDir(m_folder.path()).mkdir("MESSAGES"));
    writeDictionary(path("MESSAGES/geodico.lc"),
                    "ERREUR = E\nAVERTISSEMENT = ATTENTION\nUSAGE = U\n"
                    "AVER_OUV_RDONLY (warning 1) = %s en lecture seule");
    RasterHeader header;
    header.firstDimension = 77;
    header.comment = "kept";
    const QByteArray good(rasterHeaderBytes(header).data(), rasterHeaderSize);
    QByteArray older = good;
    older.replace(26, 3, "im*");
    older[38] = 'x'; // belongs to no field
    QByteArray foreign = good;
    foreign.replace(26, 3, "xyz");
    writeFile(path("good"), good + "cells");
    writeFile(path("older"), older + "cells");
    writeFile(path("marked"), QByteArray(older).replace(29, 2, "m*"));
    writeFile(path("unmarked"), QByteArray(older).replace(29, 2, "zz"));
    writeFile(path("foreign"), foreign);
    writeFile(path("short"), good.left(255));
    const auto opened = [&](const char *name) { return openRaster(path(name).toUtf8().constData()); };
    QCOMPARE(openRaster(nullptr), -1);
    QCOMPARE(openRaster(""), -1);
    QCOMPARE(opened("missing"), -1);
    QCOMPARE(mkfifo(path("pipe").toUtf8().constData(), 0600), 0);
    QCOMPARE(opened("pipe"), -1); // without waiting for a writer
    QCOMPARE(opened("short"), -2);
    QCOMPARE(opened("foreign"), -3);
    for (const char *name : {"good", "older", "marked", "unmarked"}) {
        const int descriptor = opened(name);
        QVERIFY(descriptor >= 0);
        close(descriptor);
    }
    const QByteArray bytes = bytesOf(path("older"));
    const RasterHeader read = parseRasterHeader(bytes.toStdString());
    QCOMPARE(read.magic, std::string("im2"));
    QCOMPARE(read.typeName, std::string("INCONNU"));
    QCOMPARE(read.firstDimension, 77u);
    QCOMPARE(read.comment, std::string("kept"));
    QCOMPARE(bytesOf(path("marked")).mid(26, 5), QByteArray("im2m*"));
    QCOMPARE(bytesOf(path("unmarked")).mid(26, 5), QByteArray("im2m#"));
    QVERIFY(bytes.endsWith("cells") && bytes.size() == 261 && bytes.at(38) == 'x');

    for (const char *name : {"good", "older"}) {
        const QString file = writeFile(path(name), name[0] == 'g' ? good : older);
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        QCOMPARE(runDicoChild({"LUMAGRAF_HOME=" + m_folder.path()}, {"open", file}),
                 QStringLiteral("ATTENTION 1 : %1 en lecture seule\nopened\nend\n7").arg(file));
    }
}

void RasterHeaderTest::mutations()
{
    fuzzMutations(fuzzCorpus("rasterheader"), 1500);
}

QTEST_GUILESS_MAIN(RasterHeaderTest)
#include "rasterheader_test.moc"
