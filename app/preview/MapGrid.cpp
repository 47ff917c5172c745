#include "app/preview/MapGrid.h"

#include "dataset/views/truecells.h"

MapGrid::MapGrid(const QString &path, int band)
    : m_ground(path, band)
    , m_facts(readDemFacts(path, band))
    , m_mirroring(m_ground.isGeoreferenced()
                      ? Mirroring{.columns = m_ground.columnsRunWest(), .rows = m_ground.rowsRunNorth()}
                      : Mirroring())
{ }

QPointF MapGrid::toGround(const QPointF &cell) const
{
    return m_ground.toGround(mirrored(cell, size(), m_mirroring));
}

QPointF MapGrid::toCells(const QPointF &ground) const
{
    return mirrored(m_ground.toCells(ground), size(), m_mirroring);
}

QRect MapGrid::otherSide(const QRect &part) const
{
    return mirrored(part, size(), m_mirroring);
}

QSizeF MapGrid::cellMetres(const QPointF &cell) const
{
    return trueCell(m_facts, mirrored(cell, size(), m_mirroring).y());
}

std::function<double(int)> MapGrid::pixelArea(const QRect &part, const QSize &pixels) const
{
    if (!isScaleKnown() || pixels.isEmpty())
        return {};
    return [this, part, pixels](int row) {
        const double rows = static_cast<double>(part.height()) / pixels.height();
        const double columns = static_cast<double>(part.width()) / pixels.width();
        const QSizeF cell = cellMetres({QRectF(part).center().x(), part.top() + (row + 0.5) * rows});
        return cell.width() * columns * cell.height() * rows;
    };
}

std::array<double, 6> pixelsToGround(const std::function<QPointF(const QPointF &)> &toGround, const QRect &part,
                                     const QSize &pixels)
{
    const QPointF origin = toGround(part.topLeft());
    const QPointF right = toGround(part.topLeft() + QPointF(part.width(), 0.0)) - origin;
    const QPointF down = toGround(part.topLeft() + QPointF(0.0, part.height())) - origin;
    return {origin.x(), right.x() / pixels.width(), down.x() / pixels.height(),
            origin.y(), right.y() / pixels.width(), down.y() / pixels.height()};
}
