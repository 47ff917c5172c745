#pragma once

#include <QString>

// Texts that several panels show in front of a control, in the current language and with a colon at the end.

/// "Computation method:", in front of the choice between two formulas.
QString methodText();

/// Explains the check box "compute at edges".
QString edgesText();
