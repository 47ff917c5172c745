#include "colortable/formats/tableparts.h"

#include "messages/label.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/// Whether the straight line between two colours passes within one level of a third at its middle.
bool isStraight(const QColor &from, const QColor &middle, const QColor &to)
{
    const auto fits = [](int first, int between, int last) {
        return std::abs(first + last - 2 * between) <= 2;
    };
    return fits(from.red(), middle.red(), to.red()) && fits(from.green(), middle.green(), to.green())
        && fits(from.blue(), middle.blue(), to.blue()) && fits(from.alpha(), middle.alpha(), to.alpha());
}

} // namespace

ColorTableReading foreignReading(const QString &format)
{
    ColorTableReading reading;
    reading.format = format;
    reading.plain = false;
    return reading;
}

void refuseLine(ColorTableReading &reading, int line, const QString &why)
{
    refuse(reading, labelText({"MESS_TF_LIGNE", "Ligne %1 : %2"}).arg(QString::number(line), why));
}

void refuse(ColorTableReading &reading, const QString &why)
{
    if (reading.problem.isEmpty())
        reading.problem = why;
}

QString notANumber(const QString &text)
{
    return labelText({"MESS_TF_NOMBRE", "« %1 » n'est pas un nombre utilisable ici."}).arg(text);
}

QString notAColor(const QString &text)
{
    return labelText({"MESS_TF_COULEUR", "« %1 » n'est pas une couleur."}).arg(text);
}

QString notSupported(const QString &text)
{
    return labelText({"MESS_TF_INCONNU", "« %1 » n'est pas pris en charge."}).arg(text);
}

QString badCount(int announced, int found)
{
    return labelText({"MESS_TF_COMPTE", "Le fichier annonce %1 couleurs et en contient %2."})
        .arg(QString::number(announced), QString::number(found));
}

QString badFields()
{
    return labelText({"MESS_TF_CHAMPS", "le nombre de champs ne convient pas à ce format."});
}

std::optional<double> finiteNumber(const QString &text)
{
    constexpr double largest = 1e37; // its neighbours are 32-bit numbers too
    bool isNumber = false;
    const double number = text.trimmed().toDouble(&isNumber);
    if (!isNumber || !(std::abs(number) <= largest))
        return std::nullopt;
    return number;
}

std::optional<int> levelOf(const QString &text)
{
    bool isNumber = false;
    const int level = text.trimmed().toInt(&isNumber);
    return isNumber && level >= 0 && level <= 255 ? std::optional<int>(level) : std::nullopt;
}

QColor colorOfLevels(const QStringList &levels)
{
    int components[] = {0, 0, 0, 255};
    if (levels.size() < 3 || levels.size() > 4)
        return {};
    for (int at = 0; at < levels.size(); ++at) {
        const std::optional<int> level = levelOf(levels.at(at));
        if (!level)
            return {};
        components[at] = *level;
    }
    return {components[0], components[1], components[2], components[3]};
}

QColor colorOfParts(double red, double green, double blue, double alpha)
{
    const auto level = [](double part) { return qRound(std::clamp(part, 0.0, 1.0) * 255.0); };
    return {level(red), level(green), level(blue), level(alpha)};
}

QColor colorOfHsv(double hue, double saturation, double value, double alpha)
{
    const auto component = [&](double turn) {
        const double sector = std::fmod(std::fmod(turn + hue / 60.0, 6.0) + 6.0, 6.0);
        return value - value * saturation * std::clamp(std::min(sector, 4.0 - sector), 0.0, 1.0);
    };
    return colorOfParts(component(5.0), component(3.0), component(1.0), alpha);
}

double nextAbove(double value)
{
    constexpr float smallest = 1e-30F;
    const auto number = static_cast<float>(value);
    if (std::abs(number) < smallest)
        return static_cast<double>(smallest);
    return static_cast<double>(number) > value
        ? static_cast<double>(number)
        : static_cast<double>(std::nextafter(number, std::numeric_limits<float>::infinity()));
}

void addPoint(QList<QuvoColorDef> &entries, double value, const QColor &color, bool percent)
{
    const QuvoColorDef entry{value, color, percent};
    if (entries.isEmpty() || !(entries.last() == entry))
        entries += entry;
}

void addCurve(QList<QuvoColorDef> &entries, double from, double to, bool percent,
              const std::function<QColor(double)> &curve)
{
    constexpr int fewest = 2; // halvings at least: the middle alone may lie on the line by chance
    constexpr int most = 8;
    const std::function<void(double, double, int)> halve = [&](double first, double last, int depth) {
        const double middle = (first + last) / 2.0;
        if (depth < fewest || (depth < most && !isStraight(curve(first), curve(middle), curve(last)))) {
            halve(first, middle, depth + 1);
            halve(middle, last, depth + 1);
        } else {
            addPoint(entries, from + last * (to - from), curve(last), percent);
        }
    };
    addPoint(entries, from, curve(0.0), percent);
    halve(0.0, 1.0, 0);
}

double boundValue(double value)
{
    return value == QuvoColorDef::noDataValue ? nextAbove(value) : value;
}

void addSteps(QList<QuvoColorDef> &entries, const QVector<double> &bounds, const QVector<QColor> &colors,
              bool boundBelongsBelow)
{
    if (bounds.isEmpty())
        addPoint(entries, 0.0, colors.first());
    for (int at = 0; at < bounds.size(); ++at) {
        const double edge = boundBelongsBelow ? nextAbove(bounds.at(at)) : boundValue(bounds.at(at));
        addPoint(entries, edge, colors.at(at));
        addPoint(entries, edge, colors.at(at + 1));
    }
}

void addExactColors(ColorTableReading &reading, const QList<QuvoColorDef> &colors)
{
    QList<QuvoColorDef> sorted = colors;
    sortByValue(sorted);
    for (const QuvoColorDef &exact : sorted) {
        const auto cell = static_cast<double>(static_cast<float>(boundValue(exact.value)));
        if (!reading.entries.isEmpty() && cell < reading.entries.last().value)
            continue; // the second colour of this value
        addPoint(reading.entries, cell, Qt::transparent);
        addPoint(reading.entries, cell, exact.color);
        addPoint(reading.entries, nextAbove(cell), exact.color);
        addPoint(reading.entries, nextAbove(cell), Qt::transparent);
    }
    reading.categories = true;
    reading.notes += labelText({"MESS_TF_EXACT",
                                "Chaque couleur ne vaut que pour sa valeur exacte : les autres cellules sont "
                                "transparentes."});
}

void addEvenColors(ColorTableReading &reading, const QVector<QColor> &colors)
{
    for (int at = 0; at < colors.size(); ++at)
        reading.entries +=
            {at * 100.0 / qMax<int>(1, static_cast<int>(colors.size()) - 1), colors.at(at), true};
    reading.notes += labelText({"MESS_TF_REGULIER",
                                "Ce fichier n'a pas d'altitudes : ses couleurs sont réparties régulièrement "
                                "sur celles du MNT."});
}

void addOutside(QList<QuvoColorDef> &entries, const QColor &below, const QColor &above)
{
    const QuvoColorDef first = entries.first();
    const QuvoColorDef last = entries.last();
    if (below.isValid() && below != first.color)
        entries.prepend({first.value, below, first.percent});
    if (!above.isValid() || above == last.color || (last.percent && last.value >= 100.0))
        return;
    addPoint(entries, nextAbove(last.value), last.color, last.percent);
    addPoint(entries, nextAbove(last.value), above, last.percent);
}
