// Feeds any bytes to both readers of message dictionaries. The first byte of the input is the number of
// records, then come the records of the index and the texts.

#include "messages/QuvoLanguageManager.h"
#include "messages/dico.h"
#include "messages/dicoindex.h"
#include "tests/fuzz/fuzzing.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>

#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>

namespace
{

std::string message; // the last one
bool received = false;

void onMessage(const char *text)
{
    message = text;
    received = true;
}

/// While it lives, standard output leads nowhere.
class NoOutput
{
public:
    NoOutput()
        : m_output(dup(STDOUT_FILENO))
    {
        static const int nowhere = open("/dev/null", O_WRONLY);
        std::fflush(stdout);
        dup2(nowhere, STDOUT_FILENO);
    }
    ~NoOutput()
    {
        std::fflush(stdout);
        dup2(m_output, STDOUT_FILENO);
        close(m_output);
    }
    NoOutput(const NoOutput &) = delete;
    NoOutput &operator=(const NoOutput &) = delete;

private:
    int m_output;
};

/// The part of the texts that a record names, up to a NUL; empty where it begins outside of them.
std::string textOf(const DicoRecord &record, const std::string &texts)
{
    if (record.offset < 0 || record.length <= 0 || static_cast<std::size_t>(record.offset) >= texts.size())
        return {};
    const auto offset = static_cast<std::size_t>(record.offset);
    const std::string text = texts.substr(offset, static_cast<std::size_t>(record.length));
    return text.substr(0, text.find('\0'));
}

/// Looks up each record that is the first with its key and whose text has no places for values.
void checkMessages(const std::vector<DicoRecord> &records, const std::string &texts)
{
    dico_init();
    dico_set_callback(onMessage);
    QStringList seen;
    for (const DicoRecord &record : records) {
        const QString key = QString::fromLatin1(record.key.c_str());
        const std::string text = textOf(record, texts);
        if (seen.contains(key))
            continue;
        seen += key;
        received = false;
        dico_message(record.key.c_str(), "x");
        require(received, "each key of the index has a message");
        if (text.find('%') == std::string::npos)
            require(message.find(text) != std::string::npos, "the message is the text that the record names");
        if (record.kind != DicoError && record.kind != DicoWarning && record.kind != DicoUsage)
            require(message.size() <= text.size() + 5000, "a message has a bound");
    }
}

/// Looks up each key. The first record of a key that lies inside of the texts counts.
void checkLabels(const std::vector<DicoRecord> &records, const std::string &texts)
{
    QuvoLanguageManager *manager = QuvoLanguageManager::getInstance();
    manager->defaultSetup(fuzzFolder().filePath(QStringLiteral("MESSAGES")), QStringLiteral("FR"), {});
    QHash<QByteArray, QString> expected;
    for (const DicoRecord &record : records) {
        const QByteArray key = QByteArray::fromStdString(record.key);
        const bool fits = record.offset >= 0 && record.length >= 0
            && static_cast<std::size_t>(record.offset) + static_cast<std::size_t>(record.length)
                <= texts.size();
        if (fits && !expected.contains(key))
            expected.insert(key, QString::fromStdString(textOf(record, texts)));
    }
    for (const DicoRecord &record : records) {
        const QString text = manager->text(record.key.c_str());
        require(text.isNull() || !text.trimmed().isEmpty(), "a label is never empty");
        require(text.isNull() || text == expected.value(QByteArray::fromStdString(record.key)),
                "a label is the text that its record names");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int count = 0;
    static const std::unique_ptr<QCoreApplication> application(
        QCoreApplication::instance() ? nullptr : new QCoreApplication(count, nullptr));
    if (size == 0)
        return 0;
    const QuietLog quiet;
    const NoOutput silent;
    const QByteArray bytes = fuzzBytes(data + 1, size - 1);
    const QByteArray index = bytes.left(static_cast<int>(dicoRecordSize) * (data[0] % 16));
    const QByteArray texts = bytes.mid(index.size());
    QDir(fuzzFolder().path()).mkdir(QStringLiteral("MESSAGES"));
    fuzzFile(QStringLiteral("MESSAGES/geodico.lc"), texts);
    fuzzFile(QStringLiteral("MESSAGES/geodico.lc.idx"), index);
    qputenv("LUMAGRAF_HOME", QFile::encodeName(fuzzFolder().path()));
    const std::vector<DicoRecord> records = parseDicoIndex(index.toStdString());
    checkMessages(records, texts.toStdString());
    checkLabels(records, texts.toStdString());
    return 0;
}
