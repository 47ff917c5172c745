#pragma once

#include "panels/options/observerpoints.h"
#include "viewshed/bitgrid.h"
#include "viewshed/io/georeference.h"
#include "viewshed/io/observersight.h"
#include "viewshed/sweep/blockmaxima.h"

#include <QPointF>
#include <QString>

#include <memory>

/// The cells of a reduced copy as plain arrays, which any thread may read.
struct LiveGround
{
    viewshed::Terrain terrain;
    viewshed::BlockMaxima maxima;
    viewshed::BitGrid voids; ///< 1 for each cell without data
};

struct LiveTerrainReading;

/// A reduced copy of a DEM in memory, with its georeference. Only ground() may be shared with another thread:
/// the georeference holds objects of GDAL.
///
/// A position in cells has its origin (0, 0) at the centre of the upper left cell, as in `viewshed/`. Heights
/// and altitudes are in the DEM's vertical unit.
class LiveTerrain
{
public:
    /// Reads a band (from 1) of a raster as the viewshed tool reads it, in the calling thread, and closes the
    /// file again. All cells are in memory afterwards: meant for copies of about a million cells.
    static LiveTerrainReading read(const QString &copy, int band);

    std::shared_ptr<const LiveGround> ground() const { return m_ground; }
    int width() const { return m_ground->terrain.width(); }
    int height() const { return m_ground->terrain.height(); }

    /// Position in cells of a point in the DEM's coordinates, and the other way round. Both may lie outside.
    QPointF toCells(const QPointF &point) const;
    QPointF toGround(const QPointF &cell) const;

    /// The sight of an observer in exactly the numbers that reach the tool. `options` are those of
    /// toolOptions(). Throws viewshed::Problem where the tool refuses the observer.
    viewshed::Sight sight(const ToolObserver &observer, const viewshed::SightOptions &options) const;

private:
    LiveTerrain(std::shared_ptr<const LiveGround> ground, viewshed::Georeference georeference,
                double metresOfHeight);

    std::shared_ptr<const LiveGround> m_ground;
    viewshed::Georeference m_georeference;
    double m_metresOfHeight;
};

/// A copy that was read.
struct LiveTerrainReading
{
    std::shared_ptr<const LiveTerrain> terrain; ///< null if there is a problem
    QString problem; ///< why the copy cannot be used, in an English sentence of the tool; empty otherwise
};
