#pragma once

#include "panels/options/observerpoints.h"

class DemGround;
class QWidget;

/// Asks for a vector source and for the way to make observers of its features, and returns these observers. For
/// points outside of the DEM it asks for an absolute altitude, or leaves them out. Message boxes report a
/// source that cannot be read, the number of features that were skipped and the number of points that have the
/// default height because the chosen one was missing or not usable. The list is empty when the user
/// cancels or after a failure.
///
/// `dem` is the DEM's path: the file dialog begins in its folder. `values` supplies height, mode and distance
/// of the observers where the source has no heights.
QList<ObserverPoint> importObservers(const QString &dem, const DemGround &ground, const ObserverPoint &values,
                                     QWidget *parent);
