#include "viewshed/options.h"

#include "tests/fuzz/mutations.h"
#include "viewshed/problem.h"

#include <QTest>

using namespace viewshed;

/// The arguments of the viewshed tool.
class OptionsTest : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data();
    void numbers();
    void anyBytes();
};

void OptionsTest::numbers_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("problem"); ///< a part of it; empty: the value is valid
    const auto row = [](const char *option, const char *value, const char *problem = "") {
        QTest::addRow("%s %s", option, value) << option << value << problem;
    };
    for (const char *height : {"-1e9", "-0", "1e-320", "1e+06"})
        row("-SH", height);
    for (const char *height : {"1e308", "1e400", "-1e400", "inf", "-inf", "1000000001"})
        row("-SH", height, "-SH takes a number from -1000000000 to 1000000000, not");
    for (const char *height : {"nan", "", "1x", "1,5", " 1", "0x10"})
        row("-SH", height, "-SH takes a number, not");
    row("-cc", "-100");
    for (const char *factor : {"101", "-1e300", "inf"})
        row("-cc", factor, "-cc takes a number from -100 to 100, not");
    row("-iBand", "2147483647");
    for (const char *band : {"0", "-1", "2147483648", "99999999999999999999"})
        row("-iBand", band, "-iBand takes a number from 1 to 2147483647, not");
    row("-iBand", "1.5", "-iBand takes a number, not");
    for (const char *color : {"256", "-1", "4294967296"})
        row("-COZ", color, "-COZ takes a number from 0 to 255, not");
}

void OptionsTest::numbers()
{
    QFETCH(QString, option);
    QFETCH(QString, value);
    QFETCH(QString, problem);
    QString found;
    try {
        parsedOptions(
            {"-SrcFile", "a", "-DstFile", "b", "-point_file", "c", option.toStdString(), value.toStdString()});
    } catch (const Problem &thrown) {
        found = thrown.what();
    }
    QVERIFY2(problem.isEmpty() ? found.isEmpty() : found.contains(problem), qPrintable(found));
}

void OptionsTest::anyBytes()
{
    fuzzMutations({"-SrcFile\na\n-DstFile\nb\n-point_file\nc\n-iBand\n2\n-SH\n1e8\n-cc\n-3.5",
                   "-CNOZ\n1\n2\n3\n-DstFile\nb\n-co\nTFW=YES\n-DstOp\nAND\n-SrcFile\na\n-point_file\nc"},
                  20000);
}

QTEST_APPLESS_MAIN(OptionsTest)
#include "options_test.moc"
