#pragma once

#include "dataset/demground.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/// What an observer's height counts from.
enum class AltitudeMode
{
    Relative, ///< the ground under the observer
    Absolute  ///< the DEM's zero
};

/// "Relative" or "Absolute": the same word in every language, in lists and in recipes.
QString altitudeModeText(AltitudeMode mode);

/// The mode of such a word in upper or lower case; nothing for any other text.
std::optional<AltitudeMode> readAltitudeMode(const QString &text);

/// An observer of the intervisibility.
struct ObserverPoint
{
    bool enabled = true;
    double x = 0.0; ///< in the DEM's coordinates
    double y = 0.0;
    double height = 1.7; ///< in the DEM's unit of elevations
    AltitudeMode mode = AltitudeMode::Relative;
    double maxDistance = 100000.0; ///< how far the observer sees, in metres; 0: without limit

    QPointF position() const { return {x, y}; }
    bool operator==(const ObserverPoint &other) const = default;
};

constexpr double highestCoordinate = 1e15; ///< a greater number is no coordinate in any unit
constexpr double highestAltitude = 1e7;    ///< a greater number is no altitude on Earth in any unit
constexpr double longestDistance = 1e9;    ///< in metres; many times around the Earth

/// Whether a number from a file or a field can be a coordinate: finite, and not absurdly great.
bool isCoordinate(double number);

/// Whether a number can be a height or an altitude, in the same sense.
bool isAltitude(double number);

/// Why no observer can have the numbers of the point, in a sentence that names the number; empty for a good
/// point. Tables, recipes, pasted lines and vector sources all accept what this function accepts.
QString pointProblem(const ObserverPoint &point);

/// The observer's altitude above the DEM's zero. `ground` is the elevation of the DEM under the observer,
/// nothing where the DEM has no data: a relative height has no altitude there.
std::optional<double> absoluteAltitude(const ObserverPoint &point, const std::optional<double> &ground);

/// Points that were read from lines of text.
struct PointLinesReading
{
    QList<ObserverPoint> points;
    int invalidLines = 0;   ///< number of lines of another form; they are skipped
    int unusablePoints = 0; ///< number of lines with a pointProblem(); they are skipped
};

/// Reads lines "x y [height [mode [distance]]]", separated by tabs, blanks or semicolons, with numbers in the C
/// locale. `defaults` supplies what a line leaves out.
PointLinesReading readPointLines(const QString &text, const ObserverPoint &defaults);

/// Points that were read from a recipe's rows.
struct PointRowsReading
{
    QList<ObserverPoint> points;
    QString problem; ///< which member is not valid, in a sentence; empty for good rows
};

/// Reads a JSON array of objects with the members x, y, height, mode, distance and enabled. x and y are
/// required; the others default to those of ObserverPoint.
PointRowsReading readPointRows(const QVariant &value);

/// The points as readPointRows() reads them.
QVariantList pointRows(const QList<ObserverPoint> &points);

/// An observer in the form that the tool reads.
struct ToolObserver
{
    double x; ///< in the DEM's coordinates
    double y;
    double z;           ///< altitude above the DEM's zero
    double maxDistance; ///< in metres
};

/// The observer as the tool reads it from a copy of the DEM. copyGround: elevation of the copy under the
/// observer; an observer on the DEM's own ground might stand below that of the copy. demGround: that of the
/// DEM, for a place where the copy has no data. Nothing for an observer that is off or has no altitude.
std::optional<ToolObserver> toolObserver(const ObserverPoint &point, const std::optional<double> &copyGround,
                                         const std::optional<double> &demGround);

/// Writes the shapefile "point.shp" into the folder: a layer "point" of 2.5D points without a CRS, with the
/// distances in the field "Max_Dist". Returns its path; empty after any failure.
QString writePointFile(const QString &folder, const QList<ToolObserver> &observers);
