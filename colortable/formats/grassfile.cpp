#include "colortable/formats/grassfile.h"

#include "colortable/formats/colornames.h"
#include "colortable/formats/tableparts.h"
#include "messages/label.h"

#include <QRegularExpression>

#include <algorithm>

namespace
{

QStringList fieldsOf(const QString &line, const QString &separators)
{
    return line.trimmed().split(QRegularExpression(separators), Qt::SkipEmptyParts);
}

bool isNoData(const QString &field)
{
    return field == QLatin1String("*") || field.compare(QLatin1String("nv"), Qt::CaseInsensitive) == 0;
}

bool isComment(const QString &line)
{
    return line.trimmed().isEmpty() || line.trimmed().startsWith(QLatin1Char('#'));
}

/// The first word of a rule, in lower case.
QString ruleWord(const QString &line)
{
    return line.simplified().section(QLatin1Char(' '), 0, 0).toLower();
}

void readRule(ColorTableReading &reading, QColor &outside, const QString &line, int number)
{
    const QString value = ruleWord(line);
    const QString text = line.trimmed().mid(value.size()).trimmed();
    const QStringList levels = fieldsOf(text, QStringLiteral("[\\s,:;]+"));
    const QColor color = levels.size() == 1 ? grassNamedColor(levels.first()) : colorOfLevels(levels.mid(0, 3));
    const bool isPercent = value.endsWith(QLatin1Char('%'));
    const std::optional<double> at = finiteNumber(isPercent ? value.chopped(1) : value);
    if (!color.isValid() || levels.size() > 3)
        refuseLine(reading, number, notAColor(text));
    else if (value == QLatin1String("default"))
        outside = color;
    else if (isNoData(value))
        reading.entries += {QuvoColorDef::noDataValue, color, false};
    else if (at && (!isPercent || (*at >= 0.0 && *at <= 100.0)))
        reading.entries += {isPercent ? *at : boundValue(*at), color, isPercent};
    else
        refuseLine(reading, number, notANumber(value));
}

/// A range of values with one colour at each end.
struct Range
{
    double from = 0.0;
    double to = 0.0;
    QColor low;
    QColor high;
};

/// What a file of a map's own colours says besides its ranges.
struct GrassColors
{
    QVector<Range> ranges;
    QColor outside;
    QColor noData;
    double shift = 0.0;
    bool inverted = false;
};

/// "v:r:g:b", "v:grey" or, for the second end of a range of one colour, "v". Nothing for anything else.
std::optional<QuvoColorDef> endOf(const QString &field, const QColor &otherwise)
{
    const QStringList parts = field.split(QLatin1Char(':'));
    const std::optional<double> value = finiteNumber(parts.first());
    QColor color = parts.size() == 1 ? otherwise : colorOfLevels(parts.mid(1));
    if (parts.size() == 2)
        color = colorOfLevels({parts.at(1), parts.at(1), parts.at(1)});
    if (!value || !color.isValid() || parts.size() > 4)
        return std::nullopt;
    return QuvoColorDef{boundValue(*value), color, false};
}

void readColorsLine(ColorTableReading &reading, GrassColors &colors, const QString &line, int number)
{
    const QStringList fields = fieldsOf(line, QStringLiteral("\\s+"));
    const QString word = fields.first().section(QLatin1Char(':'), 0, 0);
    const QString rest = fields.first().section(QLatin1Char(':'), 1);
    if (isNoData(word)) { // "*" stands for the outside here
        const auto color = endOf(QStringLiteral("0:") + rest, {});
        if (!color || fields.size() > 1)
            refuseLine(reading, number, notAColor(rest));
        else
            (word == QLatin1String("*") ? colors.outside : colors.noData) = color->color;
    } else if (word == QLatin1String("shift")) {
        const std::optional<double> shift = finiteNumber(rest);
        if (!shift)
            refuseLine(reading, number, notANumber(rest));
        colors.shift = shift.value_or(0.0);
    } else if (word == QLatin1String("invert")) {
        colors.inverted = true;
    } else {
        const auto low = endOf(fields.first(), {});
        const auto high = low && fields.size() == 2 ? endOf(fields.at(1), low->color) : low;
        if (!low || !high || fields.size() > 2)
            refuseLine(reading, number, notAColor(line.trimmed()));
        else if (low->value <= high->value)
            colors.ranges += {low->value, high->value, low->color, high->color};
        else
            colors.ranges += {high->value, low->value, high->color, low->color};
    }
}

/// Adds the ranges in the order of their values. What lies between two ranges has the colour of the outside, or
/// is transparent; a range includes its upper end unless the next one begins there.
void addRanges(ColorTableReading &reading, const GrassColors &colors)
{
    QVector<Range> ranges = colors.ranges;
    std::stable_sort(ranges.begin(), ranges.end(),
                     [](const Range &one, const Range &other) { return one.from < other.from; });
    const QColor between = colors.outside.isValid() ? colors.outside : QColor(Qt::transparent);
    for (int at = 0; at < ranges.size(); ++at) {
        const Range &range = ranges.at(at);
        if (at > 0 && ranges.at(at - 1).to > range.from) {
            refuse(reading,
                   labelText({"MESS_TF_CHEVAUCHE", "Deux plages de ce fichier se chevauchent à %1."})
                       .arg(QString::number(range.from)));
            return;
        }
        addPoint(reading.entries, range.from, range.low);
        addPoint(reading.entries, range.to, range.high);
        const bool gap = at + 1 < ranges.size() && nextAbove(range.to) <= ranges.at(at + 1).from;
        if (gap) {
            addPoint(reading.entries, nextAbove(range.to), range.high);
            addPoint(reading.entries, nextAbove(range.to), between);
            addPoint(reading.entries, ranges.at(at + 1).from, between);
        }
    }
    if (!reading.entries.isEmpty())
        addOutside(reading.entries, colors.outside, colors.outside);
}

QColor inverted(const QColor &color)
{
    return {255 - color.red(), 255 - color.green(), 255 - color.blue()};
}

const QRegularExpression &colorsHeader()
{
    static const QRegularExpression header(QStringLiteral("^\\s*(%{1,2})\\s+\\S+\\s+\\S+\\s*$"));
    return header;
}

} // namespace

