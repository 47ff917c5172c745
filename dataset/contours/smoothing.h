#pragma once

#include "dataset/contours/voidrule.h"

#include <QString>

#include <functional>

/// What is smoothed, and how far.
struct SmoothRequest
{
    QString dem;
    int band = 1;   ///< the DEM's band, counted from 1
    int radius = 1; ///< cells to each side that take part, 1 to 50; the standard deviation is half of it
    VoidRule voids;
    QString smoothed; ///< path of the new DEM, a GTiff with one band and the DEM's grid
};

/// How the smoothing ended.
struct SmoothResult
{
    bool isStopped = false; ///< by the listener of the progress
    QString problem;        ///< why it failed, in GDAL's words; empty otherwise
};

/// Writes a copy of a band in which each elevation is the mean of the elevations around it, weighted by a
/// Gaussian bell. The cells are Float64 where the DEM's type holds more than Float32 keeps, otherwise Float32.
///
/// Cells without data take no part and keep their value, and so does the ground beyond the edges: the weights
/// of the cells that take part add up to 1. No elevation leaves the range of those it is made of. Memory holds
/// 2 · radius + 1 rows. `progress` receives percentages and returns whether to go on. The DEM is only read;
/// what a failure or a stop leaves is removed.
SmoothResult smoothDem(const SmoothRequest &request, const std::function<bool(int)> &progress);
