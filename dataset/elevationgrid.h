#pragma once

#include <QSize>
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

/// Columns and rows of cells to read of a band for a picture of at most `side` pixels a side, so that at most
/// `mostCells` cells are decoded. A cell costs its whole block. band, block: sizes in cells.
QSize sampleSize(const QSize &band, const QSize &block, int side, double mostCells);

/// What the values of a sample say of a band.
struct SampleSummary
{
    bool known = false;   ///< whether a cell has a value
    double minimum = 0.0; ///< these three: in the unit of the band
    double maximum = 0.0;
    double mean = 0.0;
    double voids = 0.0; ///< share of the cells without a value, 0 to 1
};
SampleSummary summaryOf(const ElevationGrid &grid);

/// Reads single cells of a band that are spread over it evenly, in portions: from the smallest overview that is
/// large enough, and never so many that a large file would be read as a whole. The raster is opened for reading
/// and nothing is written beside it.
class ElevationGridReader
{
public:
    /// band: from 1. side: the most columns and rows to read.
    ElevationGridReader(const QString &name, int band, int side);
    ~ElevationGridReader();
    ElevationGridReader(const ElevationGridReader &) = delete;
    ElevationGridReader &operator=(const ElevationGridReader &) = delete;

    /// Reads at least one row, and further rows until the milliseconds have passed. Returns whether rows are
    /// left to read; false after an error, too.
    bool advance(int milliseconds);

    /// What was read so far; empty when the band cannot be opened.
    const ElevationGrid &grid() const { return m_grid; }

    /// Columns and rows of the band; empty when it cannot be opened.
    QSize bandSize() const { return m_bandSize; }

    /// Whether each cell of the band is one of the sample.
    bool isWhole() const { return m_isWhole; }

    /// Why the cells could not be read, in GDAL's words; empty while they can.
    QString problem() const { return m_problem; }

private:
    struct Band;
    bool readRow();

    std::unique_ptr<Band> m_band;
    ElevationGrid m_grid;
    int m_nextRow = 0;
    QSize m_bandSize;
    bool m_isWhole = false;
    QString m_problem;
};
