#pragma once

#include "app/batch/arguments.h"
#include "app/batch/taskend.h"

// The steps of a contour product that surround the contour tool. Their --set are the fields of ContourOptions.

/// Writes a smoothed copy of the DEM.
TaskEnd smoothDemTask(const QString &dem, const QString &smoothed, const BatchArguments &arguments,
                      const TaskProgress &progress);

/// Makes the product of the file that the contour tool wrote (--lines).
TaskEnd finishContoursTask(const QString &dem, const QString &product, const BatchArguments &arguments,
                           const TaskProgress &progress);
