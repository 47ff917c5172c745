#pragma once

#include "colortable/QuvoColorDef.h"
#include "panels/options/observerpoints.h"

#include <QString>

#include <optional>

// The argument grammars of the processes: plain option record in, argument fragment out. A fragment is inserted
// in the command line as it stands (app/process/commandline.h), so every blank in it counts.

/// Options of the shaded relief process, as its panel shows them.
struct ShadedOptions
{
    double exaggeration = 1.0; ///< factor applied to the elevations, 0 to 100
    int scaleIndex = 0;        ///< row of the scale list (0 to 3); -1 when a ratio was typed
    QString scaleText;      ///< the typed ratio, vertical unit over horizontal unit; used when scaleIndex is -1
    double compass = 315.0; ///< compass reading in degrees, 0 at the north label
    int altitude = 45;      ///< height of the sun above the horizon, in degrees, 0 to 90
    bool computeEdges = false;      ///< also at the raster's edges and beside no-data cells
    bool zevenbergenThorne = false; ///< Zevenbergen and Thorne's formula (smooth terrain) instead of Horn's

    bool operator==(const ShadedOptions &other) const = default;
};

/// The azimuth that the tool gets is 270 minus the compass reading and may be negative: kept so on purpose.
QString shadedFragment(const ShadedOptions &options);

/// Options of the slope process.
struct SlopeOptions
{
    bool percent = false;           ///< slopes in percent instead of degrees
    int scaleIndex = 0;             ///< row of the scale list (0 to 3); -1 when a ratio was typed
    QString scaleText;              ///< as in ShadedOptions
    bool computeEdges = true;       ///< also at the raster's edges and beside no-data cells
    bool zevenbergenThorne = false; ///< Zevenbergen and Thorne's formula (smooth terrain) instead of Horn's

    bool operator==(const SlopeOptions &other) const = default;
};

QString slopeFragment(const SlopeOptions &options);

/// Options of the aspect process.
struct AspectOptions
{
    bool trigonometric = false; ///< angles counter-clockwise from the east instead of clockwise from the north
    bool zeroForFlat = true;    ///< flat cells get 0 instead of -9999
    bool computeEdges = true;   ///< also at the raster's edges and beside no-data cells
    bool zevenbergenThorne = false; ///< Zevenbergen and Thorne's formula (smooth terrain) instead of Horn's

    bool operator==(const AspectOptions &other) const = default;
};

/// Begins with a blank unless the angles are trigonometric: the grammar's own, as the others' are.
QString aspectFragment(const AspectOptions &options);

/// Options of the terrain indices (Wilson et al. 2007, Marine Geodesy 30:3-35).
struct TerrainIndexOptions
{
    int type = 0;             ///< row of terrainIndexWord()
    bool computeEdges = true; ///< also at the raster's edges and beside no-data cells

    bool operator==(const TerrainIndexOptions &other) const = default;
};

/// The fragment does not name the index: that is the tool's mode.
QString terrainIndexFragment(const TerrainIndexOptions &options);

/// Number of terrain indices.
constexpr int terrainIndexCount = 3;

/// The tool's word of an index: 0 "TRI", terrain ruggedness; 1 "TPI", topographic position; any other number
/// "roughness".
QString terrainIndexWord(int type);

/// Options of the contour process. Elevations are in the DEM's unit.
struct ContourOptions
{
    std::optional<double> interval;          ///< between two lines; none: fixed levels alone
    QString attribute = QStringLiteral("Z"); ///< that receives the elevation; empty: none does
    bool threeD = false;                     ///< an elevation at every vertex
    QString fixedLevels;          ///< numbers separated by blanks; the tool takes them in place of the interval
    bool everyValueValid = false; ///< also the band's no-data value
    std::optional<double> noDataValue; ///< a value to ignore; not used while every value is valid
    std::optional<double> offset;      ///< elevation from which the intervals count

    bool operator==(const ContourOptions &other) const = default;
};

/// Numbers have six significant digits; the fixed levels stand as they were typed.
QString contourFragment(const ContourOptions &options);

/// Options of the colour relief process. The table and the way it is applied decide the file that the tool
/// gets; only alpha is an argument.
struct ColorReliefOptions
{
    /// Path of the colour table, or the name of a table of the library. Empty means the default, too.
    QString table = QStringLiteral("dtm.txt");
    bool spread = false;           ///< spread the table over the DEM's elevations instead of using its own
    std::optional<double> minimum; ///< elevations to spread it over; none: the DEM's lowest and highest
    std::optional<double> maximum;
    bool alpha = false;         ///< an alpha band in the product
    QList<QuvoColorDef> colors; ///< the table by value: where there are any, `table` is but its name

    bool operator==(const ColorReliefOptions &other) const = default;
};

QString colorReliefFragment(const ColorReliefOptions &options);

/// Options of the intervisibility process. The observers reach the tool in a file.
struct IntervisibilityOptions
{
    QList<ObserverPoint> observers;
    QString points;                                          ///< vector source with more observers; empty: none
    double height = ObserverPoint().height;                  ///< of the source's observers
    QString mode = altitudeModeText(ObserverPoint().mode); ///< what that height counts from
    double distance = ObserverPoint().maxDistance;           ///< how far they see, in metres; 0: without limit
    double step = 0.0;     ///< between points on the source's lines, in the DEM's unit; 0: a cell
    bool combined = false; ///< several observers: `combination` holds
    QString combination = QStringLiteral("OR"); ///< "OR": seen by one at least; "AND": by all of them
    std::optional<double> groundHeight = 0.0;   ///< of what is seen, above the ground
    QString visibleColor = QStringLiteral("#009e73");
    QString hiddenColor = QStringLiteral("#d55e00");
    QString noDataColor = QStringLiteral("#000000");

    bool operator==(const IntervisibilityOptions &other) const = default;
};

/// pointFile: the shapefile of the observers (writePointFile()); empty: the tool gets none.
QString intervisibilityFragment(const IntervisibilityOptions &options, const QString &pointFile);

/// Whether the options are enough to launch the process: a typed ratio is not empty, and there is an interval
/// or a level.
bool isComplete(const ShadedOptions &options);
bool isComplete(const SlopeOptions &options);
bool isComplete(const ContourOptions &options);

/// Rows of the scale list, the ratio of the vertical unit to the horizontal one: 0 the same unit, 1 X and Y in
/// metres and Z in feet, 2 X and Y in degrees and Z in metres, 3 X and Y in degrees and Z in feet.
constexpr int scaleRowCount = 4;

/// The ratio of a row of the list as the tool gets it ("0.31"); for row -1 the typed text.
QString scaleRatio(int scaleIndex, const QString &scaleText);
