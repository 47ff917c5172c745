#include "runner/tooltext.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

namespace
{

constexpr int headLength = 256 * 1024;
constexpr int tailLength = 64 * 1024;
const QByteArray errorAtLineStart = QByteArrayLiteral("\nERROR");

bool hasError(const QByteArray &text)
{
    return text.startsWith("ERROR") || text.contains(errorAtLineStart);
}

} // namespace

void ToolText::feed(const QByteArray &bytes)
{
    const int room = headLength - static_cast<int>(m_head.size());
    m_head += bytes.left(room);
    m_tail += bytes.mid(room);
    if (m_tail.size() > 2 * tailLength)
        shortenTail();
}

void ToolText::shortenTail()
{
    constexpr int longestLine = 1024;
    m_isShortened = true;
    if (m_firstError.isEmpty() && !hasError(m_head)) {
        const auto found = m_tail.indexOf(errorAtLineStart);
        if (found >= 0)
            m_firstError = m_tail.mid(found + 1, longestLine).split('\n').first();
    }
    m_tail = m_tail.right(tailLength);
}

QByteArray ToolText::text() const
{
    if (!m_isShortened)
        return m_head + m_tail;
    return m_head + "\n[...]\n" + (m_firstError.isEmpty() ? QByteArray() : m_firstError + "\n[...]\n") + m_tail;
}

QString toldOnce(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("\\d+"));
    QStringList lines;
    QHash<QString, int> places; ///< message without its numbers -> index in `lines`
    QHash<int, int> counts;
    for (QString line : text.split(QLatin1Char('\n'))) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.startsWith(QLatin1String("ERROR")) || line.startsWith(QLatin1String("Warning"))) {
            QString kind = line.trimmed();
            kind.replace(number, QStringLiteral("0"));
            if (places.contains(kind)) {
                ++counts[places.value(kind)];
                continue;
            }
            places.insert(kind, static_cast<int>(lines.size()));
        }
        lines += line;
    }
    for (auto repeated = counts.cbegin(); repeated != counts.cend(); ++repeated)
        lines[repeated.key()] += QStringLiteral(" (%1×)").arg(repeated.value() + 1);
    return lines.join(QLatin1Char('\n'));
}
