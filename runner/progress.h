#pragma once

#include <QByteArray>
#include <QString>

// The progress protocol of the tools' standard output, GDAL's usual terminal progress: "0", then a dot for
// every 2.5 % with the tens in between ("0...10...20..."), each pass over the work ending in " - done.".

/// Percentage that a tool's whole output so far stands for: 0.0 to 100.0, or more when the text does not follow
/// the protocol. passes: how many " - done." the tool prints before it ends, at least 1.
///
/// This function defines the protocol. ProgressReader returns the same numbers from pieces of the output.
double parseProgress(const QString &output, int passes);

/// Reads the progress from an output that arrives in pieces, in constant memory and in time linear in its
/// length.
///
/// After any sequence of feed() calls percentage(n) equals parseProgress(all pieces together, n).
class ProgressReader
{
public:
    /// Reads the next bytes of the output. A piece may end anywhere.
    void feed(const QByteArray &bytes);

    double percentage(int passes) const;

private:
    void readByte(char byte);

    int m_markerLength = 0; ///< number of characters of " - done." that the output ends with
    qint64 m_passesDone = 0;
    qint64 m_tens = 0; ///< groups of three full stops in the unfinished line, without the full stops at its end
    qint64 m_dots = 0; ///< full stops at the end of the unfinished line
    bool m_empty = true; ///< nothing was read yet
};
