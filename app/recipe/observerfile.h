#pragma once

#include "dataset/workfolder.h"
#include "panels/options/fragments.h"

#include <QString>
#include <QStringList>

// The observers of a recipe: its rows, and the points and lines of a vector source.

/// The observers of a vector source.
struct SourceObservers
{
    QList<ObserverPoint> points;
    QStringList files;       ///< local files of the source, which the product must not replace
    int skippedFeatures = 0; ///< features without a usable geometry
    QString problem;         ///< why the source cannot be used, in a sentence; empty for a good source
};

/// Reads the observers of the options' vector source, with the options' height, mode, distance and step.
/// Returns an empty record where the options name no source.
SourceObservers sourceObservers(const IntervisibilityOptions &options, const DemGround &ground);

/// The argument fragment of an intervisibility run.
struct ToolObservers
{
    QString fragment;
    QStringList sourceFiles; ///< local files of the vector source, which the product must not replace
    QStringList warnings;    ///< sentences that do not keep the run from starting: observers that were left out
    QString problem;         ///< why there is no fragment, in a sentence; empty for a good fragment
};

/// Writes the observers to a point file of the work folder: the options' rows and those of their vector source.
/// The heights of relative observers count from the ground of the DEM's band. `band` counts from 1.
ToolObservers prepareObservers(const IntervisibilityOptions &options, const QString &dem, int band,
                               WorkFolder &workFolder);
