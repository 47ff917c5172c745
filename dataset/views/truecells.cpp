#include "dataset/views/truecells.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double pi = 3.14159265358979323846;

/// Metres in one radian of the parallel and of the meridian (Snyder 1987, Map Projections, 4-20 and 4-18).
QSizeF metresPerRadian(const DemFacts &facts, double latitude)
{
    const double square = facts.flattening * (2.0 - facts.flattening);
    const double sine = std::sin(latitude);
    const double denominator = 1.0 - square * sine * sine;
    const double normal = facts.semiMajor / std::sqrt(denominator);
    constexpr double leastCosine = 1e-6; // at the pole itself a parallel has no length
    return {normal * std::max(std::cos(latitude), leastCosine), normal * (1.0 - square) / denominator};
}

/// Metres in one unit of x and of y in a row.
QSizeF metresPerUnit(const DemFacts &facts, double row)
{
    if (facts.crs == DemCrs::Geographic) {
        const double y = facts.toGround[3] + facts.width / 2.0 * facts.toGround[4] + row * facts.toGround[5];
        return metresPerRadian(facts, std::clamp(y * facts.unit, -pi / 2.0, pi / 2.0)) * facts.unit;
    }
    if (facts.groundUnits.isEmpty() || facts.height == 0)
        return {facts.unit, facts.unit};
    const int last = static_cast<int>(facts.groundUnits.size()) - 1;
    const double place = std::clamp(row / facts.height, 0.0, 1.0) * last;
    const int before = std::min(static_cast<int>(place), last - 1);
    const double part = place - before;
    return facts.groundUnits.at(before) * (1.0 - part) + facts.groundUnits.at(before + 1) * part;
}

/// The greatest share by which a strip's cells differ from those of its middle row.
double deviation(const DemFacts &facts, const RowStrip &strip)
{
    const QSizeF middle = trueCell(facts, middleRow(strip));
    double most = 0.0;
    for (const double row : {strip.first + 0.5, strip.first + strip.count - 0.5}) {
        const QSizeF cell = trueCell(facts, row);
        most = std::max({most, std::abs(cell.width() / middle.width() - 1.0),
                         std::abs(cell.height() / middle.height() - 1.0)});
    }
    return most;
}

/// Most rows of a strip whatever its cells.
int mostRows(const DemFacts &facts)
{
    if (facts.crs != DemCrs::Geographic)
        return std::max(1, facts.height);
    constexpr double highest = 2.0 * pi / 180.0;
    const double rows = highest / std::max(std::abs(facts.toGround[5] * facts.unit), 1e-12);
    return static_cast<int>(
        std::clamp(std::floor(rows), 1.0, std::max(1.0, static_cast<double>(facts.height))));
}

QVector<RowStrip> strips(const DemFacts &facts, double tolerance, int most)
{
    QVector<RowStrip> found;
    for (int first = 0; first < facts.height; first += found.last().count) {
        int fits = 1;
        int tooMany = std::min(most, facts.height - first) + 1;
        while (tooMany - fits > 1) {
            const int count = fits + (tooMany - fits) / 2;
            (deviation(facts, {first, count}) <= tolerance ? fits : tooMany) = count;
        }
        found += {first, fits};
    }
    return found;
}

} // namespace

QSizeF trueCell(const DemFacts &facts, double row)
{
    const QSizeF unit = metresPerUnit(facts, row);
    const auto &toGround = facts.toGround;
    return {std::hypot(toGround[1] * unit.width(), toGround[4] * unit.height()),
            std::hypot(toGround[2] * unit.width(), toGround[5] * unit.height())};
}

bool areCellsSquare(const DemFacts &facts)
{
    constexpr double negligible = 0.001;
    const auto isSquare = [&](double row) {
        const QSizeF cell = trueCell(facts, row);
        return std::abs(cell.width() / cell.height() - 1.0) <= negligible;
    };
    return isSquare(0.5) && isSquare(facts.height / 2.0) && isSquare(facts.height - 0.5);
}

double middleRow(const RowStrip &strip)
{
    return strip.first + strip.count / 2.0;
}

QVector<RowStrip> rowStrips(const DemFacts &facts, double tolerance)
{
    constexpr int mostStrips = 256;
    int most = mostRows(facts);
    QVector<RowStrip> found = strips(facts, tolerance, most);
    while (found.size() > mostStrips) {
        tolerance *= 1.5;
        most = std::min(facts.height, most + most / 2 + 1);
        found = strips(facts, tolerance, most);
    }
    // Strips of one height each rather than a low rest at the end.
    const int count = static_cast<int>(found.size());
    const int height = (facts.height + count - 1) / std::max(1, count);
    QVector<RowStrip> even;
    for (int first = 0; first < facts.height; first += height)
        even += {first, std::min(height, facts.height - first)};
    const bool isAsExact = std::all_of(
        even.begin(), even.end(), [&](const RowStrip &strip) { return deviation(facts, strip) <= tolerance; });
    return isAsExact ? even : found;
}
