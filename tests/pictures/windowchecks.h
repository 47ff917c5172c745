#pragma once

#include <QSize>
#include <QStringList>

class QWidget;

// What a program can see of a window that a person would call a fault.

/// The faults of a visible window, each with the control's name: a text that is wider than its control, a
/// link that the keyboard does not reach, a control of the Tab key without an accessible name, a control that
/// the Tab key reaches after one that stands below it, and a least size larger than `screen`, in pixels.
QStringList windowProblems(const QWidget &window, const QSize &screen);
