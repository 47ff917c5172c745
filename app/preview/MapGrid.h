#pragma once

#include "app/preview/previewgeometry.h"
#include "dataset/demground.h"
#include "dataset/views/demfacts.h"

#include <functional>

/// The grid of a raster as a map shows it, with north above and west at the left. Cells are those of the map,
/// where nothing else is said; "ground" are coordinates of the raster.
class MapGrid
{
public:
    MapGrid() = default;
    /// Opens the raster for reading. band: from 1.
    MapGrid(const QString &path, int band);

    bool isOpen() const { return m_ground.isOpen(); }
    const DemGround &ground() const { return m_ground; }
    QSize size() const { return {m_ground.width(), m_ground.height()}; }

    /// The sides that the raster's rows and columns have the other way round.
    const Mirroring &mirroring() const { return m_mirroring; }

    /// Whether the rows do not run from west to east.
    bool isRotated() const { return m_facts.toGround[2] != 0.0 || m_facts.toGround[4] != 0.0; }

    QPointF toGround(const QPointF &cell) const;
    QPointF toCells(const QPointF &ground) const;
    /// The part of the raster for a part of the map, and the other way round.
    QRect otherSide(const QRect &part) const;

    /// Width and height of the cells around a place on the ground, in metres, also where a projection distorts;
    /// in units of the coordinates where their length is not known.
    QSizeF cellMetres(const QPointF &cell) const;
    /// Whether the length of a unit of the coordinates is known.
    bool isScaleKnown() const { return m_facts.crs != DemCrs::None; }

    /// Area in square metres of a pixel of a picture of `pixels` that shows `part`, by the picture's row; not
    /// callable where the length of a unit is not known. The function must not outlive the grid.
    std::function<double(int row)> pixelArea(const QRect &part, const QSize &pixels) const;

private:
    DemGround m_ground;
    DemFacts m_facts;
    Mirroring m_mirroring;
};

/// The affine transform, in GDAL's order, from the pixels of a picture to ground coordinates. The picture has
/// the size `pixels` and shows the map's cells `part`; `toGround` converts a cell of the map to ground
/// coordinates.
std::array<double, 6> pixelsToGround(const std::function<QPointF(const QPointF &)> &toGround, const QRect &part,
                                     const QSize &pixels);
