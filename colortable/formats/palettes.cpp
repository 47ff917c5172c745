#include "colortable/formats/palettes.h"

#include "colortable/formats/tableparts.h"

#include <QRegularExpression>
#include <QtEndian>

#include <algorithm>

namespace
{

const char sagaTextMark[] = "SAGA_COLORPALETTE_VERSION_0.100__ASCII";
const char sagaBinaryMark[] = "SAGA_COLORPALETTE_VERSION_0.100__BINARY";
constexpr int actColors = 256;
constexpr int actSize = actColors * 3;
constexpr int longActSize = actSize + 4; // with the number of colours and the transparent one
constexpr int mostColors = 10000;

QStringList fieldsOf(const QString &line)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    return line.split(separators, Qt::SkipEmptyParts);
}

/// Whether a byte stands in no text file.
bool isNoText(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code < ' ' && code != '\t' && code != '\n' && code != '\r';
}

int level(const QByteArray &bytes, qint64 at)
{
    return static_cast<unsigned char>(bytes.at(static_cast<int>(at)));
}

/// The number of colours of SAGA's first form; 0 for other bytes.
int oldSagaCount(const QByteArray &bytes)
{
    const int count = bytes.size() < 2 ? 0 : qFromLittleEndian<qint16>(bytes.constData());
    return count > 1 && bytes.size() == 2 + 3 * count ? count : 0;
}

QVector<QColor> oldSagaColors(const QByteArray &bytes)
{
    const int count = oldSagaCount(bytes);
    QVector<QColor> colors;
    for (int at = 2; at < 2 + count; ++at)
        colors += QColor(level(bytes, at), level(bytes, at + count), level(bytes, at + 2 * count));
    return colors;
}

void readMarkedSaga(ColorTableReading &reading, const QByteArray &bytes)
{
    const QByteArray rest = bytes.mid(static_cast<int>(qstrlen(sagaBinaryMark)));
    const int count = rest.size() < 4 ? 0 : qFromLittleEndian<qint32>(rest.constData());
    const auto size = rest.size() - 4;
    // Each colour is an integer of the computer that wrote the file: 4 or 8 bytes.
    if (count < 1 || count > mostColors || (size != 4LL * count && size != 8LL * count)) {
        refuse(reading, badCount(count, static_cast<int>(qMax<qint64>(0, size / 4))));
        return;
    }
    QVector<QColor> colors;
    for (qint64 at = 4; at < rest.size(); at += size / count)
        colors += QColor(level(rest, at), level(rest, at + 1), level(rest, at + 2));
    addEvenColors(reading, colors);
}

void readAct(ColorTableReading &reading, const QByteArray &bytes)
{
    int count = actColors;
    int transparent = -1;
    if (bytes.size() == longActSize) {
        const int given = qFromBigEndian<quint16>(bytes.constData() + actSize);
        transparent = qFromBigEndian<qint16>(bytes.constData() + actSize + 2);
        count = given == 0 ? actColors : given;
    }
    if (count > actColors) {
        refuse(reading, badCount(count, actColors));
        return;
    }
    QVector<QColor> colors;
    for (int at = 0; at < count; ++at)
        colors += QColor(level(bytes, 3 * at), level(bytes, 3 * at + 1), level(bytes, 3 * at + 2),
                         at == transparent ? 0 : 255);
    addEvenColors(reading, colors);
}

} // namespace

bool isSurferLevels(const QStringList &lines)
{
    return lines.first().startsWith(QLatin1String("ColorMap "));
}

ColorTableReading readSurferLevels(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("Surfer"));
    const QString version = fieldsOf(lines.first()).value(1);
    if (version != QLatin1String("1") && version != QLatin1String("2"))
        refuseLine(reading, 1, notSupported(lines.first().trimmed()));
    bool isPercent = true;
    for (int at = 1; at < lines.size(); ++at) {
        const QStringList fields = fieldsOf(lines.at(at));
        if (fields.isEmpty())
            continue;
        const std::optional<double> value = finiteNumber(fields.first());
        const QColor color = colorOfLevels(fields.mid(1));
        if (!value)
            refuseLine(reading, at + 1, notANumber(fields.first()));
        else if (!color.isValid())
            refuseLine(reading, at + 1, notAColor(lines.at(at).trimmed()));
        else
            reading.entries += {boundValue(*value), color, false};
        isPercent = isPercent && value && *value >= 0.0 && *value <= 100.0;
    }
    for (QuvoColorDef &entry : reading.entries)
        entry.percent = isPercent;
    return reading;
}

bool isGimpPalette(const QStringList &lines)
{
    return lines.first().trimmed() == QLatin1String("GIMP Palette");
}

ColorTableReading readGimpPalette(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("GIMP Palette"));
    static const QRegularExpression title(QStringLiteral("^(#|Name:|Columns:|Channels:)"));
    QVector<QColor> colors;
    for (int at = 1; at < lines.size(); ++at) {
        const QString line = lines.at(at).trimmed();
        if (line.isEmpty() || title.match(line).hasMatch())
            continue;
        const QColor color = colorOfLevels(fieldsOf(line).mid(0, 3)); // the rest is its name
        if (!color.isValid())
            refuseLine(reading, at + 1, notAColor(line));
        colors += color;
    }
    addEvenColors(reading, colors);
    return reading;
}

bool isSagaText(const QStringList &lines)
{
    return lines.first().trimmed() == QLatin1String(sagaTextMark);
}

ColorTableReading readSagaText(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("SAGA"));
    const int count = lines.value(1).trimmed().toInt();
    QVector<QColor> colors;
    for (int at = 2; at < lines.size(); ++at) {
        if (lines.at(at).trimmed().isEmpty())
            continue;
        const QColor color = colorOfLevels(fieldsOf(lines.at(at)));
        if (!color.isValid())
            refuseLine(reading, at + 1, notAColor(lines.at(at).trimmed()));
        colors += color;
    }
    if (colors.size() != count)
        refuse(reading, badCount(count, static_cast<int>(colors.size())));
    addEvenColors(reading, colors);
    return reading;
}

bool isBinaryPalette(const QByteArray &bytes)
{
    if (bytes.startsWith(sagaBinaryMark))
        return true;
    const bool hasSize = bytes.size() == actSize || bytes.size() == longActSize || oldSagaCount(bytes) > 0;
    return hasSize && std::any_of(bytes.begin(), bytes.end(), isNoText);
}

ColorTableReading readBinaryPalette(const QByteArray &bytes)
{
    const bool isAct = bytes.size() == actSize || bytes.size() == longActSize;
    if (!bytes.startsWith(sagaBinaryMark) && isAct) {
        ColorTableReading act = foreignReading(QStringLiteral("ACT"));
        readAct(act, bytes);
        return act;
    }
    ColorTableReading saga = foreignReading(QStringLiteral("SAGA"));
    if (bytes.startsWith(sagaBinaryMark))
        readMarkedSaga(saga, bytes);
    else
        addEvenColors(saga, oldSagaColors(bytes));
    return saga;
}
