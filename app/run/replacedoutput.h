#pragma once

#include "runner/processing.h"

#include <QString>

/// Removes the product that a run replaces together with its side files, so that none of them is mistaken for a
/// part of the new product. Does nothing where no such product exists. A vector product is deleted by its
/// driver if the driver can open it and all its files have the product's name; otherwise the driver might
/// delete files that the product only refers to. Returns why the product still exists, in a sentence; empty
/// otherwise.
QString removeReplaced(const QuvoOutputFile &product);

/// Number of layers of a vector product that a run would replace; 0 for any other file and where none exists.
int layersReplaced(const QuvoOutputFile &product);
