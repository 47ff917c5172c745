#pragma once

#include "panels/options/observerpoints.h"

class ComputingEstimate;
class DemGround;
class QWidget;

/// Asks for a vector source, for its layer where it has several, and for the way to make observers of its
/// features where there is a choice; returns these observers. For points outside of the DEM it asks for an
/// absolute altitude, or leaves them out. Message boxes report a source that cannot be read, the number of
/// features that were skipped, of values that no observer can have, and of points that have the default height
/// because the chosen one was missing or not usable. A line beside `button` confirms the import and names the
/// CRS of the source where it is not that of the DEM. The list is empty when the user cancels or after a
/// failure.
///
/// `dem` is the DEM's path: the file dialog begins in its folder. `values` supplies height, mode and distance
/// of the observers where the source has no heights. `estimate` measures what the dialog says of the computing
/// time; it may be null.
QList<ObserverPoint> importObservers(const QString &dem, const DemGround &ground, const ObserverPoint &values,
                                     ComputingEstimate *estimate, QWidget *button);
