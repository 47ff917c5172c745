#pragma once

#include "runner/processing.h"

#include <QString>
#include <QStringList>

/// The existing files that a finished product replaces, so that none of them is mistaken for a part of it: its
/// outputs (the product is the first), the files that GDAL keeps under its whole name, and the side files of
/// the product that stands there, which are those that its driver lists or, for a vector product, those of its
/// format. Each has the product's folder and its name or base name; other files that the old product refers to
/// are not among them.
QStringList replacedFiles(const QuvoOutputFilesList &outputs);

/// Why the product must not replace the database that stands in its place, in a sentence: the database holds
/// layers or rasters other than the product's. Empty where it holds none, and for formats that are no
/// databases. `layers`: the names of a vector product's layers.
QString otherContentProblem(const QuvoOutputFile &product, const QStringList &layers);

/// Number of layers of a vector product that a run would replace; 0 for any other file and where none exists.
int layersReplaced(const QuvoOutputFile &product);

/// A sentence where a side file that the product would write or replace belongs to another data set of the same
/// base name: the header of "a.img" is the header of "a.bil". Empty otherwise.
QString sharedFileProblem(const QuvoOutputFile &product);
