#pragma once

#include "app/recipe/recipe.h"
#include "app/run/runplan.h"
#include "app/run/shelltext.h"

#include <QString>

/// What makes a planned run's product when it is pasted into a shell: the tool's command, and that of the
/// overviews behind it; where the tool reads a file of this process, which will be gone, the batch program with
/// the recipe on its standard input. Unlike the window it asks nothing: the batch program keeps a product that
/// exists, a tool replaces it. recipe: that of the run; workFolder: where this process keeps its files.
QString copiedCommand(const RunPlan &plan, const Recipe &recipe, const ToolPaths &tools,
                      const QString &workFolder, Shell shell = nativeShell());
