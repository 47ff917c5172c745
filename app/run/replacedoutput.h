#pragma once

#include "runner/processing.h"

#include <QString>

/// Removes the product that a run is going to replace, together with the files that belong to it, so that
/// nothing of it passes for a part of the new one. Nothing is done where there is none. A vector product goes
/// through its driver when it is one of that driver's and consists of files of its own name alone: a driver's
/// list of a data set's files may name anything. Returns why the product is still there, in a sentence; empty
/// otherwise.
QString removeReplaced(const QuvoOutputFile &product);

/// Number of layers of a vector product that a run would replace; 0 for any other file.
int layersReplaced(const QuvoOutputFile &product);
