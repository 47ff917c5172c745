#pragma once

#include "app/processes.h"

#include <QString>

/// File name of a tool: the same on every platform.
QString toolFileName(Tool tool);

/// Absolute path at which a tool stands beside the program, whether it is there or not. The search path is
/// never asked.
QString toolPath(const QString &programFolder, Tool tool);

/// Why the tool cannot be run, in a sentence; empty when it can. A link that leads nowhere counts as a missing
/// tool.
QString toolProblem(const QString &programFolder, Tool tool);
