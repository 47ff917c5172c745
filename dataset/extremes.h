#pragma once

#include <QString>

#include <memory>

/// The lowest and the highest value of a raster band, in the band's unit.
struct Extremes
{
    bool known = false;
    bool exact = false; ///< from every cell; otherwise from statistics in the file or a part of the cells
    double minimum = 0.0;
    double maximum = 0.0;
    bool unreadable =
        false; ///< the band could not be read; otherwise unknown values mean that no cell holds one
};

/// Finds the extreme values of a band in portions. Cells that hold no-data or no finite number do not count.
/// The raster is opened for reading and nothing is written beside it.
class ExtremesReader
{
public:
    enum Effort
    {
        Estimate, ///< the file's own statistics, or at most about 2 % of the band's blocks
        Exact     ///< every block once
    };

    /// band: from 1.
    ExtremesReader(const QString &path, int band, Effort effort);
    ~ExtremesReader();
    ExtremesReader(const ExtremesReader &) = delete;
    ExtremesReader &operator=(const ExtremesReader &) = delete;

    /// Reads on for that long, and one block at least. False when there is nothing left to read, or nothing can
    /// be read.
    bool advance(int milliseconds);

    /// Part of the blocks that has been read, 0 to 100.
    int percent() const;

    /// What was found so far; not known when no cell holds a value, or after an error.
    Extremes extremes() const;

private:
    struct Band;
    std::unique_ptr<Band> m_band;
    Extremes m_found;
    long long m_blocksRead = 0;
    long long m_blocksToRead = 0;
};

/// An estimate at once, for whoever cannot wait for one in portions.
Extremes estimatedExtremes(const QString &path, int band);
