#pragma once

#include <QString>
#include <QVector>

#include <memory>

/// Elevations of a part of a DEM's cells, as a picture of the whole DEM needs them.
struct ElevationGrid
{
    int width = 0;  ///< columns
    int height = 0; ///< rows, the first as in the file
    /// width × height elevations in the unit of the band; NaN: a cell without data, or one that was not read.
    QVector<float> cells;
    double noDataValue = -9999.0; ///< what marks the cells without data in the DEM

    bool isEmpty() const { return cells.isEmpty(); }

    /// The elevations in rising order, without the cells that have none.
    QVector<double> sorted() const;
};

/// Reads such a grid in portions, row by row: one row of the DEM for each row of the grid, so that a DEM of any
/// size takes little time. The raster is opened for reading and nothing is written beside it.
class ElevationGridReader
{
public:
    /// Opens the band, counted from 1. The longer side of the grid has `side` cells at most.
    ElevationGridReader(const QString &path, int band, int side);
    ~ElevationGridReader();
    ElevationGridReader(const ElevationGridReader &) = delete;
    ElevationGridReader &operator=(const ElevationGridReader &) = delete;

    /// Reads at least one row, and further rows until the milliseconds have passed. Returns whether rows are
    /// left to read; false after an error, too.
    bool advance(int milliseconds);

    /// What was read so far; empty when the band cannot be opened.
    const ElevationGrid &grid() const { return m_grid; }

private:
    struct Band;
    bool readRow();

    std::unique_ptr<Band> m_band;
    ElevationGrid m_grid;
    int m_nextRow = 0;
};
