#pragma once

#include "dataset/demground.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/// What an observer's height counts from.
enum class AltitudeMode
{
    Relative, ///< the ground
    Absolute  ///< the DEM's zero
};

/// "Relative" or "Absolute", as the lists and recipes have them.
QString altitudeModeText(AltitudeMode mode);

/// The mode of such a text, whatever its letters' case; none for any other.
std::optional<AltitudeMode> readAltitudeMode(const QString &text);

/// One observer.
struct ObserverPoint
{
    bool enabled = true;
    double x = 0.0; ///< in the DEM's coordinates
    double y = 0.0;
    double height = 1.7; ///< in the DEM's unit of elevations
    AltitudeMode mode = AltitudeMode::Relative;
    double maxDistance = 100000.0; ///< in metres; 0: none

    QPointF position() const { return {x, y}; }
    bool operator==(const ObserverPoint &other) const = default;
};

/// The observer's altitude above the DEM's zero; none where it would count from ground that is not there.
std::optional<double> absoluteAltitude(const ObserverPoint &point, const std::optional<double> &ground);

/// Points that were read from lines of text.
struct PointLinesReading
{
    QList<ObserverPoint> points;
    int invalidLines = 0; ///< number of lines that are not valid points; they are skipped
};

/// Reads lines "x y [height [mode [distance]]]", separated by tabs, blanks or semicolons, with numbers in the C
/// locale. `defaults` supplies what a line leaves out.
PointLinesReading readPointLines(const QString &text, const ObserverPoint &defaults);

/// A point that was read from a recipe's row.
struct PointRowReading
{
    ObserverPoint point;
    QString problem; ///< which member is not valid, in a sentence; empty for a good point
};

/// Reads the members x, y, height, mode, distance and enabled of a row. x and y are required.
PointRowReading readPointRow(const QVariantMap &row);

/// The row of a point, as readPointRow() reads it.
QVariantMap pointRow(const ObserverPoint &point);

/// An observer as the tool gets it.
struct ToolObserver
{
    double x;
    double y;
    double z;           ///< absolute
    double maxDistance; ///< in metres
};

/// Writes a shapefile "point.shp" into the folder: layer "point", 2.5D points without a CRS, their distances in
/// the field "Max_Dist". Returns its path, empty after any failure.
QString writePointFile(const QString &folder, const QList<ToolObserver> &observers);
