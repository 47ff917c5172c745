#include "runner/progress.h"

#include <QStringList>

namespace
{

constexpr char passMarker[] = " - done.";
constexpr int passMarkerLength = sizeof passMarker - 1;
constexpr double percentPerDot = 2.5;
constexpr double percentPerGroup = 10.0;

double endOfPass(qint64 passesDone, int passes)
{
    return (100.0 / passes) * static_cast<double>(passesDone);
}

double insidePass(qint64 passesDone, qint64 groups, qint64 dots, int passes)
{
    const double line =
        static_cast<double>(dots) * percentPerDot + static_cast<double>(groups) * percentPerGroup;
    return (1.0 / passes) * line + (1.0 / passes) * 100.0 * static_cast<double>(passesDone);
}

} // namespace

double parseProgress(const QString &output, int passes)
{
    if (output.isEmpty())
        return 0.0;

    const QString marker = QString::fromLatin1(passMarker);
    const auto passesDone = output.count(marker);
    if (output.endsWith(marker))
        return endOfPass(passesDone, passes);

    QString line = output.section(QLatin1Char('\n'), -1);
    int dots = 0;
    while (line.endsWith(QLatin1Char('.'))) {
        line.chop(1);
        ++dots;
    }
    const auto groups = line.split(QStringLiteral("...")).size() - 1;
    return insidePass(passesDone, groups, dots, passes);
}

void ProgressReader::feed(const QByteArray &bytes)
{
    for (const char byte : bytes)
        readByte(byte);
}

void ProgressReader::readByte(char byte)
{
    m_empty = false;

    if (m_markerLength == passMarkerLength)
        m_markerLength = 0;
    if (byte == passMarker[m_markerLength]) {
        ++m_markerLength;
        if (m_markerLength == passMarkerLength)
            ++m_passesDone;
    } else if (m_markerLength == 3 && byte == '-') {
        m_markerLength = 2; // " - -": the second blank may begin a marker
    } else {
        m_markerLength = byte == passMarker[0] ? 1 : 0;
    }

    // Every three full stops in a row inside the line are one group.
    if (byte == '.') {
        ++m_dots;
    } else if (byte == '\n') {
        m_tens = 0;
        m_dots = 0;
    } else {
        m_tens += m_dots / 3;
        m_dots = 0;
    }
}

double ProgressReader::percentage(int passes) const
{
    if (m_empty)
        return 0.0;
    if (m_markerLength == passMarkerLength)
        return endOfPass(m_passesDone, passes);
    return insidePass(m_passesDone, m_tens, m_dots, passes);
}
