#pragma once

#include "dataset/extremes.h"

#include <QString>

/// A band of a DEM, and what is known of it.
struct DemInfo
{
    QString path;           ///< the DEM as GDAL is given it; empty: there is no DEM
    int band = 1;           ///< counted from 1
    Extremes extremes;      ///< extreme values of the band
    bool searching = false; ///< whether the extreme values are still being looked for
    QString state = {};     ///< differs where the file was written anew since it was opened last

    bool isSameFileAs(const DemInfo &other) const { return path == other.path && state == other.state; }
    bool isSameBandAs(const DemInfo &other) const { return isSameFileAs(other) && band == other.band; }
};
