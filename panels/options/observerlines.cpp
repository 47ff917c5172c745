#include "panels/options/observerlines.h"

#include "messages/label.h"
#include "panels/options/recordfields.h"

#include <QHash>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <functional>

namespace
{

/// A column of the lines.
struct Column
{
    QString name;          ///< in the line of names that pointLines() writes
    QStringList alsoNamed; ///< in lower case
    /// Sets the point's value from a text that is not empty. Returns the problem in a sentence; empty for a
    /// good text.
    std::function<QString(const QString &text, ObserverPoint &point)> set;
    /// The value in the form that `set` reads; empty where there is none.
    std::function<QString(const ObserverPoint &point)> text;
    bool isAlwaysWritten = true; ///< or only where a point has another value than the default one
};

std::optional<double> readDecimal(QString text)
{
    if (text.count(QLatin1Char(',')) == 1 && !text.contains(QLatin1Char('.')))
        text.replace(QLatin1Char(','), QLatin1Char('.'));
    bool isNumber = false;
    const double number = text.toDouble(&isNumber); // "nan" and "inf" are numbers, but unusable
    return isNumber ? std::optional(number) : std::nullopt;
}

QString exactText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QString notANumber(const QString &text)
{
    return labelText({"MESS_OBS_PAS_NOMBRE", "« %1 » n'est pas un nombre."}).arg(text);
}

Column numberColumn(const char *name, const QStringList &alsoNamed, double ObserverPoint::*member)
{
    const auto set = [member](const QString &text, ObserverPoint &point) {
        const auto number = readDecimal(text);
        point.*member = number.value_or(point.*member);
        return number ? QString() : notANumber(text);
    };
    return {QString::fromLatin1(name), alsoNamed, set,
            [member](const ObserverPoint &point) { return exactText(point.*member); }};
}

Column limitColumn(const LimitField &field)
{
    const auto member = field.value;
    const auto set = [member](const QString &text, ObserverPoint &point) {
        const auto number = readDecimal(text);
        point.limits.*member = number;
        return number ? QString() : notANumber(text);
    };
    const auto text = [member](const ObserverPoint &point) {
        const auto &number = point.limits.*member;
        return number ? exactText(*number) : QString();
    };
    return {
        QString::fromLatin1(field.name), {QString::fromLatin1(field.toolField).toLower()}, set, text, false};
}

QString setMode(const QString &text, ObserverPoint &point)
{
    const auto mode = readAltitudeMode(text);
    point.mode = mode.value_or(point.mode);
    return mode ? QString() : labelText({"MESS_OBS_MODE", "mode doit être Relative ou Absolute."});
}

QString setName(const QString &text, ObserverPoint &point)
{
    point.name = text.simplified();
    return {};
}

QString setEnabled(const QString &text, ObserverPoint &point)
{
    const auto on = readSwitch(text.toLower());
    point.enabled = on.value_or(point.enabled);
    return on ? QString() : switchProblem(QStringLiteral("enabled"), text);
}

/// All columns; the first six in the order of a text without a line of names.
QVector<Column> makeColumns()
{
    QVector<Column> columns{
        numberColumn("x", {"easting", "est", "lon", "long", "longitude"}, &ObserverPoint::x),
        numberColumn("y", {"northing", "nord", "lat", "latitude"}, &ObserverPoint::y),
        numberColumn("height", {"z", "hauteur", "altitude", "alt", "elevation"}, &ObserverPoint::height),
        {"mode",
         {"mode altitude", "altitude mode"},
         setMode,
         [](const ObserverPoint &point) { return altitudeModeText(point.mode); }},
        numberColumn("distance", {"max_dist", "dist. max.", "max. dist.", "radius2", "portée", "range"},
                     &ObserverPoint::maxDistance),
        {"name", {"nom", "label"}, setName, [](const ObserverPoint &point) { return point.name; }, false},
        {"enabled",
         {},
         setEnabled,
         [](const ObserverPoint &point) {
             return point.enabled ? QStringLiteral("true") : QStringLiteral("false");
         },
         false}};
    for (const LimitField &field : limitFields())
        columns += limitColumn(field);
    return columns;
}

const QVector<Column> &allColumns()
{
    static const QVector<Column> columns = makeColumns();
    return columns;
}

constexpr int unnamedCount = 6;

/// Which columns a text has, and what separates them.
struct Layout
{
    QVector<const Column *> columns; ///< null for a column that is skipped
    QChar separator;                 ///< null: the one that each line has
};

QChar separatorOf(const QString &line)
{
    for (const QChar separator : {QLatin1Char('\t'), QLatin1Char(';')}) {
        if (line.contains(separator))
            return separator;
    }
    return line.contains(QLatin1Char(' ')) || !line.contains(QLatin1Char(',')) ? QLatin1Char(' ')
                                                                               : QLatin1Char(',');
}

QStringList fieldsOf(const QString &line, QChar separator)
{
    static const QRegularExpression blanks(QStringLiteral(",?\\s+"));
    QStringList fields = separator == QLatin1Char(' ') ? line.trimmed().split(blanks, Qt::SkipEmptyParts)
                                                       : line.split(separator);
    for (QString &field : fields) {
        field = field.trimmed();
        if (field.size() >= 2 && field.startsWith(QLatin1Char('"')) && field.endsWith(QLatin1Char('"')))
            field = field.mid(1, field.size() - 2).trimmed();
    }
    return fields;
}

/// The layout that a line of names describes; nothing for a line that does not name both x and y.
std::optional<Layout> layoutOf(const QString &line)
{
    QHash<QString, const Column *> byName;
    for (const Column &column : allColumns()) {
        byName.insert(column.name.toLower(), &column);
        for (const QString &name : column.alsoNamed)
            byName.insert(name, &column);
    }
    // The names of a line such as "x, y, name" hold no blanks: its commas separate.
    const QChar found = separatorOf(line);
    const QChar separator =
        found == QLatin1Char(' ') && line.contains(QLatin1Char(',')) ? QLatin1Char(',') : found;
    Layout layout{{}, separator};
    for (const QString &name : fieldsOf(line, separator))
        layout.columns += byName.value(name.toLower());
    const bool hasPlace =
        layout.columns.contains(&allColumns().at(0)) && layout.columns.contains(&allColumns().at(1));
    return hasPlace ? std::optional(layout) : std::nullopt;
}

/// The layout of a text without a line of names.
Layout unnamedLayout()
{
    Layout layout;
    for (int at = 0; at < unnamedCount; ++at)
        layout.columns += &allColumns().at(at);
    return layout;
}

struct LineReading
{
    ObserverPoint point;
    QString problem;
};

/// The fields of a line as a message quotes them.
QString shortened(const QStringList &fields)
{
    constexpr int longest = 40; // characters
    const QString line = fields.join(QLatin1Char(' ')).simplified();
    return line.size() > longest ? line.left(longest) + QChar(0x2026) : line;
}

LineReading readFields(const QStringList &fields, const Layout &layout, const ObserverPoint &defaults)
{
    LineReading reading{defaults, {}};
    const auto missing = [&](int column) {
        const auto at = layout.columns.indexOf(&allColumns().at(column));
        return at >= fields.size() || fields.at(at).isEmpty();
    };
    if (missing(0) || missing(1))
        return {{}, labelText({"MESS_OBS_SANS_XY", "« %1 » n'a pas de x et y."}).arg(shortened(fields))};
    const bool tooMany = fields.size() > layout.columns.size();
    for (int at = 0; at < std::min(fields.size(), layout.columns.size()); ++at) {
        const Column *column = layout.columns.at(at);
        if (column && !fields.at(at).isEmpty() && reading.problem.isEmpty())
            reading.problem = column->set(fields.at(at), reading.point);
    }
    if (reading.problem.isEmpty() && tooMany)
        reading.problem = labelText({"MESS_OBS_TROP_COLONNES", "il y a trop de colonnes."});
    if (reading.problem.isEmpty())
        reading.problem = pointProblem(reading.point);
    return reading;
}

/// Fields that blanks separate, as many as a text without names has at most: the name is the rest of the line.
QStringList joinedName(QStringList fields)
{
    while (fields.size() > unnamedCount) {
        const QString last = fields.takeLast();
        fields.last() += QLatin1Char(' ') + last;
    }
    return fields;
}

LineReading readLine(const QString &line, const Layout &layout, const ObserverPoint &defaults)
{
    if (!layout.separator.isNull())
        return readFields(fieldsOf(line, layout.separator), layout, defaults);
    const QChar separator = separatorOf(line);
    if (separator == QLatin1Char(' '))
        return readFields(joinedName(fieldsOf(line, separator)), layout, defaults);
    const LineReading exact = readFields(fieldsOf(line, separator), layout, defaults);
    if (exact.problem.isEmpty())
        return exact;
    // A line that was typed may mix separators.
    static const QRegularExpression any(QStringLiteral("[\\s;]+"));
    const LineReading mixed = readFields(line.split(any, Qt::SkipEmptyParts), layout, defaults);
    return mixed.problem.isEmpty() ? mixed : exact;
}

} // namespace

