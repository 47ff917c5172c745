#pragma once

#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <optional>

// What rasters must have in common to be tiles of one DEM.

/// A raster as a tile: the properties that a mosaic takes from its first tile and expects of every other one.
struct Tile
{
    QString path; ///< as GDAL opens it
    int width = 0;
    int height = 0;
    std::array<double, 6> toGround{}; ///< GDAL's transform from cells to coordinates
    bool georeferenced = false;
    QString crs;                           ///< as WKT; empty without a CRS
    QStringList types;                     ///< GDAL's name of each band's type, such as "Int16"
    QVector<std::optional<double>> noData; ///< of each band; nothing where none is declared
    QStringList
        units; ///< in which each band holds its values, as the file says it; empty texts where it does not
    QString problem; ///< why the raster cannot be read, in a sentence; empty otherwise
};

/// Opens a raster and closes it again; nothing is written beside it. `path`: absolute, or a name in one of
/// GDAL's virtual file systems.
Tile readTile(const QString &path);

/// Why one raster can be no tile of any mosaic, in a sentence that names it; empty for a good one. A tile has
/// coordinates, rows from north to south and columns from west to east.
QString tileProblem(const Tile &tile);

/// The first difference that keeps two good tiles from being one DEM, in a sentence that names both; empty
/// where they fit. CRS, size of the cells, number, types and units of the bands and values without data must
/// agree, and the cells of both must lie on one grid. Cells may differ by the rounding of their coordinates:
/// over both tiles the grids stay within a twentieth of a cell. The tiles may overlap or be apart.
QString tileDifference(const Tile &first, const Tile &other);

/// Whether the rectangle around the tiles has cells that no tile holds. The tiles must fit each other.
bool leaveGaps(const QVector<Tile> &tiles);

/// The cells of the rectangle around the tiles that each tile holds. The tiles must fit each other.
QVector<QRect> tileCells(const QVector<Tile> &tiles);
