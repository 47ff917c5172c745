#include "panels/options/contours/contourlevels.h"

#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <functional>

namespace
{

constexpr double smallestInterval = 0.001; // the field accepts three decimals

}

double levelCount(const Extremes &extremes, double interval, double offset)
{
    if (!extremes.known || !(interval > 0.0) || !std::isfinite(interval) || !std::isfinite(offset))
        return 0.0;
    const double first = std::ceil((extremes.minimum - offset) / interval);
    const double last = std::floor((extremes.maximum - offset) / interval);
    return std::max(0.0, last - first + 1.0);
}

std::optional<double> roundInterval(const Extremes &extremes)
{
    constexpr double wanted = 20.0;
    if (!extremes.known || !(extremes.maximum > extremes.minimum))
        return std::nullopt;
    const double exact = (extremes.maximum - extremes.minimum) / wanted;
    const double decade = std::pow(10.0, std::floor(std::log10(exact)));
    double best = decade;
    for (const double step : {2.0, 5.0, 10.0}) {
        if (std::abs(std::log(step * decade / exact)) < std::abs(std::log(best / exact)))
            best = step * decade;
    }
    return std::max(best, smallestInterval);
}

double finerInterval(double interval)
{
    constexpr double tolerance = 1e-6;
    const double decade = std::pow(10.0, std::floor(std::log10(interval) + tolerance));
    const double digit = std::round(interval / decade);
    const double finer = digit == 5.0 ? 2.0 * decade : interval / 2.0;
    return std::max(finer, smallestInterval);
}

std::optional<QVector<double>> readLevels(const QString &text)
{
    QVector<double> levels;
    for (const QString &word : text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        bool isNumber = false;
        const double level = word.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(level))
            return std::nullopt;
        levels += level;
    }
    return levels;
}

bool levelsAscend(const QVector<double> &levels)
{
    return std::adjacent_find(levels.begin(), levels.end(), std::greater_equal<>()) == levels.end();
}

QString sortedLevels(const QString &text)
{
    if (!readLevels(text))
        return text;
    QStringList words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    std::stable_sort(words.begin(), words.end(), [](const QString &one, const QString &other) {
        return one.toDouble() < other.toDouble();
    });
    const auto end = std::unique(words.begin(), words.end(), [](const QString &one, const QString &other) {
        return one.toDouble() == other.toDouble();
    });
    words.erase(end, words.end());
    return words.join(QLatin1Char(' '));
}

bool hasBothLevels(const ContourOptions &options)
{
    return options.interval && *options.interval > 0.0 && readLevels(options.fixedLevels)
        && !options.fixedLevels.trimmed().isEmpty();
}

Extremes widened(Extremes extremes)
{
    if (extremes.exact || !extremes.known)
        return extremes;
    const double margin = (extremes.maximum - extremes.minimum) / 2.0;
    extremes.minimum -= margin;
    extremes.maximum += margin;
    return extremes;
}

namespace
{

/// The numbers of the options as the tool would receive them.
double interval(const ContourOptions &options)
{
    return toolNumber(options.interval.value_or(0.0)).toDouble();
}

double offset(const ContourOptions &options)
{
    return toolNumber(options.offset.value_or(0.0)).toDouble();
}

/// Number of levels of the interval and of the text together, at most.
double mergedCount(const ContourOptions &options, const Extremes &extremes)
{
    return levelCount(extremes, interval(options), offset(options))
        + static_cast<double>(readLevels(options.fixedLevels).value_or(QVector<double>()).size());
}

} // namespace

QString mergedLevels(const ContourOptions &options, const Extremes &extremes)
{
    if (!hasBothLevels(options) || !extremes.known || mergedCount(options, extremes) > mostLevels)
        return {};
    constexpr int digits = 15; // without those of the rounding of sums
    const double step = interval(options);
    QString text = options.fixedLevels;
    const double first = std::ceil((extremes.minimum - offset(options)) / step);
    const double last = std::floor((extremes.maximum - offset(options)) / step);
    for (double at = first; at <= last; at += 1.0) {
        const double level = offset(options) + at * step;
        text += QLatin1Char(' ') + QString::number(level == 0.0 ? 0.0 : level, 'g', digits);
    }
    return sortedLevels(text);
}

