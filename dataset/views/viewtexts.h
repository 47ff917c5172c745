#pragma once

#include "dataset/views/truecells.h"

#include <QByteArray>
#include <QPoint>
#include <QSize>
#include <QString>

// The texts of virtual rasters in GDAL's VRT format. The files that they refer to need not exist yet.

/// A DEM that a view shows.
struct ViewSource
{
    QString path; ///< as GDAL opens it; an absolute path, or a name that is no file
    DemFacts facts;
};

/// A view of a strip of rows with cells of `cell` metres and elevations in metres, of type Float32, in no CRS;
/// the rows run from the north. Cells without data stay so; their value is the DEM's unless an elevation in
/// metres may have it. Nothing is resampled.
QByteArray metreView(const ViewSource &source, const RowStrip &strip, const QSizeF &cell);

/// A raster that a tool made, of which the product shows some rows and columns.
struct ProductPart
{
    QString path;   ///< absolute path of the raster
    QSize size;     ///< columns and rows of the raster
    QPoint first;   ///< the first of its cells that the product shows, from its upper left corner
    RowStrip strip; ///< rows of the product that it fills, over all columns
};

/// What a raster product holds.
struct ProductCells
{
    QString type;                 ///< GDAL's name of the type of the cells
    std::optional<double> noData; ///< empty: no value marks cells without data
};

/// Colours of a DEM, and the shaded relief that darkens them.
struct ShadedColors
{
    QString colors;    ///< path of a raster of bytes: red, green, blue and perhaps alpha
    QSize colorsSize;  ///< its columns and rows
    QPoint firstColor; ///< its cell that is the first of the view
    bool hasAlpha = false;
    QString shade;      ///< path of a raster of bytes with the grid of the view; 0: there is no light known
    int strength = 100; ///< percentage of the shade that counts, 0 to 100
};

/// The view of the product in the columns, rows and coordinates of `grid`: each colour c under the light h
/// becomes c · (1 - s + s · h / 255), rounded, where s is the strength as a share. Colours without a light, and
/// alpha, stay as they are.
QByteArray shadedColorsView(const DemFacts &grid, const ShadedColors &parts);

/// The view of a whole product in the columns, rows and coordinates of `grid`, put together from parts.
QByteArray assembledView(const DemFacts &grid, const QVector<ProductPart> &parts, const ProductCells &cells);
