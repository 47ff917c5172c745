#pragma once

#include "dataset/workfolder.h"
#include "panels/options/fragments.h"

#include <QString>
#include <QStringList>

/// The observers of a vector source.
struct SourceObservers
{
    QList<ObserverPoint> points;
    QStringList files; ///< of the source, which the product must not replace
    int notTaken = 0;  ///< features that give none
    QString problem;   ///< in a sentence; empty for a good source
};

/// Reads the observers of the options' source, with the options' height, mode, distance and step; none where
/// they name no source.
SourceObservers sourceObservers(const IntervisibilityOptions &options, const DemGround &ground);

/// The argument fragment of an intervisibility run, or why there is none.
struct BatchObservers
{
    QString fragment;
    QStringList sourceFiles; ///< of the vector source, which the product must not replace
    QStringList warnings;    ///< sentences that do not keep the run from starting: observers that were left out
    QString problem;         ///< in a sentence; empty for a good fragment
};

/// Writes the file of the observers to the work folder: those of the options' rows, and those of their vector
/// source, with the ground of the DEM's band under the relative ones.
BatchObservers batchObservers(const IntervisibilityOptions &options, const QString &dem, int band,
                              WorkFolder &workFolder);
