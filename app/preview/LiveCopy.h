#pragma once

#include "app/preview/live/LiveTerrain.h"
#include "dataset/demground.h"
#include "panels/options/observerpoints.h"

#include <memory>
#include <optional>

/// The reduced copy that the map shows, in memory for computations that follow the mouse. It is read when it is
/// first needed.
class LiveCopy
{
public:
    /// Another copy, or none (an empty path). dem: the DEM's own ground.
    void set(const QString &copy, int band, const DemGround &dem);

    /// The terrain; null where there is no copy or it cannot be read.
    const LiveTerrain *terrain();

    /// The observers that the tool would get of these points.
    QList<ToolObserver> observers(const QList<ObserverPoint> &points);

private:
    QString m_copy;
    int m_band = 1;
    DemGround m_dem;    ///< the ground of the DEM itself
    DemGround m_ground; ///< the ground of the copy
    bool m_isRead = false;
    std::shared_ptr<const LiveTerrain> m_terrain;
};
