#include "messages/dictionary/dictionarysource.h"
#include "messages/rasterheader.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class DicoTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void languages_data();
    void languages();
    void setUpFaults_data();
    void setUpFaults();
    void kindsAndPrefixes();
    void laterDictionariesGoFirst();
    void corruptRecordsAreBounded();
    void sources();
    void headers();
    void openTable();

private:
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    void writeDictionary(const QString &name, const char *source) const
    {
        const CompiledDictionary compiled = compileDictionary(parseDictionary(source));
        write(name, QByteArray::fromStdString(compiled.data));
        write(name + ".idx", QByteArray::fromStdString(compiled.index));
    }
    QString child(const QStringList &arguments, const QStringList &environment = {}) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

constexpr char standard[] =
    "ERREUR = ERREUR\nAVERTISSEMENT = ATTENTION\nUSAGE = SYNTAXE\n"
    "FICHIER (error 12) = fichier %s\nLENT (warning 3) = lent : %s\nAIDE (usage 1) = outil %s\n"
    "NU = simple %s\n";

} // namespace

QString DicoTest::child(const QStringList &arguments, const QStringList &environment) const
{
    QProcess process;
    process.setEnvironment(QStringList{"LUMAGRAF_HOME=" + m_folder->path()} + environment);
    process.start(QStringLiteral(QUVO_DICO_CHILD), arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()) + QString::number(process.exitCode());
}

void DicoTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QFile(m_folder->path()).setPermissions(QFile::Permissions(0x7755));
    QVERIFY(QDir(m_folder->path()).mkdir("MESSAGES"));
}

void DicoTest::languages_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<int>("number");

    QTest::newRow("long") << "FRENCH"
                          << ".fr" << 0;
    QTest::newRow("small letters are none") << "fr"
                                            << ".lc" << 10;
    QTest::newRow("empty") << ""
                           << ".lc" << 10;
    QTest::newRow("no long Portuguese") << "PORTUGUESE"
                                        << ".lc" << 10;
    QTest::newRow("Portuguese") << "PORTUGAIS"
                                << ".po" << 3;
    QTest::newRow("no short Turkish") << "TR"
                                      << ".lc" << 10;
    QTest::newRow("Turkish") << "TURKISH"
                             << ".tr" << 11;
    QTest::newRow("Chinese, the other") << "CH_CN"
                                        << ".ch_cn" << 12;
}

void DicoTest::languages()
{
    QFETCH(QString, name);
    const DicoLanguage language = dicoLanguage(name.toStdString());
    QTEST(QString::fromLatin1(language.suffix), "suffix");
    QTEST(language.number, "number");
}

void DicoTest::setUpFaults_data()
{
    QTest::addColumn<QStringList>("files"); // in MESSAGES; each an empty one
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<QString>("printed");

    QTest::newRow("no home") << QStringList{} << QStringList{"LUMAGRAF_HOME"}
                             << "ERROR : LUMAGRAF_HOME undefined !!!\n0";
    QTest::newRow("no default") << QStringList{} << QStringList{}
                                << "ERROR : no language file for : DEFAULT\n0";
    QTest::newRow("half a default") << QStringList{"geodico.lc"} << QStringList{}
                                    << "ERROR : no language file for : DEFAULT\n0";
    QTest::newRow("no language") << QStringList{} << QStringList{"GEOLANGUE=ENGLISH"}
                                 << "ERROR : no language file for : ENGLISH and DEFAULT\n0";
    QTest::newRow("fall back to half a pair")
        << QStringList{"geodico.lc.idx"} << QStringList{"GEOLANGUE=ENGLISH"} << "end\n7";
    QTest::newRow("half a language, half a default")
        << QStringList{"geodico.an", "geodico.lc"} << QStringList{"GEOLANGUE=EN"}
        << "ERROR : could not stat %1/MESSAGES/geodico.lc.idx\nend\n7";
    QTest::newRow("added one missing") << QStringList{"geodico.lc", "geodico.lc.idx"}
                                       << QStringList{"MON_DICO=/no/such"} << "ERROR : /no/such not found\n0";
    QTest::newRow("empty element") << QStringList{"geodico.lc", "geodico.lc.idx"}
                                   << QStringList{"MON_DICO=%1/MESSAGES/geodico.lc;;"}
                                   << "ERROR :  not found\n0";
    QTest::newRow("separator at the end") << QStringList{"geodico.lc", "geodico.lc.idx"}
                                          << QStringList{"MON_DICO=%1/MESSAGES/geodico.lc;"} << "end\n7";
}

