#include "colortable/formats/cptfile.h"

#include "colortable/formats/cptcolor.h"
#include "colortable/formats/tableparts.h"
#include "messages/label.h"

#include <QRegularExpression>

#include <algorithm>

namespace
{

/// One line of ranges.
struct Slice
{
    double from = 0.0;
    double to = 0.0;
    CptColor low;
    CptColor high;
};

struct CptTable
{
    CptModel model = CptModel::Unknown;
    bool mixesHsv = false; ///< "+HSV": hue, saturation and value are mixed
    bool hinge = false;    ///< both sides of 0 are stretched apart
    bool cyclic = false;
    std::optional<std::pair<double, double>> range;
    QVector<Slice> slices;
    QList<QuvoColorDef> keys; ///< colours of single values
    QColor below, above, noData;
};

QStringList fieldsOf(const QString &line)
{
    const QString content = line.section(QLatin1Char(';'), 0, 0).simplified();
    QStringList fields = content.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QString last = fields.size() > 2 ? fields.last() : QString();
    if (last == QLatin1String("L") || last == QLatin1String("U") || last == QLatin1String("B"))
        fields.removeLast(); // where GMT's colour bar is annotated
    return fields;
}

bool isOutsideLine(const QStringList &fields)
{
    const QString first = fields.size() > 1 ? fields.first() : QString();
    return first == QLatin1String("B") || first == QLatin1String("F") || first == QLatin1String("N");
}

bool isComment(const QString &line)
{
    return line.trimmed().startsWith(QLatin1Char('#'));
}

const QRegularExpression &headerMark()
{
    static const QRegularExpression mark(
        QStringLiteral("^\\s*#\\s*(?:(COLOR_MODEL)\\s*=\\s*(\\+?)\\s*(\\S+)|(RANGE)\\s*=\\s*(\\S+?)/(\\S+)"
                       "|(CYCLIC)\\s*$|((?:HARD_|SOFT_)?HINGE)\\b.*)"),
        QRegularExpression::CaseInsensitiveOption);
    return mark;
}

void readHeader(ColorTableReading &reading, CptTable &table, const QString &line, int number)
{
    const QRegularExpressionMatch match = headerMark().match(line);
    if (!match.captured(1).isEmpty()) {
        const QStringList models{QStringLiteral("rgb"), QStringLiteral("hsv"), QStringLiteral("cmyk")};
        constexpr CptModel known[] = {CptModel::Rgb, CptModel::Hsv, CptModel::Cmyk};
        const auto at = models.indexOf(match.captured(3).toLower());
        if (at < 0)
            refuseLine(reading, number, notSupported(match.captured().trimmed()));
        else
            table.model = known[at];
        table.mixesHsv = at == 1 && !match.captured(2).isEmpty();
    } else if (!match.captured(4).isEmpty()) {
        const auto low = finiteNumber(match.captured(5));
        const auto high = finiteNumber(match.captured(6));
        if (low && high && *low < *high)
            table.range = std::pair(*low, *high);
        else
            refuseLine(reading, number, notANumber(match.captured().trimmed()));
    } else if (match.hasMatch()) {
        table.cyclic = table.cyclic || !match.captured(7).isEmpty();
        // A soft hinge is used only where GMT's user asks for it.
        table.hinge = table.hinge
            || (!match.captured(8).isEmpty()
                && !match.captured(8).startsWith(QLatin1String("SOFT"), Qt::CaseInsensitive));
    }
}

/// Reads fields as a colour, or refuses the line.
CptColor colorOf(ColorTableReading &reading, const CptTable &table, const QStringList &fields, int number)
{
    const std::optional<CptColor> color = readCptColor(fields, table.model);
    if (!color)
        refuseLine(reading, number, notAColor(fields.join(QLatin1Char(' '))));
    return color.value_or(CptColor());
}

double valueOf(ColorTableReading &reading, const QString &field, int number)
{
    const std::optional<double> value = finiteNumber(field);
    if (!value)
        refuseLine(reading, number, notANumber(field));
    return value.value_or(0.0);
}

void readSlice(ColorTableReading &reading, CptTable &table, const QStringList &fields, int number)
{
    const int columns = static_cast<int>(fields.size()) / 2 - 1; // of each colour
    Slice slice;
    slice.from = valueOf(reading, fields.first(), number);
    slice.low = colorOf(reading, table, fields.mid(1, columns), number);
    slice.to = valueOf(reading, fields.at(columns + 1), number);
    slice.high = colorOf(reading, table, fields.mid(columns + 2), number);
    if (slice.high.isDash) // the colour of the lower bound goes on
        slice.high = slice.low;
    else if (slice.low.isDash)
        refuseLine(reading, number, notAColor(QStringLiteral("-")));
    if (slice.from >= slice.to)
        refuseLine(reading, number, notANumber(fields.at(columns + 1)));
    if (!table.slices.isEmpty() && table.slices.last().to != slice.from)
        refuseLine(reading, number,
                   labelText({"MESS_TF_SUITE", "cette plage ne commence pas où la précédente finit."}));
    table.slices += slice;
}

void readLine(ColorTableReading &reading, CptTable &table, const QString &line, int number)
{
    const QStringList fields = fieldsOf(line);
    if (isOutsideLine(fields)) {
        const QColor color = colorOf(reading, table, fields.mid(1), number).color;
        const QChar letter = fields.first().at(0);
        (letter == QLatin1Char('B')       ? table.below
             : letter == QLatin1Char('F') ? table.above
                                          : table.noData) = color;
    } else if (fields.size() == 2) {
        table.keys += {valueOf(reading, fields.first(), number),
                       colorOf(reading, table, fields.mid(1), number).color, false};
    } else if (fields.size() == 4 || fields.size() == 8 || fields.size() == 10) {
        readSlice(reading, table, fields, number);
    } else if (!fields.isEmpty()) {
        refuseLine(reading, number, badFields());
    }
}

/// Whether the numbers of a table that does not name its colour model are no levels from 0 to 255.
bool looksLikeHsv(const CptTable &table)
{
    bool suspicious = false;
    for (const Slice &slice : table.slices) {
        for (const CptColor &color : {slice.low, slice.high}) {
            if (color.isRgb && (color.parts[1] > 1.0 || color.parts[2] > 1.0))
                return false;
            suspicious = suspicious || (color.isRgb && (color.parts[1] > 0.0 || color.parts[2] > 0.0));
        }
    }
    return suspicious && table.model == CptModel::Unknown;
}

/// Stretches values from 0 to 1, or from -1 to 1, as GMT does. Returns whether they are parts of a range that
/// the file does not name, and so become percentages.
bool stretch(ColorTableReading &reading, CptTable &table)
{
    const double first = table.slices.first().from;
    const double last = table.slices.last().to;
    const bool isNormal = (first == 0.0 || first == -1.0) && last == 1.0;
    if (!isNormal)
        return false;
    if (!table.range && (first == -1.0 || table.hinge)) {
        if (table.hinge)
            refuse(
                reading,
                labelText({"MESS_TF_CHARNIERE",
                           "Les valeurs de cette table s'étirent de part et d'autre de 0 (HINGE), mais aucune "
                           "ligne RANGE ne dit jusqu'où."}));
        return false;
    }
    if (!table.range) {
        reading.notes += labelText(
            {"MESS_TF_POURCENT", "Les valeurs vont de 0 à 1 : elles sont lues comme des pourcentages."});
        return true;
    }
    const auto [low, high] = *table.range;
    const bool hinged = table.hinge && first < 0.0 && low < 0.0 && high > 0.0;
    const auto stretched = [&, low = low, high = high](double z) {
        return hinged ? z * (z < 0.0 ? -low : high) : low + (z - first) / (last - first) * (high - low);
    };
    for (Slice &slice : table.slices) {
        slice.from = stretched(slice.from);
        slice.to = stretched(slice.to);
    }
    reading.notes +=
        labelText({"MESS_TF_ETENDUE", "Les valeurs sont étirées de %1 à %2, selon la ligne RANGE du fichier."})
            .arg(QString::number(low), QString::number(high));
    return false;
}

void addSlice(ColorTableReading &reading, const CptTable &table, const Slice &slice, bool percent)
{
    const double scale = percent ? 100.0 : 1.0;
    const auto value = [&](double z) { return percent ? z * scale : boundValue(z); };
    const bool mixesHsv = slice.low.isHsv && slice.high.isHsv && (table.mixesHsv || slice.low.isHyphened);
    if (!mixesHsv) {
        addPoint(reading.entries, value(slice.from), slice.low.color, percent);
        addPoint(reading.entries, value(slice.to), slice.high.color, percent);
        return;
    }
    const double lowAlpha = slice.low.color.alphaF();
    const double highAlpha = slice.high.color.alphaF();
    addCurve(reading.entries, value(slice.from), value(slice.to), percent, [&](double place) {
        const auto mix = [&](double from, double to) { return from + place * (to - from); };
        return colorOfHsv(mix(slice.low.parts[0], slice.high.parts[0]),
                          mix(slice.low.parts[1], slice.high.parts[1]),
                          mix(slice.low.parts[2], slice.high.parts[2]), mix(lowAlpha, highAlpha));
    });
}

void addSlices(ColorTableReading &reading, CptTable &table)
{
    const bool percent = stretch(reading, table);
    for (const Slice &slice : table.slices)
        addSlice(reading, table, slice, percent);
    addOutside(reading.entries, table.below, table.above);
    if (table.cyclic)
        reading.notes += labelText({"MESS_TF_CYCLIQUE",
                                    "Cette table se répète au-delà de ses bornes ; ici, les couleurs extrêmes "
                                    "continuent."});
}

/// Whether the fields are a range in eight columns of numbers.
bool isRange(const QStringList &fields)
{
    const auto isNumber = [](const QString &field) { return finiteNumber(field).has_value(); };
    return fields.size() == 8 && std::all_of(fields.begin(), fields.end(), isNumber)
        && *finiteNumber(fields.first()) < *finiteNumber(fields.at(4));
}

/// Whether a line of two or four fields has a colour that only GMT writes so.
bool hasCptColor(const QStringList &fields)
{
    static const QRegularExpression color(
        QStringLiteral("^[0-9.]+(/[0-9.]+){2,3}(@[0-9.]+)?$|^[0-9.]+-[0-9.]+-[0-9.]+$"));
    const bool isSlice = fields.size() == 4 && finiteNumber(fields.at(2)).has_value();
    if ((fields.size() != 2 && !isSlice) || !finiteNumber(fields.first()))
        return false;
    return color.match(fields.at(1)).hasMatch()
        || (isSlice && !finiteNumber(fields.at(1)) && !finiteNumber(fields.at(3)));
}

} // namespace

