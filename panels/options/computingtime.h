#pragma once

#include "dataset/demground.h"
#include "panels/options/observerpoints.h"

#include <QList>
#include <QString>

/// Estimated duration of an intervisibility run in seconds. `width` and `height` are those of the DEM in cells,
/// `observers` is the number of observers.
double estimatedSeconds(double width, double height, double observers);

/// The estimate as a text of the dialog, such as ">10 minutes". A value on a bound belongs to the lower bucket.
QString computingTimeText(double seconds);

// What a run takes on this machine: a few observers are timed on a reduced copy of the DEM.

/// Durations that were measured, in seconds.
struct SightTimes
{
    double start = 0.0; ///< of a run of the tool that computes nothing
    double run = 0.0;   ///< of the run on the copy
};

/// The cells within an observer's reach, about: those of its circle or, where that is smaller, of the grid's
/// part of the square around it.
double cellsWithinReach(const ToolObserver &observer, const DemGround &dem);

/// How much there is to compute for the observers, in no unit: only ratios of it mean anything. It grows more
/// slowly than the cells within reach, because the tool takes what near ground hides in one piece. Measured
/// from 500 to 36 million cells. `dem` may also be a copy of the DEM.
double sightWork(const QList<ToolObserver> &observers, const DemGround &dem);

/// How many of `count` observers to time: one in ten, and fewer where the time of a whole run would be felt;
/// but so many that there is something to measure. `work`: that of one observer on the copy.
int timedObservers(double count, double work);

/// Some of the observers, spread evenly; all of them where there are no more than `most`.
QList<ToolObserver> spread(const QList<ToolObserver> &observers, int most);

/// Seconds that a run takes: `work` is all that there is to compute, `timedWork` what was timed.
double secondsHere(const SightTimes &times, double timedWork, double work);

/// The same as a text of a few figures, such as "ici environ 15 s".
QString hereText(double seconds);
