#include "panels/options/valueclasses.h"

#include "colortable/colortablefile.h"
#include "colortable/oklab.h"
#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QFileInfo>
#include <QLocale>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double circle = 360.0;
constexpr QRgb voidColor = 0xff9a9a9a;

/// A table of this program. Its bounds are those between two classes: one fewer than the colours.
struct BuiltIn
{
    const char *word;
    bool percent; ///< the unit in which its bounds are customary
    QVector<double> bounds;
    QVector<QRgb> colors;
};

const QVector<BuiltIn> &builtIns()
{
    static const QVector<BuiltIn> tables{
        // Bounds and order of colours of public slope maps for ski touring. Each class is darker than the one
        // before, so that they differ without their hues, too.
        {"avalanche",
         false,
         {27, 30, 35, 40, 45},
         {0xffffffff, 0xffffe94a, 0xfff7941d, 0xffd7301f, 0xff8c3fa8, 0xff33124d}},
        // Slope gradient classes of FAO, Guidelines for soil description (4th edition, 2006), table 7; those up
        // to 2 percent are taken together.
        {"farming",
         true,
         {2, 5, 10, 15, 30, 60},
         {0xffffffe5, 0xfffee391, 0xfffec44f, 0xfffe9929, 0xffd95f0e, 0xff993404, 0xff4d1a02}},
        // No norm sets them: easy, terraced, difficult, and exceptional ground as planners usually divide it.
        {"building", true, {5, 10, 15, 25}, {0xfff7fcf0, 0xffbae4bc, 0xff7bccc4, 0xff2b8cbe, 0xff08406f}},
    };
    return tables;
}

QString numberText(double number)
{
    return shownNumber(number, 'g', 6);
}

/// The text of the class number `at` between these bounds, with the unit and its blank.
QString intervalText(const QVector<double> &bounds, int at, const QString &unit)
{
    if (bounds.isEmpty())
        return {};
    if (at == 0)
        return labelText({"MESS_CLASSE_SOUS", "moins de %1"}).arg(numberText(bounds.first()) + unit);
    if (at == bounds.size())
        return labelText({"MESS_CLASSE_DES", "%1 et plus"}).arg(numberText(bounds.last()) + unit);
    return QStringLiteral("%1 – %2").arg(numberText(bounds.at(at - 1)), numberText(bounds.at(at)) + unit);
}

QString unitText(bool percent)
{
    return percent ? QStringLiteral(" %") : QStringLiteral("°");
}

/// The same slope in the other unit.
double converted(double slope, bool toPercent)
{
    constexpr double whole = 100.0;
    return toPercent ? whole * std::tan(qDegreesToRadians(slope)) : qRadiansToDegrees(std::atan(slope / whole));
}

ClassTable builtInClasses(const BuiltIn &table, bool percent)
{
    ClassTable classes;
    for (int at = 0; at < table.colors.size(); ++at) {
        double low = -std::numeric_limits<double>::infinity();
        if (at > 0)
            low = table.percent == percent ? table.bounds.at(at - 1)
                                           : converted(table.bounds.at(at - 1), percent);
        classes.classes += {low, table.colors.at(at), intervalText(table.bounds, at, unitText(table.percent))};
    }
    return classes;
}

/// The entries of a colour table as classes: each begins at its value, and the first reaches below it, too.
ClassTable ownClasses(const QString &file, bool percent)
{
    ClassTable classes;
    const ColorTableReading reading = readColorTable(file);
    const QList<QuvoColorDef> entries = elevationEntries(reading.entries);
    if (!reading.problem.isEmpty() || entries.isEmpty())
        classes.problem =
            labelText({"MESS_CLASSES_TABLE", "La table de classes « %1 » n'a pas pu être lue."}).arg(file)
            + (reading.problem.isEmpty() ? QString() : QLatin1Char('\n') + reading.problem);
    else if (std::any_of(entries.begin(), entries.end(),
                         [](const QuvoColorDef &entry) { return entry.percent; }))
        classes.problem = labelText({"MESS_CLASSES_POURCENT",
                                     "La table de classes « %1 » contient des pourcentages de l'étendue des "
                                     "valeurs ; une classe commence à une pente."})
                              .arg(file);
    if (!classes.problem.isEmpty())
        return classes;
    QVector<double> bounds;
    for (const QuvoColorDef &entry : entries) {
        if (!classes.classes.isEmpty() && classes.classes.last().low == entry.value) {
            classes.classes.last().color = entry.color.rgb();
            continue;
        }
        if (!classes.classes.isEmpty())
            bounds += entry.value;
        classes.classes += {entry.value, entry.color.rgb(), {}};
    }
    for (int at = 0; at < classes.classes.size(); ++at)
        classes.classes[at].text = intervalText(bounds, at, unitText(percent));
    classes.classes.first().low = -std::numeric_limits<double>::infinity();
    return classes;
}

/// The colour of an azimuth on a circle of even chroma. North is light and south dark; east is yellowish and
/// west bluish, which readers who confuse red and green tell apart.
QRgb directionColor(double azimuth)
{
    constexpr double middle = 0.68;
    constexpr double range = 0.17;
    constexpr double chroma = 0.11;
    constexpr double hueOfNorth = 10.0;
    const double hue = qDegreesToRadians(azimuth + hueOfNorth);
    return fromOkLab({middle + range * std::cos(qDegreesToRadians(azimuth)), chroma * std::cos(hue),
                      chroma * std::sin(hue)},
                     255)
        .rgb();
}

