#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/combine.h"
#include "viewshed/terrain.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class GDALDataset;
class GDALRasterBand;

namespace viewshed
{

/// The block of a file that was read last with one dataset handle. A file may be a single compressed strip,
/// which takes seconds to decode and serves every window.
struct LastBlock
{
    int x = -1;                       ///< number of the block in its row of blocks; -1 if there is none
    int y = -1;                       ///< number of its row of blocks
    std::vector<unsigned char> cells; ///< in the band's data type
};

/// A raster file, opened for reading, and its band with the elevations.
class Raster
{
public:
    /// `path` is what GDAL opens, `band` counts from 1. Throws Problem if the file cannot be opened, lacks the
    /// band, has largestSide columns or rows or more, or if the band holds complex numbers.
    Raster(const std::string &path, int band);
    ~Raster();

    int width() const;
    int height() const;
    /// Belongs to the raster; only one thread may use it at a time.
    GDALDataset &dataset() const { return *m_dataset; }

    /// Float if a float keeps every number of the band without loss, else Double.
    Terrain::Storage storage() const { return m_storage; }
    /// The length of the vertical unit in metres: that of a foot if the band's unit type names one, else 1.
    double metresOfHeight() const;

    /// The memory for the blocks that read() and addVoids() decode at a time, in bytes.
    double blockBytes(int threads) const;

    /// Receives the terrain that is being read, and a range of its rows that have been read: the first row and
    /// the row after the last.
    using RowsRead = std::function<void(const Terrain &, int, int)>;
    /// Reads the elevations of a window, block by block and without GDAL's block cache. A number becomes a cell
    /// without data if it is the no-data value, if the band's mask excludes it, or if it is not finite. Each
    /// thread reads a range of rows with a dataset handle of its own, and calls `onRowsRead` after each row of
    /// blocks with all rows that it has read of its range; the ranges of different threads do not overlap.
    /// The calling thread keeps the block that it read last for the next call. Throws Problem if GDAL cannot
    /// read, and std::bad_alloc.
    Terrain read(const Window &window, int threads, const RowsRead &onRowsRead = {}) const;
    /// Sets in `voids`, a grid of the raster's size, the bits of the cells without data from `firstRow` on.
    /// Throws what read() throws.
    void addVoids(int firstRow, int threads, BitGrid &voids) const;

private:
    template <class ReadRows> void readParts(const Window &window, int threads, ReadRows readRows) const;

    std::string m_path;
    int m_bandNumber;
    std::unique_ptr<GDALDataset> m_dataset;
    GDALRasterBand *m_band = nullptr;
    Terrain::Storage m_storage = Terrain::Storage::Float;
    mutable LastBlock m_last; ///< of m_dataset
};

/// The memory that this process can still allocate without swapping, in bytes; the greatest double on a system
/// that does not report it.
double availableMemory();

} // namespace viewshed
