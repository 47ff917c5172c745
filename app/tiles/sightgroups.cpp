#include "app/tiles/sightgroups.h"

#include "app/recipe/observerfile.h"
#include "messages/label.h"

#include <algorithm>
#include <cmath>

namespace
{

/// The tile under the observer, or the nearest one.
qint64 tileUnder(const ObserverPoint &observer, const TileGrid &grid, const DemGround &dem)
{
    const QPointF cell = dem.toCells(observer.position());
    const auto index = [&grid](double at, int tiles) {
        return static_cast<qint64>(std::clamp(std::floor(at / grid.side), 0.0, tiles - 1.0));
    };
    return index(cell.y(), grid.rows()) * grid.columns() + index(cell.x(), grid.columns());
}

} // namespace

QRect reachedCells(const ObserverPoint &observer, const DemGround &dem)
{
    const QRect all(0, 0, dem.width(), dem.height());
    if (observer.maxDistance <= 0.0)
        return all;
    constexpr double margin = 2.0;
    const QPointF centre = dem.toCells(observer.position());
    const QSizeF metres = dem.metresPerUnit(observer.position());
    const QPointF east = dem.toCells(observer.position() + QPointF(1.0, 0.0)) - centre; // cells of a unit of x
    const QPointF north = dem.toCells(observer.position() + QPointF(0.0, 1.0)) - centre;
    const double unitsX = observer.maxDistance / metres.width();
    const double unitsY = observer.maxDistance / metres.height();
    const double columns = std::abs(east.x()) * unitsX + std::abs(north.x()) * unitsY + margin;
    const double rows = std::abs(east.y()) * unitsX + std::abs(north.y()) * unitsY + margin;
    const auto edge = [](double at, int size) { return static_cast<int>(std::clamp(at, -1.0, size + 1.0)); };
    const QRect reached(QPoint(edge(std::floor(centre.x() - columns), all.width()),
                               edge(std::floor(centre.y() - rows), all.height())),
                        QPoint(edge(std::ceil(centre.x() + columns), all.width()),
                               edge(std::ceil(centre.y() + rows), all.height())));
    return reached & all;
}

void groupObservers(TilePlan &plan, const DemGround &dem)
{
    auto &options = std::get<IntervisibilityOptions>(plan.recipe.options);
    struct Placed
    {
        qint64 tile;
        QRect window;
        ObserverPoint observer;
    };
    std::vector<Placed> placed;
    for (const ObserverPoint &observer : qAsConst(options.observers)) {
        const QRect window = reachedCells(observer, dem);
        if (!window.isEmpty())
            placed.push_back({tileUnder(observer, plan.grid, dem), window, observer});
    }
    std::stable_sort(placed.begin(), placed.end(),
                     [](const Placed &one, const Placed &other) { return one.tile < other.tile; });
    options.observers.clear();
    for (const Placed &each : placed) {
        if (plan.groups.isEmpty() || plan.groups.last().tile != each.tile)
            plan.groups += {each.tile, static_cast<int>(options.observers.size()), 0, {}};
        SightGroup &group = plan.groups.last();
        ++group.count;
        group.window |= each.window;
        options.observers += each.observer;
    }
}

ObserverReading holdObserversByValue(IntervisibilityOptions &options, const DemGround &dem)
{
    ObserverReading reading;
    const SourceObservers source = sourceObservers(options, dem);
    reading.problem = source.problem;
    int leftOut = source.skippedFeatures;
    QList<ObserverPoint> observers;
    for (const ObserverPoint &point : options.observers + source.points) {
        if (toolObserver(point, {}, dem.surfaceElevation(point.position())))
            observers += point;
        else
            leftOut += point.enabled;
    }
    options.observers = observers;
    options.points.clear();
    options.pointsLayer.clear();
    if (reading.problem.isEmpty() && observers.isEmpty())
        reading.problem =
            labelText({"MESS_OBS_NUL_PART", "Aucun observateur ne se trouve sur le sol de ce MNT."});
    if (leftOut > 0)
        reading.warnings +=
            labelText({"MESS_OBS_LAISSES", "Observateurs ignorés, faute de sol ou de position : %1."})
                .arg(leftOut);
    return reading;
}
