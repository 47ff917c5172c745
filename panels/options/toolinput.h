#pragma once

#include <QString>

/// What the options of a process contribute to the tool's command line.
struct ToolInput
{
    QString fragment;       ///< argument fragment; it carries its own blanks and is inserted as it stands
    QString colorTableFile; ///< colour table that the tool reads; empty: the process needs none
    /// The tool reads a file of the work folder, which is removed when this program ends.
    bool readsTemporaryFile = false;
};
