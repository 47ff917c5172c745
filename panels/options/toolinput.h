#pragma once

#include <QString>

/// What the options of a process contribute to the command line of the tool.
struct ToolInput
{
    QString fragment;       ///< argument fragment; it carries its own blanks and is inserted unchanged
    QString colorTableFile; ///< path of the colour table that the tool reads; empty: the process has no table
    /// Whether the tool reads a file of the work folder, which is removed when this program ends.
    bool readsTemporaryFile = false;
    QString attribute{}; ///< attribute that the tool writes into a vector product; empty: none
};
