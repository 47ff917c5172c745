#pragma once

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

/// The band of a raster that holds the elevations.
class Raster
{
public:
    /// Throws Problem if the file cannot be read, lacks the band, or holds complex numbers.
    Raster(const std::string &path, int band);
    ~Raster();

    int width() const;
    int height() const;
    GDALDataset &dataset() const { return *m_dataset; }
    /// The files that it is read from, as GDAL names them.
    std::vector<std::string> files() const;

    /// How its numbers are kept without loss.
    Terrain::Storage storage() const { return m_storage; }
    /// Metres of a unit of elevation, 1 where the band does not name another.
    double metresOfHeight() const;

    /// Reads a part block by block, past GDAL's cache; a number that is the no-data value, that the band's mask
    /// leaves out, or that is not finite becomes a cell without data. Each thread opens the file for itself,
    /// and whenever it has read some rows calls `tell` with all that follow each other: the terrain, the first
    /// one, one after the last. Throws Problem, std::bad_alloc.
    using RowsRead = std::function<void(const Terrain &, int, int)>;
    Terrain read(const Window &window, int threads, const RowsRead &tell = {}) const;

private:
    std::vector<std::unique_ptr<GDALDataset>> openedAgain(int more) const;

    std::string m_path;
    int m_bandNumber;
    std::unique_ptr<GDALDataset> m_dataset;
    GDALRasterBand *m_band = nullptr;
    Terrain::Storage m_storage = Terrain::Storage::Float;
};

/// Bytes of memory that a computation may take now; the greatest number where the system does not tell.
double availableMemory();

} // namespace viewshed
