#pragma once

#include <QString>
#include <QStringList>

#include <functional>

/// How a task of the batch program ended.
struct TaskEnd
{
    bool isStopped = false;
    QString problem;        ///< why it failed, in a sentence or in GDAL's words; empty otherwise
    QStringList notes = {}; ///< sentences for the user about a task that succeeded
};

/// Receives percentages; returns whether to go on.
using TaskProgress = std::function<bool(int)>;
