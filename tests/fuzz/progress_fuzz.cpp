// Feeds any bytes to the reader of the tools' progress, whole and cut into pieces: the last line of the input
// holds the lengths of the pieces.

#include "runner/progress.h"
#include "tests/fuzz/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = fuzzBytes(data, size);
    const QString text = QString::fromLatin1(bytes.constData(), bytes.size()); // also behind a NUL
    const QByteArray lengths = bytes.mid(bytes.lastIndexOf('\n') + 1);
    for (const int passes : {1, 3}) {
        ProgressReader pieces;
        int at = 0;
        for (int piece = 0; at < bytes.size(); ++piece) {
            const int length = 1 + (lengths.isEmpty() ? 0 : lengths.at(piece % lengths.size()) & 15);
            pieces.feed(bytes.mid(at, length));
            at += length;
            ProgressReader whole;
            if (size < 300) {
                whole.feed(bytes.left(at));
                require(pieces.percentage(passes) == whole.percentage(passes), "the pieces do not matter");
            }
        }
        const double percent = pieces.percentage(passes);
        require(percent == parseProgress(text, passes), "the reader follows the protocol");
        constexpr double mostPerByte = 100.0 / 8; // " - done." ends a pass with 8 bytes
        require(percent >= 0.0 && percent <= mostPerByte * static_cast<double>(size),
                "no pass comes from nothing");
    }
    return 0;
}
