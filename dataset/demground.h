#pragma once

#include <QPointF>
#include <QSizeF>
#include <QString>

#include <array>
#include <memory>
#include <optional>

class GDALDataset;

/// The grid of a DEM: its georeference, and its elevations cell by cell. Coordinates are the DEM's own: x and y
/// of its CRS (longitude and latitude in a geographic one), or columns and rows where it has no georeference.
class DemGround
{
public:
    DemGround() = default;

    /// Opens the raster for reading; nothing is written beside it. band: from 1.
    DemGround(const QString &path, int band);

    /// Whether the raster could be opened, has the band, and its cells have an area.
    bool isOpen() const { return m_dataset != nullptr; }

    int width() const { return m_width; }
    int height() const { return m_height; }
    QString crs() const { return m_crs; } ///< as WKT; empty without a CRS

    /// Whether the file has a georeference.
    bool isGeoreferenced() const { return m_georeferenced; }

    /// Whether y grows from one row to the next. It does so in a DEM without georeference, where y is the row.
    bool rowsRunNorth() const { return m_toGround[5] > 0.0; }
    /// Whether x falls from one column to the next.
    bool columnsRunWest() const { return m_toGround[1] < 0.0; }

    /// The unit of the coordinates, for display: "m", "°", "ft"; empty when it is another or unknown.
    QString unit() const;

    /// The unit of the elevations, for display: "m", "ft"; empty when it is another or unknown.
    QString elevationUnit() const;

    /// Ground length in metres of one unit of x and of one unit of y around a point; 1 without a CRS.
    QSizeF metresPerUnit(const QPointF &point) const;

    /// Coordinates of the middle of the grid.
    QPointF centre() const;

    /// The shorter side of a cell, in the unit of the coordinates.
    double cellSize() const;

    /// Whether the point lies within the grid; false for a DEM that is not open.
    bool holds(const QPointF &point) const;

    /// Elevation of the cell under the point, in the unit of the band. Nothing outside the grid, where the cell
    /// has no data, and where it cannot be read.
    std::optional<double> elevation(const QPointF &point) const;

    /// Elevation of the surface under the point: interpolated linearly between the centres of the four cells
    /// around it, in the unit of the band. Beyond the outermost centres the surface is level across the edge.
    /// Where one of the four cells has no data it is the elevation of the cell under the point.
    std::optional<double> surfaceElevation(const QPointF &point) const;

    /// Convert between coordinates and cells. Cells count columns and rows from the upper left corner; the
    /// centre of the first cell is (0.5, 0.5).
    QPointF toCells(const QPointF &point) const;
    QPointF toGround(const QPointF &cell) const;

private:
    /// Elevations of a window of at most four cells, row by row; nothing for a cell without data, and for all
    /// of them where the window cannot be read.
    std::array<std::optional<double>, 4> readCells(int column, int row, int columns, int rows) const;

    std::shared_ptr<GDALDataset> m_dataset;
    int m_band = 1;
    int m_width = 0;
    int m_height = 0;
    bool m_georeferenced = false;
    QString m_crs;
    std::array<double, 6> m_toGround{};
    std::array<double, 6> m_toCells{};
};
