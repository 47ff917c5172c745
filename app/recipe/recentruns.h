#pragma once

#include "app/recipe/recipe.h"

#include <QDateTime>
#include <QList>
#include <QString>

// The list of recent runs of the window, a JSON file in the folder of the user's settings.

/// How a run ended.
enum class RunEnd
{
    Done,
    Stopped,
    Failed
};

/// A run that has ended.
struct RecentRun
{
    QDateTime started;
    RunEnd end = RunEnd::Done;
    double seconds = 0.0; ///< duration of the run
    Recipe recipe;        ///< settings of the run
};

constexpr int mostRecentRuns = 50;

/// At most `most` runs, newest first. Damaged entries are skipped; an unreadable file gives an empty list.
QList<RecentRun> readRecentRuns(const QString &file, int most = mostRecentRuns);

/// Puts a run at the head of the file's list. The file keeps the newest `mostRecentRuns` runs, fewer where they
/// would exceed 16 MiB. Returns whether the file was written.
bool addRecentRun(const QString &file, const RecentRun &run);

/// Formats a duration in seconds as "0:07", "12:30" or "1:02:03".
QString durationText(double seconds);

/// "Done", "Stopped" or "Failed" in the language in use.
QString runEndText(RunEnd end);
