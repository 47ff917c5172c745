#include "colortable/colortablefile.h"

#include "colortable/formats/colornames.h"
#include "colortable/formats/foreigntable.h"
#include "colortable/formats/palettes.h"
#include "messages/label.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace
{

constexpr int fullComponent = 255;
constexpr int mostEntries = 10000;

/// Splits a line into its fields; separators at its ends make no empty fields.
QStringList fieldsOf(const QString &line)
{
    static const QRegularExpression separators(QStringLiteral("[\\t,\\s:;]+"));
    return line.split(separators, Qt::SkipEmptyParts);
}

bool readValue(const QString &field, QuvoColorDef &entry)
{
    if (field.compare(QLatin1String("nv"), Qt::CaseInsensitive) == 0) {
        entry.value = QuvoColorDef::noDataValue;
        return true;
    }
    entry.percent = field.endsWith(QLatin1Char('%'));
    bool isNumber = false;
    entry.value = (entry.percent ? field.chopped(1) : field).toDouble(&isNumber);
    if (!isNumber || !std::isfinite(entry.value))
        return false;
    return !entry.percent || (entry.value >= 0.0 && entry.value <= 100.0);
}

bool readColor(const QStringList &fields, QColor &color)
{
    if (fields.size() < 4) {
        color = toolNamedColor(fields.at(1));
        return color.isValid();
    }
    int components[] = {0, 0, 0, fullComponent};
    const int given = fields.size() > 4 ? 4 : 3;
    for (int at = 0; at < given; ++at) {
        bool isNumber = false;
        components[at] = fields.at(at + 1).toInt(&isNumber);
        if (!isNumber || components[at] < 0 || components[at] > fullComponent)
            return false;
    }
    color.setRgb(components[0], components[1], components[2], components[3]);
    return true;
}

/// Whether the DEM tool reads the same entries from the text. Only numbers and comments in their plainest form
/// pass. Excluded are names of colours (the tool knows few), separators that it
/// does not know, -9999 for no-data (an elevation to it), and COLOR_MODEL, which marks another file format.
bool isPlain(const QByteArray &text)
{
    static const QRegularExpression line(QStringLiteral(
        "^(|[#/].*|(nv|[-+]?[0-9]{1,9}(\\.[0-9]{1,17})?%?)([ \\t,:]+[0-9]{1,3}){3,4}[ \\t]*)\r?$"));
    static const QRegularExpression noDataAsNumber(QStringLiteral("^-9999(\\.0*)?[ \\t,:]"));
    const bool loneReturns = text.count('\r') != text.count("\r\n"); // no line ends to the tool
    if (text.contains("COLOR_MODEL") || loneReturns)
        return false;
    for (const QByteArray &bytes : text.split('\n')) {
        const QString content = QString::fromLatin1(bytes);
        if (!line.match(content).hasMatch() || noDataAsNumber.match(content).hasMatch())
            return false;
    }
    return true;
}

void readLine(ColorTableReading &reading, const QString &line, int number)
{
    const QStringList fields = fieldsOf(line);
    if (fields.size() < 2 || fields.first().startsWith(QLatin1Char('#'))
        || fields.first().startsWith(QLatin1Char('/')))
        return;
    QuvoColorDef entry;
    if (!readValue(fields.first(), entry) || !readColor(fields, entry.color)) {
        if (!reading.invalidValues)
            reading.invalidLine = number;
        reading.invalidValues = true;
        return;
    }
    reading.entries += entry;
}

QByteArray colorText(const QColor &color, const char *separator)
{
    return QByteArray::number(color.red()) + separator + QByteArray::number(color.green()) + separator
        + QByteArray::number(color.blue()) + separator + QByteArray::number(color.alpha()) + '\n';
}

QByteArray toolLine(const QByteArray &value, const QuvoColorDef &entry)
{
    return value + '\t' + colorText(entry.color, "  ");
}

/// The next lower 32-bit number; below 0 and close to it a number that is not too small to be read.
double justBelow(double value)
{
    constexpr float smallest = 1e-30F;
    const auto number = static_cast<float>(value);
    const float below = std::nextafter(number, -std::numeric_limits<float>::infinity());
    if (!std::isfinite(below)) // beyond the 32-bit numbers lies no cell
        return value;
    return std::abs(number) < smallest ? -smallest : std::min(static_cast<double>(below), value);
}

/// Whether two entries of one value have different colours. The tool would mix them (toolEntries()).
bool hasEdges(const QList<QuvoColorDef> &entries)
{
    return std::adjacent_find(entries.begin(), entries.end(),
                              [](const QuvoColorDef &one, const QuvoColorDef &other) {
                                  return one.value == other.value && one.percent == other.percent
                                      && one.color != other.color;
                              })
        != entries.end();
}

QByteArray noDataLine(const QList<QuvoColorDef> &table)
{
    const QuvoColorDef *noData = noDataEntry(table);
    return noData ? toolLine("nv", *noData) : QByteArray();
}

ColorTableReading parseOwnTable(const QByteArray &text)
{
    ColorTableReading reading;
    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\n|\r"));
    int number = 0;
    QString content = QString::fromUtf8(text);
    content.remove(QChar(QChar::ByteOrderMark));
    for (const QString &line : content.split(lineEnd)) {
        readLine(reading, line.trimmed(), ++number);
        if (reading.entries.size() > mostEntries)
            break;
    }
    reading.plain = !reading.invalidValues && isPlain(text);
    return reading;
}

QString tooManyEntries()
{
    return labelText({"MESS_TC_LONGUE",
                      "Ce fichier a plus de %1 lignes de couleurs : ce n'est pas une table couleur."})
        .arg(mostEntries);
}

/// Sorts the entries of a reading and adds the findings about all of them.
ColorTableReading finished(ColorTableReading reading)
{
    if (reading.problem.isEmpty() && reading.entries.size() > mostEntries)
        reading.problem = tooManyEntries();
    if (!reading.problem.isEmpty()) {
        ColorTableReading refused;
        refused.format = reading.format;
        refused.problem = reading.problem;
        refused.plain = false;
        return refused;
    }
    const QList<QuvoColorDef> elevations = elevationEntries(reading.entries);
    const auto isPercent = [](const QuvoColorDef &entry) { return entry.percent; };
    reading.relative = !elevations.isEmpty() && elevations.first().percent;
    reading.mixedUnits = std::any_of(elevations.begin(), elevations.end(), isPercent)
        && !std::all_of(elevations.begin(), elevations.end(), isPercent);
    sortByValue(reading.entries);
    reading.plain = reading.plain && !hasEdges(elevationEntries(reading.entries));
    return reading;
}

} // namespace

