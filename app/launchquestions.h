#pragma once

#include "app/runplan.h"

class QWidget;

// What the user is asked before a run begins. Each returns whether it may.

/// Asks before an existing output is replaced.
bool mayOverwrite(const RunPlan &plan, QWidget *parent);

/// Shows the plan's warnings, where it has any.
bool mayGoOn(const RunPlan &plan, QWidget *parent);