void DicoTest::setUpFaults()
{
    QFETCH(QStringList, files);
    QFETCH(QStringList, environment);
    QFETCH(QString, printed);
    for (const QString &name : files)
        write("MESSAGES/" + name, {});
    QProcess process;
    QStringList variables = environment.replaceInStrings("%1", m_folder->path());
    if (!variables.removeAll("LUMAGRAF_HOME"))
        variables += "LUMAGRAF_HOME=" + m_folder->path();
    process.setEnvironment(variables);
    process.start(QStringLiteral(QUVO_DICO_CHILD), {"message", "UNKNOWN"});
    QVERIFY(process.waitForFinished());
    QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()) + QString::number(process.exitCode()),
             printed.replace("%1", m_folder->path()));
}

void DicoTest::kindsAndPrefixes()
{
    writeDictionary("MESSAGES/geodico.lc", standard);
    QCOMPARE(child({"message", "FICHIER", "a.img"}), QStringLiteral("ERREUR 12 : fichier a.img\nend\n7"));
    QCOMPARE(child({"message", "LENT", "x"}), QStringLiteral("ATTENTION 3 : lent : x\nend\n7"));
    QCOMPARE(child({"message", "AIDE", "x"}), QStringLiteral("SYNTAXE\noutil x\n\nend\n7"));
    QCOMPARE(child({"message", "NU", "%d%n"}), QStringLiteral("simple %d%n\nend\n7"));
    QCOMPARE(child({"message", "nu", "x"}), QStringLiteral("end\n7"));
    QVERIFY(child({"message", "NU", QString(20000, 'x')}).size() < 6000);
    QCOMPARE(child({"exit", "FICHIER", "a"}), QStringLiteral("ERREUR 12 : fichier a\n255"));
    QCOMPARE(child({"exit", "LENT", "a"}), QStringLiteral("ATTENTION 3 : lent : a\nend\n7"));
    QCOMPARE(child({"callback", "NU", "a"}), QStringLiteral("simple a\n<simple a\nend\n7"));
    for (const char *text : {"ERREUR 1", "erreurs"})
        QCOMPARE(child({"is_error", text}), QStringLiteral("1\nend\n7"));
    QCOMPARE(child({"is_error", "ERRE"}), QStringLiteral("0\nend\n7"));
}

void DicoTest::laterDictionariesGoFirst()
{
    writeDictionary("MESSAGES/geodico.lc", standard);
    writeDictionary("one", "NU = one %s\nERREUR = other");
    writeDictionary("two", "NU = two %s");
    const QString list = QStringLiteral("MON_DICO=%1/one;%1/two").arg(m_folder->path());
    QCOMPARE(child({"message", "NU", "x"}, {list}), QStringLiteral("two x\nend\n7"));
    QCOMPARE(child({"message", "FICHIER", "x"}, {list}), QStringLiteral("ERREUR 12 : fichier x\nend\n7"));
}

void DicoTest::corruptRecordsAreBounded()
{
    writeDictionary("MESSAGES/geodico.lc", standard);
    QByteArray index;
    const auto add = [&](const char *key, std::int32_t offset, std::int32_t length) {
        const auto record = dicoRecordBytes({key, offset, length, 0, 0});
        index.append(record.data(), static_cast<int>(record.size()));
    };
    add("LONG", 2, 2147483647);
    add("NEGATIVE", -1, -5);
    add("BEYOND", 1000, 5);
    index.append(QByteArray(24, 'K')).append(QByteArray(16, '\0')); // a key without its NUL
    index.append("half a record");
    write("MESSAGES/geodico.lc", "abcdef");
    write("MESSAGES/geodico.lc.idx", index);
    QCOMPARE(child({"message", "LONG"}), QStringLiteral("cdef\nend\n7"));
    QCOMPARE(child({"message", "NEGATIVE"}), QStringLiteral("\nend\n7"));
    QCOMPARE(child({"message", "BEYOND"}), QStringLiteral("\nend\n7"));
    QCOMPARE(child({"message", QString(23, 'K')}), QStringLiteral("\nend\n7"));
    QCOMPARE(parseDicoIndex(index.toStdString()).size(), std::size_t(4));
}