int newLevels(const ContourOptions &options, const Extremes &extremes)
{
    if (!hasBothLevels(options))
        return 0;
    constexpr double tolerance = 1e-9; // of a step
    int count = 0;
    for (const double level : readLevels(options.fixedLevels).value_or(QVector<double>())) {
        const double steps = (level - offset(options)) / interval(options);
        if (level >= extremes.minimum && level <= extremes.maximum
            && std::abs(steps - std::round(steps)) > tolerance)
            ++count;
    }
    return count;
}

QString mergedLevelsProblem(const ContourOptions &options, const Extremes &extremes)
{
    if (hasBothLevels(options) && options.everyValueValid)
        return labelText(
            {"MESS_CN_DEUX_TOUT",
             "Quand toutes les valeurs sont valides, l'intervalle et les valeurs spécifiques ne vont "
             "pas ensemble : effacez l'un des deux."});
    if (!hasBothLevels(options) || mergedCount(options, extremes) <= mostLevels)
        return {};
    return labelText(
               {"MESS_CN_DEUX_TROP",
                "L'intervalle et les valeurs spécifiques donnent ensemble %1 niveaux ; l'outil n'en prend "
                "pas plus de %2. Agrandissez l'intervalle ou effacez l'un des deux."})
        .arg(shownNumber(mergedCount(options, extremes), 'f', 0), QString::number(mostLevels));
}

QString levelsProblem(const QString &text)
{
    const auto levels = readLevels(text);
    if (!levels || (levels->isEmpty() && !text.isEmpty()))
        return labelText({"MESS_CN_VAL_INVALIDE",
                          "Les valeurs spécifiques doivent être des nombres séparés par des espaces."});
    if (levels->size() > mostLevels)
        return labelText({"MESS_CN_VAL_TROP", "L'outil ne prend pas plus de %1 valeurs spécifiques."})
            .arg(mostLevels);
    if (!levelsAscend(*levels))
        return labelText({"MESS_CN_VAL_ORDRE", "Les valeurs spécifiques doivent augmenter, chacune une fois."});
    return {};
}

QStringList roundedNumberWarnings(const ContourOptions &options)
{
    QStringList warnings;
    for (const auto &number : {options.interval, options.offset}) {
        if (number && toolNumber(*number).toDouble() != *number)
            warnings += labelText({"MESS_CN_ARRONDI", "L'outil reçoit %1 au lieu de %2."})
                            .arg(toolNumber(*number), QString::number(*number, 'g', 17));
    }
    return warnings;
}

QString ignoredValueProblem(const ContourOptions &options)
{
    if (options.everyValueValid || !options.noDataValue
        || toolNumber(*options.noDataValue).toDouble() == *options.noDataValue)
        return {};
    return labelText(
               {"MESS_CN_IGNORE_ARR",
                "La valeur à ignorer %1 ne peut pas être transmise : l'outil recevrait %2, qui n'est celle "
                "d'aucune cellule."})
        .arg(QString::number(*options.noDataValue, 'g', 17), toolNumber(*options.noDataValue));
}

QStringList manyLevelsWarnings(const ContourOptions &options, const Extremes &extremes)
{
    constexpr double many = 2000.0;
    if (!options.interval || !options.fixedLevels.isEmpty())
        return {};
    const double levels = levelCount(extremes, *options.interval, options.offset.value_or(0.0));
    if (levels <= many)
        return {};
    return {labelText({"MESS_CN_TROP",
                       "Cet intervalle donne environ %1 niveaux sur ce MNT ; le fichier pourrait être énorme."})
                .arg(shownNumber(levels, 'f', 0))};
}
