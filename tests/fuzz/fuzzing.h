#pragma once

#include <QByteArray>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What the fuzzers share. Each one is built by the preset "fuzz" as a program of its own, and into the test of
// the unit that it tries, which calls it with mutations of its corpus.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Ends the program unless `holds`. `what`: what was expected.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "this does not hold: %s\n", what);
    std::abort();
}

inline QByteArray fuzzBytes(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<int>(size)};
}

/// The folder of the fuzzer's files, removed at the end of the program.
inline const QTemporaryDir &fuzzFolder()
{
    static const QTemporaryDir folder;
    return folder;
}

/// Writes a file anew into fuzzFolder() and returns its path.
inline QString fuzzFile(const QString &name, const QByteArray &bytes)
{
    QFile file(fuzzFolder().filePath(name));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "the file can be written");
    return file.fileName();
}

/// While it lives, the program's own log categories print nothing.
class QuietLog
{
public:
    QuietLog() { QLoggingCategory::setFilterRules(QStringLiteral("quvo.*=false")); }
    ~QuietLog() { QLoggingCategory::setFilterRules({}); }
    QuietLog(const QuietLog &) = delete;
    QuietLog &operator=(const QuietLog &) = delete;
};
