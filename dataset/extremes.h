#pragma once

#include <QString>

#include <memory>

/// The lowest and the highest value of a raster band, in the unit of the band.
struct Extremes
{
    bool known = false;
    bool exact = false; ///< from every cell; otherwise from statistics in the file or from a part of the cells
    double minimum = 0.0;
    double maximum = 0.0;
    /// The band could not be read. If false, unknown values mean that no cell that was read has one.
    bool unreadable = false;
};

/// Finds the extreme values of a band in portions. Cells of the no-data value and cells that hold no finite
/// number do not count. The raster is opened for reading and nothing is written beside it.
class ExtremesReader
{
public:
    enum Effort
    {
        Estimate, ///< the file's own statistics, else at most about 2 % of the band's blocks, or every block of
                  ///< a format whose lines are read in order
        Exact     ///< every block once
    };

    /// Opens the band; extremes() states whether it can be read. band: from 1.
    ExtremesReader(const QString &path, int band, Effort effort);
    ~ExtremesReader();
    ExtremesReader(const ExtremesReader &) = delete;
    ExtremesReader &operator=(const ExtremesReader &) = delete;

    /// Reads at least one block, and further blocks until the milliseconds have passed. Returns whether blocks
    /// are left to read; false after an error.
    bool advance(int milliseconds);

    /// Part of the blocks to read that has been read, 0 to 100.
    int percent() const;

    /// What was found so far; not known while no cell with a value was read, and after an error.
    Extremes extremes() const;

private:
    struct Band;
    std::unique_ptr<Band> m_band;
    Extremes m_found;
    long long m_blocksRead = 0;
    long long m_blocksToRead = 0;
};

/// Makes an estimate in one call. It may take seconds for a large raster without statistics; where the user
/// waits, use ExtremesScan instead.
Extremes estimatedExtremes(const QString &path, int band);
