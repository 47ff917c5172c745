#pragma once

#include "dataset/workfolder.h"
#include "panels/options/fragments.h"

#include <QString>
#include <QStringList>

// The observers of a recipe: those of its list, and those on the points and lines of a vector source.

/// The observers of a vector source.
struct SourceObservers
{
    QList<ObserverPoint> points;
    QStringList files;       ///< local files of the source, which the product must not replace
    int skippedFeatures = 0; ///< number of features without a usable geometry
    QString problem;         ///< why the source cannot be used, in a sentence; empty for a good source
};

/// Reads the observers of the options' vector source. All of them have the options' height, mode and distance;
/// on lines they stand a step apart. Returns an empty record where the options name no source.
SourceObservers sourceObservers(const IntervisibilityOptions &options, const DemGround &ground);

/// The argument fragment of an intervisibility run.
struct ToolObservers
{
    QString fragment;
    QStringList sourceFiles; ///< local files of the vector source, which the product must not replace
    QStringList warnings;    ///< sentences about observers that were left out; the run may start
    QString problem;         ///< why there is no fragment, in a sentence; empty for a good fragment
};

/// Writes the observers of the options and of their vector source to a point file in the work folder, and
/// formats the argument fragment. The heights of relative observers count from the ground of the DEM's band.
/// `band` counts from 1.
ToolObservers prepareObservers(const IntervisibilityOptions &options, const QString &dem, int band,
                               WorkFolder &workFolder);
