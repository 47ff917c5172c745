#pragma once

#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <functional>

/// What some of the observers of an intervisibility run see: a raster of how many of them see each cell, or of
/// the least heights that are seen, for a window of the DEM. Outside of it none of them sees anything.
struct SightShare
{
    QString path;
    QRect window; ///< cells of the DEM
};

/// What is made of all shares.
enum class SightSum
{
    Picture,    ///< three bands of bytes in the colours of the zones
    Count,      ///< how many observers see a cell
    LeastHeight ///< the least height at which one observer, or all, would see something
};

struct SightJoin
{
    QString path; ///< a GeoTIFF; must not exist
    SightSum sum = SightSum::Picture;
    bool byAll = false; ///< all observers have to see a cell, not one of them
    int observers = 0;  ///< of all shares
    using Rgb = std::array<unsigned char, 3>;
    Rgb seen{};
    Rgb hidden{};
    Rgb noData{};
    QString dem; ///< cells without data in it have none in the product
    int band = 1;
    QStringList creationOptions; ///< GDAL's ("TILED=YES")
};

/// Adds up the shares as one run of all observers would. Some rows at a time are in memory. `progress` receives
/// the finished share, from 0 to 1, and stops when it returns false. Returns why there is no product, in a
/// sentence, or an empty text, also after a stop; then no part of the file is left.
QString joinSights(const QVector<SightShare> &shares, const SightJoin &join,
                   const std::function<bool(double)> &progress);
