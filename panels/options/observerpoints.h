#pragma once

#include "dataset/demground.h"
#include "panels/options/observerlimits.h"

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
    QString name;                  ///< one line for display and results; empty: no name
    ObserverLimits limits;

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

/// Points that were read from a recipe's rows.
struct PointRowsReading
{
    QList<ObserverPoint> points;
    QString problem; ///< which member is not valid, in a sentence; empty for good rows
};

/// Reads a JSON array of objects with the members x, y, height, mode, distance, enabled, name and those of
/// limitFields(). x and y are required; the others default to those of ObserverPoint.
PointRowsReading readPointRows(const QVariant &value);

/// The points as readPointRows() reads them. Empty names and limits that are not given have no member.
QVariantList pointRows(const QList<ObserverPoint> &points);

/// An observer in the form that the tool reads.
struct ToolObserver
{
    double x; ///< in the DEM's coordinates
    double y;
    double z;           ///< altitude above the DEM's zero
    double maxDistance; ///< in metres
    QString name;       ///< empty: no name
    ObserverLimits limits;
};

/// The observer as the tool reads it from a copy of the DEM. copyGround: elevation of the copy under the
/// observer; an observer on the DEM's own ground might stand below that of the copy. demGround: that of the
/// DEM, for a place where the copy has no data. Nothing for an observer that is off or has no altitude.
std::optional<ToolObserver> toolObserver(const ObserverPoint &point, const std::optional<double> &copyGround,
                                         const std::optional<double> &demGround);
