#pragma once

#include <QString>

#include <functional>

/// The direction of a slope whose cells are not square, from the direction that a tool computed as if they
/// were. Both in degrees from 0 to 360. `ratio`: height of a cell divided by its width, both on the ground.
/// `trigonometric`: counter-clockwise from the east; otherwise clockwise from the north.
///
/// The tool's direction has the components sin = dz/dx * width and cos = dz/dy * height of the true gradient.
double trueDirection(double direction, double ratio, bool trigonometric);

/// Receives percentages from 0 to 100; returns whether to go on.
using CorrectionProgress = std::function<bool(int)>;

/// How a correction ended.
struct CorrectionResult
{
    bool isStopped = false; ///< by the listener of the progress
    QString problem;        ///< why it failed, in GDAL's words; empty otherwise
};

/// Replaces the directions in the first band of `raster` by trueDirection(), each row with the true cells of
/// that row of `dem` (dataset/views/truecells.h), which has the same columns and rows. The no-data value stays.
/// The raster is changed in place. `band` of the DEM: from 1.
CorrectionResult correctDirections(const QString &raster, const QString &dem, int band, bool trigonometric,
                                   const CorrectionProgress &progress);