/// The 32-bit number at which a class begins: the least that is not below the bound.
float firstOf(double bound)
{
    const auto nearest = static_cast<float>(bound);
    return nearest < bound ? std::nextafter(nearest, std::numeric_limits<float>::infinity()) : nearest;
}

QByteArray entryText(float value, QRgb color)
{
    constexpr int exactDigits = 9;
    return QByteArray::number(static_cast<double>(value), 'g', exactDigits) + ' '
        + QByteArray::number(qRed(color)) + ' ' + QByteArray::number(qGreen(color)) + ' '
        + QByteArray::number(qBlue(color)) + '\n';
}

} // namespace

QStringList slopeClassWords()
{
    QStringList words;
    for (const BuiltIn &table : builtIns())
        words += QLatin1String(table.word);
    return words;
}

ClassTable slopeClasses(const SlopeOptions &options)
{
    if (options.classes.isEmpty())
        return {};
    const auto &tables = builtIns();
    const auto found = std::find_if(tables.begin(), tables.end(), [&](const BuiltIn &table) {
        return options.classes == QLatin1String(table.word);
    });
    ClassTable classes = found == tables.end() ? ownClasses(options.classes, options.percent)
                                               : builtInClasses(*found, options.percent);
    classes.title = labelText({"MESS_PENTE", "Pente"});
    classes.voidColor = voidColor;
    classes.voidText = labelText({"MESS_ZONE_INCONNUE", "Sans donnée"});
    return classes;
}

ClassTable directionClasses(const AspectOptions &options)
{
    ClassTable classes;
    const int count = options.directions;
    if (count <= 0)
        return classes;
    const QStringList points =
        labelText({"MESS_ROSE_VENTS", "N NNE NE ENE E ESE SE SSE S SSO SO OSO O ONO NO NNO"})
            .split(QLatin1Char(' '));
    const double step = circle / count;
    for (int at = 0; at <= count; ++at) { // by rising angles of the product
        const int clockwise = ((options.trigonometric ? count / 4 - at : at) % count + count) % count;
        const double middle = at * step;
        const QString bounds = QStringLiteral("%1 – %2°")
                                   .arg(numberText(std::fmod(middle - step / 2.0 + circle, circle)),
                                        numberText(std::fmod(middle + step / 2.0, circle)));
        classes.classes += {at == 0 ? -std::numeric_limits<double>::infinity() : middle - step / 2.0,
                            directionColor(clockwise * step),
                            points.value(clockwise * points.size() / count) + QStringLiteral("  ") + bounds};
    }
    classes.title = labelText({"MESS_ORIENTATION", "Orientation"});
    classes.voidColor = voidColor;
    classes.voidText = labelText({"MESS_CLASSE_PLAT", "Plat ou sans donnée"});
    return classes;
}

QVector<SideFile> classFiles(const ClassTable &table)
{
    if (table.classes.isEmpty())
        return {};
    const auto file = [](const QString &word, const char *extension) {
        SideFile side;
        side.extensions = QStringList{QLatin1String(extension)};
        side.word = word;
        return side;
    };
    return {file(classPictureWord, "tif"), file(classPictureWord + QStringLiteral("_legend"), "png")};
}

ToolInput slopeInput(const SlopeOptions &options)
{
    ToolInput input{.fragment = slopeFragment(options)};
    input.classes = slopeClasses(options);
    input.sideFiles = classFiles(input.classes);
    return input;
}

ToolInput aspectInput(const AspectOptions &options)
{
    ToolInput input{.fragment = aspectFragment(options)};
    input.classes = directionClasses(options);
    input.sideFiles = classFiles(input.classes);
    return input;
}

QVector<ClassRow> classRows(const ClassTable &table)
{
    QVector<ClassRow> rows;
    for (const ValueClass &one : table.classes) {
        if (rows.isEmpty() || rows.first().text != one.text)
            rows += {one.color, one.text};
    }
    return rows;
}

int classOf(const ClassTable &table, double value)
{
    int found = 0;
    for (int at = 1; at < table.classes.size() && value >= table.classes.at(at).low; ++at)
        found = at;
    return found;
}

QByteArray classTableText(const ClassTable &table)
{
    QByteArray text;
    const auto below = [](float value) {
        return std::nextafter(value, -std::numeric_limits<float>::infinity());
    };
    for (int at = 0; at < table.classes.size(); ++at) {
        const ValueClass &one = table.classes.at(at);
        if (at > 0)
            text += entryText(firstOf(one.low), one.color);
        if (at + 1 < table.classes.size())
            text += entryText(below(firstOf(table.classes.at(at + 1).low)), one.color);
    }
    if (table.classes.size() == 1)
        text += entryText(0.0F, table.classes.first().color);
    return text + "nv " + QByteArray::number(qRed(table.voidColor)) + ' '
        + QByteArray::number(qGreen(table.voidColor)) + ' ' + QByteArray::number(qBlue(table.voidColor)) + '\n';
}
