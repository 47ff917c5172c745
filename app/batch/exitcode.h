#pragma once

#include "app/run/runplan.h"

#include <QString>

struct RunOutcome;

/// Exit codes of the batch program. A workflow engine repeats a task that ends with TryAgain. A stop by a
/// signal ends with 128 and the signal's number, as shells report it: 130 for Ctrl-C, 143 for SIGTERM.
enum class BatchExit
{
    Done = 0,         ///< the product is made, or was there already
    Failed = 1,       ///< the run failed
    BadArguments = 2, ///< the command line or the recipe is not valid
    BadInput = 3,     ///< an input cannot be read, or is no longer what was planned with
    Refused = 4,      ///< the run would replace a file that it may not replace
    TryAgain = 75,    ///< the disk is full, or another run writes the same product (EX_TEMPFAIL)
};

/// The code of a run that a signal stopped.
BatchExit stoppedExit();

/// The code of a plan that has a problem.
BatchExit exitOfProblem(ProblemKind kind);

/// The code of a run that failed: TryAgain where the disk of the product has no room for it, otherwise Failed.
BatchExit exitOfFailure(const RunOutcome &outcome, const RunPlan &plan);

/// Whether a text of a tool or of the system says that the disk is full.
bool saysDiskFull(const QString &text);