void DicoTest::sources()
{
    const DictionarySource good =
        parseDictionary("# comment\r\n\n  MESS_ A B = a = b\\nc\\\\ \nW (warning 7) = %s\nEMPTY =");
    QCOMPARE(good.faults.size(), std::size_t(0));
    QCOMPARE(good.entries.at(0).key, std::string("MESS_ A B"));
    QCOMPARE(good.entries.at(0).text, std::string("a = b\nc\\"));
    QCOMPARE(good.entries.at(1).kind, 2);
    QCOMPARE(good.entries.at(1).number, 7);

    for (const char *bad : {"no equals", " = text", "A = x\nA = y", "ABCDEFGHIJKLMNOPQRSTUVWX = 24 bytes",
                            "A = %n", "A (warning) = x", "A (notice 3) = x", "A (error 99999999999) = x"})
        QVERIFY2(!parseDictionary(bad).faults.empty(), bad);
    const auto differ = [](const char *one, const char *other) {
        return !compareDictionaries(parseDictionary(one), parseDictionary(other)).empty();
    };
    QVERIFY(differ("A = %s", "A = %d") && differ("A = %1", "A = x") && differ("A = %1 %2", "A = %1 %3"));
    QVERIFY(!parseDictionary("A = %'n").faults.empty());
    for (const char *format : {"%n", "%1$s", "%*d", "%99999d", "%.12345f", "%"})
        QVERIFY2(!isSafeFormat(format), format);
    QVERIFY(isSafeFormat("100 %% of %-10.3s, %lld"));
    QVERIFY(!differ("A = %1 of %2 %", "A = %2 - %1") && !differ("A = 5 %% %s", "A = %s"));
}

void DicoTest::headers()
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

void DicoTest::openTable()
{
    writeDictionary("MESSAGES/geodico.lc",
                    "ERREUR = E\nAVERTISSEMENT = ATTENTION\nUSAGE = U\n"
                    "AVER_OUV_RDONLY (warning 1) = %s en lecture seule");
    RasterHeader header;
    header.firstDimension = 77;
    header.comment = "kept";
    const QByteArray good(rasterHeaderBytes(header).data(), rasterHeaderSize);
    QByteArray older = good;
    older.replace(26, 3, "im*");
    older[38] = 'x'; // no field
    QByteArray foreign = good;
    foreign.replace(26, 3, "xyz");
    write("good", good + "cells");
    write("older", older + "cells");
    write("foreign", foreign);
    write("short", good.left(255));
    const auto opened = [&](const char *name) {
        return openRaster(m_folder->filePath(name).toUtf8().constData());
    };
    QCOMPARE(openRaster(nullptr), -1);
    QCOMPARE(openRaster(""), -1);
    QCOMPARE(opened("missing"), -1);
    QCOMPARE(mkfifo(m_folder->filePath("pipe").toUtf8().constData(), 0600), 0);
    QCOMPARE(opened("pipe"), -1); // and does not wait for it
    QCOMPARE(opened("short"), -2);
    QCOMPARE(opened("foreign"), -3);
    for (const char *name : {"good", "older"}) {
        const int descriptor = opened(name);
        QVERIFY(descriptor >= 0);
        close(descriptor);
    }
    QFile converted(m_folder->filePath("older"));
    QVERIFY(converted.open(QIODevice::ReadOnly));
    const QByteArray bytes = converted.readAll();
    const RasterHeader read = parseRasterHeader(bytes.toStdString());
    QCOMPARE(read.magic, std::string("im2"));
    QCOMPARE(read.typeName, std::string("INCONNU"));
    QCOMPARE(read.firstDimension, 77u);
    QCOMPARE(read.comment, std::string("kept"));
    QVERIFY(bytes.endsWith("cells") && bytes.size() == 261 && bytes.at(38) == 'x');

    for (const char *name : {"good", "older"}) {
        write(name, name[0] == 'g' ? good : older);
        const QString path = m_folder->filePath(name);
        QFile(path).setPermissions(QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        QCOMPARE(child({"open", path}),
                 QStringLiteral("ATTENTION 1 : %1 en lecture seule\nopened\nend\n7").arg(path));
    }
}

QTEST_GUILESS_MAIN(DicoTest)
#include "dico_test.moc"
