#pragma once

#include "dataset/elevationgrid.h"

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
    Count      ///< whole numbers, coloured as Variation
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

    QRgb color(double value) const;
};

/// A ramp over the values of a product: from its 2nd to its 98th percentile; from 0 where no value is negative;
/// as far below as above 0 for positions; always the whole circle for directions; from 0 to the highest for
/// counts.
ValueRamp rampOver(const ElevationGrid &values, RampKind kind, bool trigonometric = false);

/// The values in the colours of the ramp, one pixel a cell; cells without a value are transparent.
QImage rampPicture(const ElevationGrid &values, const ValueRamp &ramp);

/// The direction of an angle as a compass point from 0 (north) to 15 (north-north-west), clockwise.
int compassPoint(double angle, bool trigonometric);