PointLinesReading readPointLines(const QString &text, const ObserverPoint &defaults)
{
    PointLinesReading reading;
    const QStringList lines = text.split(QLatin1Char('\n'));
    std::optional<Layout> layout;
    for (int at = 0; at < lines.size(); ++at) {
        if (lines.at(at).trimmed().isEmpty())
            continue;
        if (!layout) {
            const auto named = layoutOf(lines.at(at));
            layout = named ? named : unnamedLayout();
            if (named)
                continue;
        }
        const LineReading one = readLine(lines.at(at), *layout, defaults);
        if (one.problem.isEmpty())
            reading.points += one.point;
        else
            reading.problems += {at + 1, one.problem};
    }
    return reading;
}

QString pointLines(const QList<ObserverPoint> &points)
{
    QVector<const Column *> columns;
    for (const Column &column : allColumns()) {
        const QString usual = column.text({});
        const auto isOther = [&](const ObserverPoint &point) { return column.text(point) != usual; };
        if (column.isAlwaysWritten || std::any_of(points.begin(), points.end(), isOther))
            columns += &column;
    }
    QString text;
    const auto addLine = [&](const auto &fieldOf) {
        for (int at = 0; at < columns.size(); ++at)
            text += (at > 0 ? QStringLiteral("\t") : QString()) + fieldOf(*columns.at(at));
        text += QLatin1Char('\n');
    };
    addLine([](const Column &column) { return column.name; });
    for (const ObserverPoint &point : points)
        addLine([&](const Column &column) { return column.text(point); });
    return text;
}
