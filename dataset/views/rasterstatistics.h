#pragma once

#include <QString>

#include <functional>

/// Writes the extremes, mean and deviation of each band into the raster or, where its format has no room for
/// them, into a file beside it. A band without values has none. Reads every cell. `progress` receives the
/// finished share, from 0 to 1, and stops when it returns false. Returns why that failed, in a sentence; empty
/// otherwise, also after a stop.
QString writeStatistics(const QString &raster, const std::function<bool(double)> &progress);
