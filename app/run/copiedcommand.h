#pragma once

#include "app/recipe/recipe.h"
#include "app/run/runplan.h"
#include "app/run/shelltext.h"

#include <QString>

/// A command that makes a planned run's product when it is pasted into a shell: the tool's command followed by
/// the one that builds the overviews. Where the tool reads a temporary file of this program or would leave
/// statistics beside the DEM, it is the batch program with the run's recipe on its standard input. The command
/// asks no question: the batch program keeps an existing product, a tool replaces it.
QString copiedCommand(const RunPlan &plan, const Recipe &recipe, const ToolPaths &tools,
                      Shell shell = nativeShell());
