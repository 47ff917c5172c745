#pragma once

#include "app/batch/arguments.h"
#include "app/batch/exitcode.h"
#include "app/startup/StopSignals.h"

/// Makes a product in tiles, or its plan, as the command line says. Runs the event loop, and returns when all
/// is done.
BatchExit runTiles(const StopSignals &stopSignals, const BatchArguments &arguments);
