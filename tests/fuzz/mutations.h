#pragma once

#include "tests/support/files.h"

#include <QByteArray>
#include <QDir>
#include <QRandomGenerator>
#include <QVector>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// The files of tests/fuzz/corpus/<name>, in the order of their names.
inline QVector<QByteArray> fuzzCorpus(const QString &name)
{
    const QDir folder(QStringLiteral(QUVO_SOURCE "/tests/fuzz/corpus/") + name);
    QVector<QByteArray> seeds;
    for (const QString &file : folder.entryList(QDir::Files, QDir::Name))
        seeds += bytesOf(folder.filePath(file));
    return seeds;
}

/// Calls the fuzzer that is built into the test with `rounds` mutations of the seeds, the same ones in each
/// run.
inline void fuzzMutations(const QVector<QByteArray> &seeds, int rounds)
{
    QRandomGenerator random(7);
    for (const QByteArray &seed : seeds)
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(seed.constData()),
                               static_cast<std::size_t>(seed.size()));
    for (int round = 0; round < rounds; ++round) {
        QByteArray text = seeds.at(round % seeds.size());
        for (int change = random.bounded(1, 6); change > 0; --change) {
            const int at = random.bounded(static_cast<int>(text.size()));
            switch (random.bounded(3)) {
            case 0:
                text[at] = static_cast<char>(random.bounded(256));
                break;
            case 1:
                text.remove(at, random.bounded(1, 10));
                break;
            default:
                text.insert(at, text.mid(random.bounded(static_cast<int>(text.size())), 7));
            }
            if (text.isEmpty())
                text = ";";
        }
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(text.constData()),
                               static_cast<std::size_t>(text.size()));
    }
}
