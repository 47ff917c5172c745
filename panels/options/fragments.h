#pragma once

#include "colortable/QuvoColorDef.h"
#include "panels/options/observerpoints.h"
#include "panels/options/toolinput.h"

#include <QString>

#include <optional>

// The option records of the processes with their defaults, and the argument grammars: each function formats a
// record as an argument fragment. The fragment is inserted in the command line unchanged, so every blank in it
// counts.

/// How a shaded relief is lit.
enum class Light
{
    Single,           ///< by one sun
    Multidirectional, ///< by suns in the north-west, west, south-west and north; the compass is not used
    Combined,         ///< by one sun; steep ground is darker besides
    Igor              ///< softly, for maps whose labels stay legible; the height of the sun is not used
};

/// The word of a light in recipes: "single", or the tool's own ("multidirectional", "combined", "igor").
QString lightWord(Light light);

/// The light of a word; nothing for any other text.
std::optional<Light> readLight(const QString &word);

/// Options of the shaded relief process.
struct ShadedOptions
{
    double exaggeration = 1.0;      ///< factor applied to the elevations, 0 to 100
    int scaleIndex = 0;             ///< row of the scale list (scaleRowCount); -1: the ratio is `scaleText`
    QString scaleText;              ///< the typed ratio of the vertical unit to the horizontal unit
    double compass = 315.0;         ///< compass reading in degrees, 0 at the north label
    int altitude = 45;              ///< height of the sun above the horizon, in degrees, 0 to 90
    bool computeEdges = false;      ///< also at the raster's edges and beside no-data cells
    bool zevenbergenThorne = false; ///< Zevenbergen and Thorne's formula (smooth terrain) instead of Horn's
    QString light = lightWord(Light::Single); ///< word of a Light

    bool operator==(const ShadedOptions &other) const = default;
};

/// The light of the options; one sun where the word is none of a light.
Light lightOf(const ShadedOptions &options);

/// The azimuth in the fragment is 270 minus the compass reading and may be negative: kept so on purpose.
QString shadedFragment(const ShadedOptions &options);

/// Options of the slope process.
struct SlopeOptions
{
    bool percent = false;           ///< slopes in percent instead of degrees
    int scaleIndex = 0;             ///< as in ShadedOptions
    QString scaleText;              ///< as in ShadedOptions
    bool computeEdges = true;       ///< also at the raster's edges and beside no-data cells
    bool zevenbergenThorne = false; ///< Zevenbergen and Thorne's formula (smooth terrain) instead of Horn's
    /// Classes of the picture beside the product: "avalanche", "farming", "building" (slopeClassWords()), or
    /// the path of a colour table, each of whose entries begins a class, in the unit of the product; empty:
    /// none.
    QString classes;

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
    int directions = 0; ///< number of directions in the picture beside the product: 8 or 16; 0: no picture

    bool operator==(const AspectOptions &other) const = default;
};

/// The fragment begins with a blank unless the angles are trigonometric: kept so on purpose.
QString aspectFragment(const AspectOptions &options);

/// The same fragment for a product that marks cells without a direction, instead of 0.
QString withFlatMarked(QString aspectFragment);

/// Options of the terrain indices (Wilson et al. 2007, Marine Geodesy 30:3-35).
struct TerrainIndexOptions
{
    int type = 0;             ///< the index: 0 TRI, 1 TPI, 2 roughness
    bool computeEdges = true; ///< also at the raster's edges and beside no-data cells
    /// TRI as the mean difference to the neighbours (Wilson et al. 2007) instead of the root of the sum of the
    /// squared differences (Riley et al. 1999). For TRI alone.
    bool wilson = false;

    bool operator==(const TerrainIndexOptions &other) const = default;
};

/// The fragment does not name the index, which is the mode of the tool (terrainIndexWord()).
QString terrainIndexFragment(const TerrainIndexOptions &options);

/// Number of terrain indices.
constexpr int terrainIndexCount = 3;

/// The tool's word for an index: 0 "TRI" (terrain ruggedness), 1 "TPI" (topographic position), any other number
/// "roughness".
QString terrainIndexWord(int type);

/// Options of the contour process. Elevations are in the DEM's unit of elevations.
struct ContourOptions
{
    std::optional<double> interval;          ///< difference between two levels; nothing: fixed levels alone
    QString attribute = QStringLiteral("Z"); ///< name of the attribute for the elevation; empty: no attribute
    bool threeD = false;                     ///< every vertex has an elevation
    QString fixedLevels;                     ///< levels separated by blanks, beside those of the interval
    bool everyValueValid = false;            ///< the band's no-data value counts as an elevation
    std::optional<double> noDataValue;       ///< a value of the DEM to ignore; not used if `everyValueValid`
    std::optional<double> offset;            ///< elevation from which the intervals count; nothing: 0
    int indexEvery = 0; ///< every n-th line of the interval, counted from the offset, is an index line; 0: none
    double shortestRing = 0.0; ///< closed lines that are shorter, in ground units, are left out
    int smoothing = 0;         ///< radius in cells by which the DEM is smoothed before the lines; 0: not at all
    bool polygons = false;     ///< areas between the levels instead of lines; without `attribute` and `threeD`
    QString lowestAttribute =
        QStringLiteral("ZMIN"); ///< attribute for the lowest elevation of an area; not empty
    QString highestAttribute =
        QStringLiteral("ZMAX"); ///< attribute for the highest one; not empty, another name
    bool styled = false;        ///< the features carry their drawing, where the format keeps it
    bool qgisStyle = false;     ///< a .qml file beside the product

    bool operator==(const ContourOptions &other) const = default;
};

/// Largest smoothing radius, in cells.
constexpr int longestSmoothing = 50;

