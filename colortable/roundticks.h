#pragma once

#include <QVector>

/// The next of 1, 2 or 5 times a power of ten that is not below `least`, which is above 0.
double roundStep(double least);

/// Round values (1, 2 or 5 times a power of ten apart) from `first` to `last`, about `most` of them at most.
QVector<double> roundTicks(double first, double last, int most);
