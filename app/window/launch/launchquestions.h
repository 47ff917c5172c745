#pragma once

#include "app/run/runplan.h"

class QWidget;

// The boxes that the user sees before a run begins.

/// Warns that `name` cannot be used as an output. `problem` says why, in a sentence.
void warnAboutOutput(const QString &name, const QString &problem, QWidget *parent);

/// Shows the problem of a plan that cannot start.
void warnAboutProblem(const RunPlan &plan, QWidget *parent);

/// Asks whether the run may replace existing files. Returns true at once where there are none.
bool mayOverwrite(const RunPlan &plan, QWidget *parent);

/// Shows the plan's warnings and asks whether the run may begin. Returns true at once where there are none.
bool mayIgnoreWarnings(const RunPlan &plan, QWidget *parent);
