#include "messages/dicoindex.h"
#include "tests/support/dictionaries.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class DicoTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void languages();
    void safeFormats();
    void setUpFaults_data();
    void setUpFaults();
    void kindsAndPrefixes();
    void laterDictionariesGoFirst();
    void corruptRecordsAreBounded();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString home() const { return "LUMAGRAF_HOME=" + m_folder->path(); }
    QString child(const QStringList &arguments) const { return runDicoChild({home()}, arguments); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

constexpr char standard[] =
    "ERREUR = ERREUR\nAVERTISSEMENT = ATTENTION\nUSAGE = SYNTAXE\n"
    "FICHIER (error 12) = fichier %s\nLENT (warning 3) = lent : %s\nAIDE (usage 1) = outil %s\n"
    "NU = simple %s\n";

} // namespace

void DicoTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkdir("MESSAGES"));
}

void DicoTest::languages()
{
    const struct
    {
        const char *names;
        const char *suffix;
        int number;
    } rows[] = {
        {"FRANCAIS,FRENCH,FR", ".fr", 0}, {"ANGLAIS,ENGLISH,EN", ".an", 1}, {"ESPAGNOL,SPANISH,ES", ".es", 2},
        {"PORTUGAIS,PO", ".po", 3},       {"ALLEMAND,DE", ".al", 4},        {"ITALIEN,IT", ".it", 5},
        {"INDONESIEN,IN", ".in", 6},      {"CHINESE,CH", ".ch", 7},         {"RUSSIAN,RU", ".ru", 8},
        {"JAPANESE,JP", ".jp", 9},        {"TURKISH", ".tr", 11},           {"CHINESE_CN,CH_CN", ".ch_cn", 12},
        {"fr,PORTUGUESE,TR,,", ".lc", 10}};
    for (const auto &[names, suffix, number] : rows) {
        for (const QString &name : QString(names).split(',')) {
            const DicoLanguage language = dicoLanguage(name.toStdString());
            QVERIFY2(language.suffix == QLatin1String(suffix) && language.number == number, qPrintable(name));
        }
    }
}

void DicoTest::safeFormats()
{
    for (const char *format : {"%n", "%1$s", "%*d", "%99999d", "%.12345f", "%"})
        QVERIFY2(!isSafeFormat(format), format);
    QVERIFY(isSafeFormat("100 %% of %-10.3s, %lld"));
    QVERIFY(isSafeFormat("%100.20s")); // width and precision count apart
}

void DicoTest::setUpFaults_data()
{
    QTest::addColumn<QStringList>("files"); // empty files in MESSAGES
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("printed");

    const auto row = [](const char *name, const QStringList &files, const char *variable, const char *printed) {
        QTest::newRow(name) << files << QString(variable) << QString(printed);
    };
    row("no home", {}, "no home", "ERROR : LUMAGRAF_HOME undefined !!!\n0");
    row("no default", {}, "", "ERROR : no language file for : DEFAULT\n0");
    row("half a default", {"geodico.lc"}, "", "ERROR : no language file for : DEFAULT\n0");
    row("no language", {}, "GEOLANGUE=ENGLISH", "ERROR : no language file for : ENGLISH and DEFAULT\n0");
    row("fall back to half a pair", {"geodico.lc.idx"}, "GEOLANGUE=ENGLISH", "end\n7");
    row("half a language, half a default", {"geodico.an", "geodico.lc"}, "GEOLANGUE=EN",
        "ERROR : could not stat %1/MESSAGES/geodico.lc.idx\nend\n7");
    row("added one missing", {"geodico.lc", "geodico.lc.idx"}, "MON_DICO=/no/such",
        "ERROR : /no/such not found\n0");
    row("empty element", {"geodico.lc", "geodico.lc.idx"}, "MON_DICO=%1/MESSAGES/geodico.lc;;",
        "ERROR :  not found\n0");
    row("separator at the end", {"geodico.lc", "geodico.lc.idx"}, "MON_DICO=%1/MESSAGES/geodico.lc;", "end\n7");
}

