#pragma once

#include <QString>
#include <QVector>

#include <functional>

/// Reduction factors of a raster's overviews: 2, 4, 8 … until the smaller side is below 256 cells. A raster
/// whose smaller side is below 256 cells has none. `width` and `height` are cells.
QVector<int> overviewFactors(int width, int height);

/// Whether overviews can stand in a file beside a product of that GDAL driver ("a.tif.ovr").
bool takesOverviews(const QString &format);

/// Path of the file that holds a raster's overviews.
QString overviewFile(const QString &raster);

/// Whether the cells of a band's first overview are averages of the band's cells. Compares some in the middle
/// of the raster, because few files say how their overviews were made. False without an overview, and where
/// its cells do not stand for squares of whole cells. band: from 1.
bool hasAveragedOverviews(const QString &raster, int band);

/// Receives percentages from 0 to 100; returns whether to go on.
using OverviewProgress = std::function<bool(int)>;

/// How the building of overviews ended.
struct OverviewResult
{
    enum State
    {
        Built,
        NotNeeded, ///< the raster is small
        Failed,
        Stopped ///< by the listener of the progress
    };
    State state = Failed;
    QString problem; ///< why it failed, in GDAL's words; empty otherwise
};

/// Builds the overviews of a raster in a file beside it, by nearest neighbour; the raster itself is not
/// changed. A file of overviews that a failure or a stop left incomplete is removed, unless the file existed
/// before.
OverviewResult buildOverviews(const QString &raster, const OverviewProgress &progress);
