#pragma once

#include "dataset/elevationgrid.h"
#include "panels/options/toolinput.h"

#include <QColor>
#include <QImage>
#include <QVector>

/// How the values of a product are coloured.
enum class RampKind
{
    Grey,      ///< from black to white
    Steepness, ///< from pale yellow over orange to dark red, for slopes
    Variation, ///< from pale to dark blue-green, for ruggedness and roughness
    Position,  ///< brown below zero, white at zero, green above
    Direction, ///< a circle of colours: north and 360° are one colour
    Count,     ///< whole numbers, coloured as Variation
    Height ///< heights above the ground, coloured as Variation by round steps, with a colour of its own for 0
};

/// The colours of values from `low` to `high`; values beyond are coloured like the ends.
struct ValueRamp
{
    RampKind kind = RampKind::Grey;
    double low = 0.0;
    double high = 255.0;
    bool trigonometric =
        false;             ///< directions are counter-clockwise from the east, not clockwise from the north
    QVector<QRgb> stops{}; ///< colours in place of those of the kind, evenly spread; empty: the kind's own

    /// Heights whose colours are evenly spread, in rising order: a metre counts for more among low masts than
    /// among mountains. Empty: the colours follow the values themselves.
    QVector<double> steps{};

    ClassTable classes{}; ///< in place of all colours above; without classes: not used

    /// The place of a value on the strip of colours: 0 at the low end to 1 at the high end, and beyond for
    /// values beyond.
    double placeOf(double value) const;

    QRgb color(double value) const;
};

/// Colour of the cells whose ground itself is seen, on a ramp of the kind Height.
constexpr QRgb seenGroundColor = 0xfff0603c;

/// The round heights 0, 2, 5, 10, 20, 50 and so on, up to the first that is not below `highest`; at least up to
/// 10 and at most up to 1000, so that the heights of masts keep most of the colours beside mountains.
QVector<double> heightSteps(double highest);

/// A ramp over the values of a product: from its 2nd to its 98th percentile; from 0 where no value is negative;
/// as far below as above 0 for positions; always the whole circle for directions; from 0 to the highest for
/// counts; over heightSteps() for heights.
ValueRamp rampOver(const ElevationGrid &values, RampKind kind, bool trigonometric = false);

/// The values in the colours of the ramp, one pixel a cell; cells without a value are transparent.
QImage rampPicture(const ElevationGrid &values, const ValueRamp &ramp);

/// The direction of an angle as a compass point from 0 (north) to 15 (north-north-west), clockwise.
int compassPoint(double angle, bool trigonometric);
