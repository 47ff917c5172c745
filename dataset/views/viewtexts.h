#pragma once

#include "dataset/views/truecells.h"

#include <QByteArray>
#include <QString>

// The texts of virtual rasters in GDAL's VRT format. The files that they refer to need not exist yet.

/// A DEM that a view shows.
struct ViewSource
{
    QString path; ///< as GDAL opens it; an absolute path, or a name that is no file
    DemFacts facts;
};

/// A view of a strip of rows with cells of `cell` metres and elevations in metres, of type Float32, in no CRS;
/// the rows run from the north. The no-data value stays as it is. Nothing is resampled.
QByteArray metreView(const ViewSource &source, const RowStrip &strip, const QSizeF &cell);

/// A part of a raster product, which a tool made of a strip of rows.
struct ProductPart
{
    QString path;      ///< absolute path of the product of the strip
    RowStrip strip;    ///< rows that the product shows, counted in the DEM
    int rowsAbove = 0; ///< rows of the part before those of the strip, which the whole does not show
    int rowsBelow = 0; ///< rows of the part behind them
};

/// What a raster product holds.
struct ProductCells
{
    QString type;                 ///< GDAL's name of the type of the cells
    std::optional<double> noData; ///< empty: no value marks cells without data
};

/// The view of a whole product in the grid of `dem`, put together from parts of the same columns.
QByteArray assembledView(const DemFacts &dem, const QVector<ProductPart> &parts, const ProductCells &cells);
