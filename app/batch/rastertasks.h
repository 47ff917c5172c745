#pragma once

#include "app/batch/arguments.h"
#include "app/batch/request.h"

// Tasks on files that are no process: steps of a product, or overviews of any raster. Progress is printed as
// GDAL's tools print it, since the script runner reads it, and notes on standard error; a stop signal ends a
// task.

/// Whether the action is such a task.
bool isRasterTask(BatchAction action);

/// Runs the task. Prints why it failed.
BatchExit runRasterTask(const BatchArguments &arguments);
