#include "viewshed/io/skylinepoints.h"

#include <cmath>

namespace viewshed
{

namespace
{

/// Collects the points of one observer.
class Points
{
public:
    Points(const ObserverHorizon &horizon, const Georeference &georeference)
        : m_horizon(horizon)
        , m_georeference(georeference)
    { }

    void add(const HorizonPoint &point, bool startsAnew)
    {
        const FieldOfView &field = m_horizon.sight.field;
        if (!field.holdsAzimuth(point.azimuth)) {
            addGap();
            return;
        }
        const auto [x, y] = m_georeference.coordinatesOf(
            {.column = point.column + m_horizon.left, .row = point.row + m_horizon.top});
        m_points.push_back({.azimuth = point.azimuth,
                            .angle = point.angle,
                            .distance = point.distance,
                            .x = x,
                            .y = y,
                            .z = point.z,
                            .startsAnew = startsAnew || m_gap});
        m_gap = false;
    }
    void addGap() { m_gap = true; }
    std::vector<SkylinePoint> result()
    {
        if (m_gap && !m_points.empty())
            m_points.front().startsAnew = true;
        return std::move(m_points);
    }

private:
    const ObserverHorizon &m_horizon;
    const Georeference &m_georeference;
    std::vector<SkylinePoint> m_points;
    bool m_gap = false;
};

} // namespace

std::vector<SkylinePoint> skylinePoints(const ObserverHorizon &horizon, double step,
                                        const Georeference &georeference)
{
    Points points(horizon, georeference);
    if (step <= 0.0) {
        for (const HorizonLine::Breakpoint &point : horizon.line.breakpoints())
            points.add(point, point.startsAnew);
        return points.result();
    }
    constexpr double circle = 360.0;
    constexpr double rounding = 1e-9; // of the quotient, if the step divides the circle
    const int count = static_cast<int>(std::ceil(circle / step - rounding));
    for (int index = 0; index < count; ++index) {
        if (const auto point = horizon.line.at(index * step))
            points.add(*point, false);
        else
            points.addGap();
    }
    return points.result();
}

} // namespace viewshed