/// Numbers have six significant digits; the fixed levels are inserted unchanged. The tool would drop the
/// interval in silence where it also has fixed levels: with both, `levels` stands in place of the two, a text
/// of numbers (contourlevels.h) that is empty where there is an interval or fixed levels alone.
QString contourFragment(const ContourOptions &options, const QString &levels = {});

/// A number of the contour process as the tool receives it: with six significant digits.
QString toolNumber(double number);

/// Options of the colour relief process. Only alpha is an argument; the other options decide the content of the
/// table file that the tool reads.
struct ColorReliefOptions
{
    /// Path of the colour table, or name of a table of the library; empty means the default, too. While there
    /// are `colors`, it is only their name.
    QString table = QStringLiteral("dtm.txt");
    bool spread = false;           ///< the table is spread over the DEM's elevations
    std::optional<double> minimum; ///< elevation to spread it from; nothing: the DEM's lowest
    std::optional<double> maximum; ///< elevation to spread it to; nothing: the DEM's highest
    bool alpha = false;            ///< the product has an alpha band
    bool shaded = false;           ///< the colours are darkened by a shaded relief
    int shadeStrength = 60;        ///< percentage of the darkening, 0 to 100
    ShadedOptions shade;           ///< options of that relief; its edges are always computed
    QList<QuvoColorDef> colors;    ///< the table by value; empty: the file `table`

    bool operator==(const ColorReliefOptions &other) const = default;
};

QString colorReliefFragment(const ColorReliefOptions &options);

/// Adds the shaded relief of the options, if they have one, to the tool's input. It is computed at the edges,
/// too: without a light the rim would keep its full colours.
ToolInput withShade(ToolInput input, const ColorReliefOptions &options);

/// What an intervisibility run computes for each cell.
enum class SightResult
{
    Picture, ///< the colour of its zone
    Count,   ///< how many observers see it
    Height   ///< the least height above the ground, in the DEM's unit, at which something there is seen
};

/// The tool's word for a result: "picture", "count" or "height".
QString sightResultWord(SightResult result);

/// The result of a word; nothing for any other text.
std::optional<SightResult> readSightResult(const QString &word);

/// Options of the intervisibility process. The tool reads the observers from a file.
struct IntervisibilityOptions
{
    QList<ObserverPoint> observers;
    QString points;                         ///< path of a vector source with more observers; empty: no source
    QString pointsLayer;                    ///< name of the layer of that source; empty: all its layers
    double height = ObserverPoint().height; ///< height of the source's observers
    QString mode = altitudeModeText(ObserverPoint().mode); ///< altitude mode of that height
    double distance = ObserverPoint().maxDistance;         ///< how far they see, in metres; 0: without limit
    double step = 0.0;     ///< distance between points on the source's lines, in the DEM's unit; 0: a cell
    bool combined = false; ///< there are several observers, so that `combination` is used
    QString combination = QStringLiteral("OR");       ///< "OR": seen by one observer at least; "AND": by all
    std::optional<double> groundHeight = 0.0;         ///< height of the observed points above the ground
    QString visibleColor = QStringLiteral("#009e73"); ///< colours are names that QColor knows
    QString hiddenColor = QStringLiteral("#d55e00");
    QString noDataColor = QStringLiteral("#000000");
    QString result = sightResultWord(SightResult::Picture);
    QString ramp = QStringLiteral("viridis"); ///< table of the library that colours numbers on the map
    QString skyline;                   ///< file for the horizon of each observer; empty: it is not written
    std::optional<double> skylineStep; ///< degrees between its azimuths; nothing: every breakpoint
    QString statistics;                ///< file for what each observer sees; empty: it is not written

    bool operator==(const IntervisibilityOptions &other) const = default;
};

/// The result of the options; a picture where the word is none of a result.
SightResult sightResult(const IntervisibilityOptions &options);

/// `pointFile` is the path of the observers' shapefile (writePointFile()); empty: the fragment names no file.
/// The side files are not part of the fragment, because a preview writes none.
QString intervisibilityFragment(const IntervisibilityOptions &options, const QString &pointFile);

/// The proposed name of a file that the tool writes besides a product: "<folder>/<product>_<word>.<extension>".
QString sideFileName(const QString &product, const QString &word, const QString &extension);

// The words of such names.
inline const QString skylineWord = QStringLiteral("horizon");
inline const QString statisticsWord = QStringLiteral("statistics");
inline const QString classPictureWord = QStringLiteral("classes");
/// The switch of the tool that the path of the statistics follows.
inline const QString statisticsArgument = QStringLiteral("-Statistics");

/// The files besides the product that the options ask for.
QVector<SideFile> sideFiles(const IntervisibilityOptions &options);

/// The arguments of side files, to be appended to a fragment. Paths are quoted for the runner.
QString sideFileArguments(const QVector<SideFile> &files);

/// Path of the observers' shapefile in such a fragment; empty where it names none.
QString pointFileOf(const QString &fragment);

/// The fragment with another shapefile of observers.
QString withPointFile(const QString &fragment, const QString &pointFile);

/// Whether the options are enough to launch the process. A typed ratio must not be empty; contours need an
/// interval or fixed levels.
bool isComplete(const ShadedOptions &options);
bool isComplete(const SlopeOptions &options);
bool isComplete(const ContourOptions &options);

/// Rows of the scale list, the ratio of the vertical unit to the horizontal one: 0 the same unit, 1 X and Y in
/// metres and Z in feet, 2 X and Y in degrees and Z in metres, 3 X and Y in degrees and Z in feet.
constexpr int scaleRowCount = 4;

/// The ratio of a row of the list as an argument ("0.31"); for row -1 the typed text.
QString scaleRatio(int scaleIndex, const QString &scaleText);
