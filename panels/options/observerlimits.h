#pragma once

#include "messages/label.h"

#include <QString>

#include <array>
#include <optional>

/// What an observer looks at, where it is not all within its distance. A value that is not given limits
/// nothing.
struct ObserverLimits
{
    std::optional<double> targetHeight; ///< of what is seen, above the ground, in the DEM's unit of elevations;
                                        ///< without it the ground height of the run counts
    std::optional<double> azimuthFrom;  ///< degrees from north, clockwise; the first direction that is seen;
                                        ///< equal azimuths, as 0 and 360 are, are all directions
    std::optional<double> azimuthTo;    ///< degrees; the direction where the view ends, itself not seen
    std::optional<double> angleFrom;    ///< lowest angle that is seen, in degrees above the horizontal
    std::optional<double> angleTo;      ///< highest angle that is seen
    std::optional<double> leastDistance; ///< nearer ground is not seen, in metres

    bool operator==(const ObserverLimits &other) const = default;
};

/// A field of the limits.
struct LimitField
{
    const char *name;      ///< in recipes and in lines of text
    const char *toolField; ///< in the tool's point file and in vector sources
    std::optional<double> ObserverLimits::*value;
    double lowest; ///< smallest number that is accepted
    double highest;
    Label title;   ///< of the column
    Label meaning; ///< a sentence with the unit
};

constexpr int limitCount = 6;

/// The fields in the order of the table's columns.
const std::array<LimitField, limitCount> &limitFields();

/// Whether the field accepts the number; NaN is never accepted.
bool acceptsLimit(const LimitField &field, double number);

/// Why no observer can have the limits, in a sentence that names the field; empty for good limits.
QString limitsProblem(const ObserverLimits &limits);