ColorTableReading readColorTable(const QString &path)
{
    constexpr qint64 largestTable = 4LL * 1024 * 1024;
    ColorTableReading reading;
    QFile file(path);
    if (!QFileInfo(path).isFile()) { // reading a pipe or a device might never end
        reading.problem = labelText({"MESS_TC_PAS_FICHIER", "« %1 » n'est pas un fichier."}).arg(path);
    } else if (!file.open(QIODevice::ReadOnly)) {
        reading.problem =
            labelText({"MESS_TC_ILLISIBLE", "« %1 » ne peut pas être lu : %2"}).arg(path, file.errorString());
    } else {
        const QByteArray text = file.read(largestTable + 1);
        if (text.size() > largestTable || (text.contains('\0') && !isBinaryPalette(text)))
            reading.problem = labelText({"MESS_TC_PAS_TEXTE", "« %1 » n'est pas une table couleur."}).arg(path);
        else
            reading = parseColorTable(text);
    }
    return reading;
}

ColorTableReading parseColorTable(const QByteArray &text)
{
    const std::optional<ColorTableReading> foreign = readForeignTable(text);
    return finished(foreign ? *foreign : parseOwnTable(text));
}

QList<QuvoColorDef> entriesOfKind(const QList<QuvoColorDef> &entries, bool relative)
{
    QList<QuvoColorDef> kept;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(kept),
                 [&](const QuvoColorDef &entry) { return entry.isNoData() || entry.percent == relative; });
    return kept;
}

