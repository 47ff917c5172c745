#pragma once

#include "app/processes.h"

#include <QString>

/// File name of a tool: the same on every platform.
QString toolFileName(Tool tool);

/// Absolute paths of the tools that stand in the program's folder; empty for one that is missing. A link that
/// leads nowhere counts as a missing tool.
struct ToolPaths
{
    QString dem;
    QString contour;
    QString intervisibility;
    QString translate;

    /// Whether the program can start: the intervisibility tool alone may be missing, kept so on purpose.
    bool isComplete() const { return !dem.isEmpty() && !contour.isEmpty() && !translate.isEmpty(); }
};
ToolPaths findTools(const QString &programFolder);

/// Absolute path at which a tool stands beside the program, whether it is there or not. The search path is
/// never asked.
QString toolPath(const QString &programFolder, Tool tool);

/// Why the tool cannot be run, in a sentence; empty when it can. A link that leads nowhere counts as a missing
/// tool.
QString toolProblem(const QString &programFolder, Tool tool);
