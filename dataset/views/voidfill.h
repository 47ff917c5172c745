#pragma once

#include <QString>

#include <functional>

/// Receives percentages from 0 to 100; returns whether to go on.
using FillProgress = std::function<bool(int)>;

/// How the filling of voids ended.
struct FillResult
{
    bool isStopped = false; ///< by the listener of the progress
    long long filled = 0;   ///< number of cells that were given an elevation
    QString problem;        ///< why it failed, in GDAL's words; empty otherwise
};

/// What is written, and how far cells without data are filled.
struct FillRequest
{
    QString dem;
    int band = 1;            ///< of the DEM, from 1
    double distance = 100.0; ///< cells; a void cell farther from any elevation stays void
    QString filled;          ///< path of the new DEM, a GTiff of type Float32 with one band and the DEM's grid
    QString mask;            ///< path of a GTiff of type Byte: 1 where a cell was filled, else 0; empty: none
};

/// Copies a band and fills its cells without data by inverse distance weighting from the cells around (GDAL's
/// GDALFillNodata). The DEM is only read. A DEM that declares no value for cells without data is copied as it
/// is. What a failure or a stop leaves is removed; while it runs, temporary files stand beside `filled`.
FillResult fillVoids(const FillRequest &request, const FillProgress &progress);
