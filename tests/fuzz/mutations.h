#pragma once

#include <QByteArray>
#include <QRandomGenerator>
#include <QVector>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Calls the fuzzer that is built into the test with `rounds` mutations of the seeds, the same ones in each
/// run.
inline void fuzzMutations(const QVector<QByteArray> &seeds, int rounds)
{
    QRandomGenerator random(7);
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
