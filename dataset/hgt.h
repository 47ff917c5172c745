#pragma once

#include <QByteArray>
#include <QString>

// Elevations in files of the SRTM kind (".hgt"): 16-bit whole numbers, the high byte first, by rows from the
// north, and no header. GDAL takes the place from the file's name and the number of cells from its size.

/// Why GDAL does not open the file, in a sentence; empty for a name that does not end in ".hgt", and where name
/// and size are those that GDAL reads. bytes: the file's size.
QString hgtProblem(const QString &fileName, qint64 bytes);

/// What the file does not state: how its cells lie on the ground (WGS 84).
struct HgtTile
{
    int columns = 0;
    int rows = 0;
    double latitude = 0.0;  ///< of the centre of the lower left cell, in degrees, north is positive
    double longitude = 0.0; ///< of the same, east is positive
    double cellSize = 0.0;  ///< side of a cell in degrees

    bool operator==(const HgtTile &) const = default;
};

/// The likeliest tile of one degree: columns and rows by the size of the file, the corner by the beginning of
/// its name ("N45E006"), where it has one.
HgtTile likelyTile(const QString &fileName, qint64 bytes);

/// Why the file cannot hold such a tile, in a sentence; empty when it can.
QString tileProblem(const HgtTile &tile, qint64 bytes);

/// The text of a virtual raster that reads the file as that tile, with the no-data value -32768. path: the
/// absolute path of the file.
QByteArray tileVrt(const HgtTile &tile, const QString &path);
