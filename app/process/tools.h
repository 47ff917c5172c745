#pragma once

#include "app/process/processes.h"

#include <QString>

/// File name of a tool: the same on every platform.
QString toolFileName(Tool tool);

/// Absolute paths of the external tools; empty for one that is missing.
struct ToolPaths
{
    QString dem;
    QString contour;
    QString intervisibility;
    QString translate;
    QString batch; ///< the batch program beside them, which builds overviews

    const QString &path(Tool tool) const;

    /// Whether the program can start: the intervisibility tool alone may be missing, kept so on purpose.
    bool isComplete() const { return !dem.isEmpty() && !contour.isEmpty() && !translate.isEmpty(); }
};

/// The tools that stand in the program's folder; the search path is never asked. A link that leads nowhere
/// counts as a missing tool.
ToolPaths findTools(const QString &programFolder);

/// Why the tool cannot be run, in a sentence; empty when it can.
QString toolProblem(const ToolPaths &tools, Tool tool);