bool isGrassRules(const QStringList &lines)
{
    static const QRegularExpression mark(QStringLiteral("^\\s*(default\\s.*|end\\s*)$"),
                                         QRegularExpression::CaseInsensitiveOption);
    return std::any_of(lines.begin(), lines.end(),
                       [](const QString &line) { return mark.match(line).hasMatch(); });
}

ColorTableReading readGrassRules(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("GRASS"));
    QColor outside;
    int number = 0;
    for (const QString &line : lines) {
        ++number;
        if (isComment(line))
            continue;
        if (ruleWord(line) == QLatin1String("end"))
            break;
        readRule(reading, outside, line, number);
    }
    QList<QuvoColorDef> elevations = elevationEntries(reading.entries);
    if (outside.isValid() && !elevations.isEmpty()) {
        sortByValue(elevations);
        addOutside(elevations, outside, outside);
        const QuvoColorDef *noData = noDataEntry(reading.entries);
        reading.entries = (noData ? QList<QuvoColorDef>{*noData} : QList<QuvoColorDef>()) + elevations;
    }
    return reading;
}

bool isGrassColors(const QStringList &lines)
{
    const auto first = std::find_if_not(lines.begin(), lines.end(), isComment);
    return first != lines.end() && colorsHeader().match(*first).hasMatch();
}

ColorTableReading readGrassColors(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("GRASS colr"));
    GrassColors colors;
    int number = 0;
    for (const QString &line : lines) {
        ++number;
        const QRegularExpressionMatch header = colorsHeader().match(line);
        if (header.captured(1).size() == 2)
            reading.notes +=
                labelText({"MESS_TF_CYCLIQUE",
                           "Cette table se répète au-delà de ses bornes ; ici, les couleurs extrêmes "
                           "continuent."});
        if (!isComment(line) && !header.hasMatch())
            readColorsLine(reading, colors, line, number);
    }
    for (Range &range : colors.ranges) {
        range = {range.from + colors.shift, range.to + colors.shift, range.low, range.high};
        if (colors.inverted)
            range = {range.from, range.to, inverted(range.low), inverted(range.high)};
    }
    addRanges(reading, colors);
    if (colors.noData.isValid())
        reading.entries += {QuvoColorDef::noDataValue, colors.noData, false};
    return reading;
}
