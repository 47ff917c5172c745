#include "app/preview/LiveCopy.h"

void LiveCopy::set(const QString &copy, int band, const DemGround &dem)
{
    m_copy = copy;
    m_band = band;
    m_dem = dem;
    m_ground = DemGround();
    m_terrain.reset();
    m_isRead = false;
}

const LiveTerrain *LiveCopy::terrain()
{
    if (!m_isRead && !m_copy.isEmpty()) {
        m_terrain = LiveTerrain::read(m_copy, m_band).terrain;
        m_ground = DemGround(m_copy, m_band);
        m_isRead = true;
    }
    return m_terrain.get();
}

QList<ToolObserver> LiveCopy::observers(const QList<ObserverPoint> &points)
{
    terrain(); // opens the copy's ground
    QList<ToolObserver> observers;
    for (const ObserverPoint &point : points) {
        const auto observer = toolObserver(point, m_ground.surfaceElevation(point.position()),
                                           m_dem.surfaceElevation(point.position()));
        if (observer)
            observers += *observer;
    }
    return observers;
}
