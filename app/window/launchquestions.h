#pragma once

#include "app/run/runplan.h"

class QWidget;

// What the user is told and asked before a run begins.

/// Tells why a name is none for an output.
void warnOfOutput(const QString &name, const QString &problem, QWidget *parent);

/// Tells what keeps a plan from starting.
void warnOfProblem(const RunPlan &plan, QWidget *parent);

// Each of these returns whether the run may begin.

/// Asks before an existing output is replaced.
bool mayOverwrite(const RunPlan &plan, QWidget *parent);

/// Shows the plan's warnings, where it has any.
bool mayGoOn(const RunPlan &plan, QWidget *parent);
