#pragma once

#include <QByteArray>
#include <QString>

// The progress protocol of the tools' standard output, GDAL's usual terminal progress: "0", then a dot for
// every 2.5 % with the tens in between ("0...10...20..."), each pass over the work ending in " - done.".

/// Percentage (0.0 to 100.0, more where the text is no such progress) that a tool's whole output so far stands
/// for. passes: how many " - done." the tool prints before it ends, at least 1.
///
/// This is the protocol's definition. ProgressReader gives the same numbers from pieces of the output.
double parseProgress(const QString &output, int passes);

/// Follows the progress of an output that arrives in pieces, in constant memory and in time linear in its
/// length.
///
/// After any sequence of feed() calls percentage(n) equals parseProgress(all pieces together, n).
class ProgressReader
{
public:
    /// Takes the next bytes of the output; a piece may end anywhere.
    void feed(const QByteArray &bytes);

    double percentage(int passes) const;

private:
    void take(char byte);

    int m_markerLength =
        0; ///< how many characters of " - done." the output ends with; all of them: a pass just ended
    qint64 m_passesDone = 0;
    qint64 m_tens = 0; ///< "..." groups of the unfinished line, but for the full stops at its end
    qint64 m_dots = 0; ///< full stops at the end of the unfinished line
    bool m_empty = true;
};