QByteArray colorTableText(const QList<QuvoColorDef> &entries)
{
    QByteArray text;
    for (const QuvoColorDef &entry : entries) {
        text += entry.isNoData() ? QByteArray("nv") : QByteArray::number(entry.value, 'f', 1);
        if (entry.percent)
            text += '%';
        text += '\t' + colorText(entry.color, "\t");
    }
    return text;
}

QList<QuvoColorDef> toolEntries(const QList<QuvoColorDef> &entries)
{
    const QList<QuvoColorDef> elevations = elevationEntries(entries);
    const auto isAt = [&](int at, double value) {
        return at >= 0 && at < elevations.size() && elevations.at(at).value == value;
    };
    QList<QuvoColorDef> forTool;
    for (int at = 0; at < elevations.size(); ++at) {
        QuvoColorDef entry = elevations.at(at);
        const bool isFirst = !isAt(at - 1, entry.value);
        const bool isLast = !isAt(at + 1, entry.value);
        const bool isBelowAll = !isLast && entry.percent && entry.value <= 0.0; // no cell is below 0 %
        if ((!isFirst && !isLast) || isBelowAll)
            continue;
        if (isFirst && !isLast)
            entry.value = justBelow(entry.value);
        forTool += entry;
    }
    return forTool;
}

QByteArray exactTableText(const QList<QuvoColorDef> &entries)
{
    QByteArray text = noDataLine(entries);
    for (const QuvoColorDef &entry : elevationEntries(entries)) {
        const QByteArray value = QString::number(entry.value, 'g', QLocale::FloatingPointShortest).toLatin1();
        text += toolLine(entry.percent ? value + '%' : value, entry);
    }
    return text;
}

QByteArray toolTableText(const QList<QuvoColorDef> &entries)
{
    const QuvoColorDef *noData = noDataEntry(entries);
    return exactTableText((noData ? QList<QuvoColorDef>{*noData} : QList<QuvoColorDef>())
                          + toolEntries(entries));
}

QString spreadProblem(const QString &file, const ColorTableReading &reading)
{
    if (reading.mixedUnits)
        return labelText(
                   {"MESS_TC_ETALER_MIXTE",
                    "La table couleur « %1 » mélange des altitudes et des pourcentages : elle ne peut pas être "
                    "étalée."})
            .arg(file);
    if (reading.categories)
        return labelText(
                   {"MESS_TC_ETALER_EXACT",
                    "La table couleur « %1 » donne à chaque valeur sa couleur : elle ne peut pas être étalée."})
            .arg(file);
    return {};
}

SpreadTable spreadTable(const QList<QuvoColorDef> &entries, double demMinimum, double demMaximum)
{
    SpreadTable table;
    table.text = noDataLine(entries);
    const QList<QuvoColorDef> elevations = elevationEntries(entries);
    const double first = elevations.isEmpty() ? 0.0 : elevations.first().value;
    const double range = elevations.isEmpty() ? 0.0 : elevations.last().value - first;
    QByteArray before;
    double valueBefore = 0.0;
    for (const QuvoColorDef &entry : elevations) {
        const double part = range > 0.0 ? (entry.value - first) / range : 0.0;
        QByteArray elevation = QByteArray::number(part * (demMaximum - demMinimum) + demMinimum, 'f', 0);
        if (elevation == "-0")
            elevation = "0";
        table.merged += elevation == before && entry.value != valueBefore;
        table.text += toolLine(elevation, entry);
        before = elevation;
        valueBefore = entry.value;
    }
    return table;
}

QString freeTableName(const QString &folder, const QString &base)
{
    QString name = QStringLiteral("%1/%2.txt").arg(folder, base);
    for (int number = 1; QFileInfo::exists(name); ++number)
        name = QStringLiteral("%1/%2_%3.txt").arg(folder, base, QString::number(number));
    return name;
}

QString writeTableFile(const QString &path, const QByteArray &text)
{
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    return written ? QString() : file.errorString();
}