void DicoTest::setUpFaults()
{
    QFETCH(QStringList, files);
    QFETCH(QString, variable);
    QFETCH(QString, printed);
    for (const QString &name : files)
        writeFile(path("MESSAGES/" + name), {});
    QStringList variables;
    if (variable != QLatin1String("no home"))
        variables += home();
    if (variable.contains('='))
        variables += variable.replace("%1", m_folder->path());
    QCOMPARE(runDicoChild(variables, {"message", "UNKNOWN"}), printed.replace("%1", m_folder->path()));
    const char *available = printed.endsWith("end\n7") ? "1\nend\n7" : "0\nend\n7";
    QCOMPARE(runDicoChild(variables, {"available"}), QString(available));
}

void DicoTest::kindsAndPrefixes()
{
    writeDictionary(path("MESSAGES/geodico.lc"), standard);
    QCOMPARE(child({"message", "FICHIER", "a.img"}), QStringLiteral("ERREUR 12 : fichier a.img\nend\n7"));
    QCOMPARE(child({"message", "LENT", "x"}), QStringLiteral("ATTENTION 3 : lent : x\nend\n7"));
    QCOMPARE(child({"message", "AIDE", "x"}), QStringLiteral("SYNTAXE\noutil x\n\nend\n7"));
    QCOMPARE(child({"message", "NU", "%d%n"}), QStringLiteral("simple %d%n\nend\n7"));
    QCOMPARE(child({"message", "nu", "x"}), QStringLiteral("end\n7"));
    QVERIFY(child({"message", "NU", QString(20000, 'x')}).size() < 6000);
    QCOMPARE(child({"exit", "FICHIER", "a"}), QStringLiteral("ERREUR 12 : fichier a\n255"));
    QCOMPARE(child({"exit", "LENT", "a"}), QStringLiteral("ATTENTION 3 : lent : a\nend\n7"));
    QCOMPARE(child({"callback", "NU", "a"}), QStringLiteral("simple a\n<simple a\nend\n7"));
    QCOMPARE(child({"reset", "FICHIER", "a"}), QStringLiteral("ERREUR 12 : fichier a\nend\n7"));
    for (const char *text : {"ERREUR 1", "erreurs"})
        QCOMPARE(child({"is_error", text}), QStringLiteral("1\nend\n7"));
    QCOMPARE(child({"is_error", "ERRE"}), QStringLiteral("0\nend\n7"));

    // Of several prefixes of a kind the last one counts: here the first four bytes of the texts.
    const auto record = dicoRecordBytes({"ERREUR", 0, 4, 0, 0});
    const QString index = path("MESSAGES/geodico.lc.idx");
    writeFile(index, bytesOf(index) + QByteArray(record.data(), static_cast<int>(record.size())));
    QCOMPARE(child({"message", "FICHIER", "a.img"}), QStringLiteral("ERRE 12 : fichier a.img\nend\n7"));
}

void DicoTest::laterDictionariesGoFirst()
{
    writeDictionary(path("MESSAGES/geodico.lc"), standard);
    writeDictionary(path("one"), "NU = one %s\nERREUR = other");
    writeDictionary(path("two"), "NU = two %s");
    const QString list = QStringLiteral("MON_DICO=%1/one;%1/two").arg(m_folder->path());
    QCOMPARE(runDicoChild({home(), list}, {"message", "NU", "x"}), QStringLiteral("two x\nend\n7"));
    QCOMPARE(runDicoChild({home(), list}, {"message", "FICHIER", "x"}),
             QStringLiteral("ERREUR 12 : fichier x\nend\n7"));
}

void DicoTest::corruptRecordsAreBounded()
{
    writeDictionary(path("MESSAGES/geodico.lc"), standard);
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
    writeFile(path("MESSAGES/geodico.lc"), "abcdef");
    writeFile(path("MESSAGES/geodico.lc.idx"), index);
    QCOMPARE(child({"message", "LONG"}), QStringLiteral("cdef\nend\n7"));
    QCOMPARE(child({"message", "NEGATIVE"}), QStringLiteral("\nend\n7"));
    QCOMPARE(child({"message", "BEYOND"}), QStringLiteral("\nend\n7"));
    QCOMPARE(child({"message", QString(23, 'K')}), QStringLiteral("\nend\n7"));
    QCOMPARE(parseDicoIndex(index.toStdString()).size(), std::size_t(4));
}

QTEST_GUILESS_MAIN(DicoTest)
#include "dico_test.moc"
