#pragma once

#include <QString>

/// Estimated duration of an intervisibility run in seconds. `width` and `height` are those of the DEM in cells,
/// `observers` is the number of observers.
double estimatedSeconds(double width, double height, double observers);

/// The estimate as a text of the dialog, such as ">10 minutes". A value on a bound belongs to the lower bucket.
QString computingTimeText(double seconds);
