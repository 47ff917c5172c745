#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/combine.h"
#include "viewshed/io/georeference.h"
#include "viewshed/io/observers.h"
#include "viewshed/sweep/horizonline.h"

#include <memory>

class GDALDataset;

namespace viewshed
{

/// One observer's horizon, as a skyline file gets it.
struct ObserverHorizon
{
    std::size_t number; ///< of the observer in the file of observers, from 1
    const Observer &observer;
    const Sight &sight; ///< only its field of view counts
    /// In an azimuth outside the sight's sector, the file gets no horizon. Positions count from the cell
    /// (`left`, `top`) of the raster.
    const HorizonLine &line;
    int left;
    int top;
    const BitGrid *seen; ///< the cells that the observer sees, of `window`; null unless wantsSeen()
    Window window;       ///< in the raster
};

/// Writes the horizons of a run's observers to a file, as a SideFile.
class SkylineFile
{
public:
    virtual ~SkylineFile() = default;
    /// Whether write() needs the cells that are seen.
    virtual bool wantsSeen() const { return false; }
    /// Throws Problem if the file cannot be written.
    virtual void write(const ObserverHorizon &horizon) = 0;
    /// Completes and keeps the file. Throws Problem.
    virtual void keep() = 0;
};

/// How a skyline file is written.
struct SkylineOptions
{
    std::string path; ///< ends in .csv, .json or .gpkg, which decides the format
    double step =
        0.0; ///< degrees between two directions, from north on; 0: the points at which a horizon bends
};

/// Creates the file. `raster` is the DEM and `georeference` its own; both must outlive the result. Throws
/// Problem if the file cannot be created.
///
/// - CSV: a row for each point: observer (its number), name, azimuth and angle in degrees, distance in metres,
/// x
///   and y in the DEM's coordinate system, z. Where the horizon leaps, two rows have the same azimuth.
/// - JSON: a list with an object for each observer: observer, name, x, y, z, and the lists azimuth,
///   horizon_height (the angle in degrees) and horizon_distance.
/// - GeoPackage: the layer "skyline" with a line along the points of each horizon, broken where there is no
///   ground, and the layer "seen" with the outline of the cells that the observer sees.
///
/// Directions without ground are left out.
std::unique_ptr<SkylineFile> createSkylineFile(const SkylineOptions &options, GDALDataset &raster,
                                               const Georeference &georeference);

} // namespace viewshed
