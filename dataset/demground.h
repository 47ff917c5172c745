#pragma once

#include <QPointF>
#include <QSizeF>
#include <QString>

#include <array>
#include <memory>
#include <optional>

class GDALDataset;

/// Where a DEM lies, and its elevations cell by cell. Coordinates are the DEM's own: those of its CRS, or
/// columns and rows where it has no georeference.
class DemGround
{
public:
    DemGround() = default;

    /// band: from 1. The raster is opened for reading and nothing is written beside it.
    DemGround(const QString &path, int band);

    /// Whether it could be opened and its grid has an area.
    bool isOpen() const { return m_dataset != nullptr; }

    int width() const { return m_width; }
    int height() const { return m_height; }
    QString crs() const { return m_crs; } ///< as WKT; empty where it has none

    /// Whether it has coordinates of its own.
    bool isGeoreferenced() const { return m_georeferenced; }

    /// Whether its rows run northwards, as those of a DEM without georeference count.
    bool rowsRunNorth() const { return m_toGround[5] > 0.0; }
    bool columnsRunWest() const { return m_toGround[1] < 0.0; }

    /// Name of the unit of its coordinates, for display: "m", "°", "ft"; empty where it is unknown.
    QString unit() const;

    /// Metres on the ground of one unit of x and of y around a point; 1 where there is no CRS.
    QSizeF metresPerUnit(const QPointF &point) const;

    QPointF centre() const;

    /// Side of a cell in the DEM's unit, the smaller of both.
    double cellSize() const;

    bool holds(const QPointF &point) const;

    /// Of the cell under the point; none outside of the DEM and where there is no data.
    std::optional<double> elevation(const QPointF &point) const;

    /// Between coordinates and cells, which count columns and rows from the upper left corner; a cell's centre
    /// lies at the halves.
    QPointF toCells(const QPointF &point) const;
    QPointF toGround(const QPointF &cell) const;

private:
    std::shared_ptr<GDALDataset> m_dataset;
    int m_band = 1;
    int m_width = 0;
    int m_height = 0;
    bool m_georeferenced = false;
    QString m_crs;
    std::array<double, 6> m_toGround{};
    std::array<double, 6> m_toCells{};
};
