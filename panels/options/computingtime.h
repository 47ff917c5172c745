#pragma once

#include <QString>

/// Estimated seconds of an intervisibility run over a raster of that size with so many observers.
double estimatedSeconds(double width, double height, double observers);

/// The estimate as the dialog shows it; a value on a bound goes to the lower bucket.
QString computingTimeText(double seconds);