bool isCptFile(const QStringList &lines)
{
    bool areRanges = true; // that follow each other
    std::optional<double> end;
    for (const QString &line : lines) {
        if (isComment(line)) {
            if (headerMark().match(line).hasMatch())
                return true;
            continue;
        }
        const QStringList fields = fieldsOf(line);
        if (isOutsideLine(fields) || hasCptColor(fields))
            return true;
        if (fields.isEmpty() || !areRanges)
            continue;
        areRanges = isRange(fields) && (!end || finiteNumber(fields.first()) == end);
        end = areRanges ? finiteNumber(fields.at(4)) : std::nullopt;
    }
    return areRanges && end;
}

ColorTableReading readCptFile(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("GMT CPT"));
    CptTable table;
    int number = 0;
    for (const QString &line : lines) {
        ++number;
        if (isComment(line))
            readHeader(reading, table, line, number);
        else
            readLine(reading, table, line, number);
    }
    if (!table.keys.isEmpty() && !table.slices.isEmpty())
        refuse(reading,
               labelText({"MESS_TF_MELANGE", "Ce fichier mélange des plages et des valeurs isolées."}));
    if (looksLikeHsv(table))
        refuse(reading,
               labelText({"MESS_TF_MODELE",
                          "Les couleurs ne semblent pas être des niveaux de rouge, vert et bleu de 0 à 255, et "
                          "aucune ligne COLOR_MODEL ne dit ce qu'elles sont."}));
    if (!reading.problem.isEmpty())
        return reading;
    if (!table.keys.isEmpty())
        addExactColors(reading, table.keys);
    else if (!table.slices.isEmpty())
        addSlices(reading, table);
    if (table.noData.isValid())
        reading.entries += {QuvoColorDef::noDataValue, table.noData, false};
    return reading;
}
