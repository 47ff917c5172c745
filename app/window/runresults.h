#pragma once

#include "app/run/ProductRun.h"
#include "app/window/processResultDialog.h"

// What the end of a run has to tell, once it has ended so.

ProcessResult finishedResult(const ProductRun &run);
ProcessResult abortedResult(const ProductRun &run);
ProcessResult failedResult(const ProductRun &run);
