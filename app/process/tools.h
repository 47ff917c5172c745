#pragma once

#include "app/process/processes.h"

#include <QString>

/// File name of a tool, which is the same on every platform.
QString toolFileName(Tool tool);

/// Absolute paths of the external tools. The path of a missing tool is empty.
struct ToolPaths
{
    QString dem;
    QString contour;
    QString intervisibility;
    QString translate;
    QString batch; ///< the batch program, which builds overviews; whether the file exists is not checked

    const QString &path(Tool tool) const;

    /// Whether the program can start. Only the intervisibility tool may be missing: kept so on purpose.
    bool isComplete() const { return !dem.isEmpty() && !contour.isEmpty() && !translate.isEmpty(); }
};

/// The tools in the program's folder; PATH is not searched. A link that leads nowhere counts as a missing tool.
ToolPaths findTools(const QString &programFolder);

/// Why the tool cannot be run and, for a link that leads nowhere, how to mend that; empty when it can be run.
QString toolProblem(const ToolPaths &tools, Tool tool);

/// The problems of the tools that keep the program from starting, one a line; empty when it can start.
QString startProblems(const ToolPaths &tools);
