#pragma once

#include "app/recipe/recipe.h"

#include <QDateTime>
#include <QList>
#include <QString>

// The runs of the window that were made last, kept in a JSON file of the user's.

/// How a run ended.
enum class RunEnd
{
    Done,
    Stopped,
    Failed
};

/// A run that is over.
struct RecentRun
{
    QDateTime started;
    RunEnd end = RunEnd::Done;
    double seconds = 0.0; ///< that it took
    Recipe recipe;        ///< with which it can be made again
};

constexpr int mostRecentRuns = 50;

/// The runs of the file, the newest first, so many at most. What is damaged in it is left out; a file that is
/// none gives none.
QList<RecentRun> readRecentRuns(const QString &file, int most = mostRecentRuns);

/// Puts a run before those of the file, which keeps the newest 50, as far as 16 MiB hold them. Returns whether
/// they were written.
bool addRecentRun(const QString &file, const RecentRun &run);

/// "0:07", "12:30" or "1:02:03".
QString durationText(double seconds);

/// "Done", "Stopped" or "Failed" in the language in use.
QString runEndText(RunEnd end);
