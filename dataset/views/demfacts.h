#pragma once

#include <QSizeF>
#include <QString>
#include <QVector>

#include <array>
#include <optional>

/// The kind of a DEM's coordinate reference system.
enum class DemCrs
{
    None,
    Geographic, ///< longitudes and latitudes
    Projected
};

/// What the file of a DEM says of its grid, its coordinates and the elevations of one band.
struct DemFacts
{
    bool isOpen = false; ///< false: the file or the band could not be opened, and nothing below holds
    int band = 1;        ///< counted from 1
    int bandCount = 0;
    int width = 0;  ///< columns
    int height = 0; ///< rows
    bool isGeoreferenced = false;
    /// Affine transform from columns and rows to coordinates, in GDAL's order. The identity without a
    /// georeference.
    std::array<double, 6> toGround{0.0, 1.0, 0.0, 0.0, 0.0, 1.0};

    DemCrs crs = DemCrs::None;
    QString crsName;              ///< "WGS 84 / UTM zone 32N"
    QString crsText;              ///< the CRS as WKT; empty without one
    QString crsAxes;              ///< which axis of the CRS x and y are, as GDAL's VRT format writes it ("2,1")
    double unit = 1.0;            ///< radians (geographic) or metres (projected) in one unit of the coordinates
    double semiMajor = 6378137.0; ///< of the ellipsoid, in metres
    double flattening = 1.0 / 298.257223563; ///< of the ellipsoid
    /// Length on the ground in metres of one unit of x and of y, at rows evenly spread from the first to the
    /// last, in the middle of each. Empty unless a projection enlarges or shrinks by more than 1 %.
    QVector<QSizeF> groundUnits;

    QString cellType; ///< GDAL's name of the type of the cells ("Int16")
    int blockWidth = 0;
    int blockHeight = 0;
    bool hasOverviews = false;
    std::optional<double> noData;        ///< as stored; NaN is possible
    std::optional<double> elevationUnit; ///< metres in the declared unit of elevations; empty: none is declared
    double elevationScale = 1.0;         ///< elevation = stored value * scale + offset, in the declared unit
    double elevationOffset = 0.0;
};

/// Reads the facts of a band. Nothing is logged and nothing is written beside the file.
DemFacts readDemFacts(const QString &path, int band);

/// Metres in a unit of elevations, by the names that files use ("m", "ft", "US survey foot"); empty for any
/// other text.
std::optional<double> metresInUnit(const QString &unit);

/// Metres in the unit of elevations. Where none is declared it is that of the coordinates in a projected CRS,
/// and the metre otherwise.
double elevationMetres(const DemFacts &facts);

/// Metres in one stored step of elevation: the unit times the band's scale.
double elevationFactor(const DemFacts &facts);

/// Whether the rows run from south to north, or the columns from east to west.
bool isMirrored(const DemFacts &facts);

/// Whether rows and columns run askew to the axes of the coordinates, by more than the rounding errors with
/// which some programs write a grid that is upright.
bool isRotated(const DemFacts &facts);
