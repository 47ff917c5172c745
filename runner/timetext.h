#pragma once

#include <QString>
#include <QTime>

/// A duration in milliseconds as a time since midnight. Durations of 24 hours and more, and negative ones, wrap
/// around.
QTime clockTime(qint64 milliseconds);

/// A duration in words, with the units in the current language: "1 hour(s), 2 minute(s) and 5 second(s)". Units
/// of value 0 are left out, so a duration under a second gives an empty text. The null time gives "0
/// second(s)".
QString formatTime(const QTime &duration);

/// Estimated remaining time in milliseconds, truncated, when the first `percent` (not 0) of the work took
/// `elapsed` milliseconds. Negative above 100 percent.
qint64 remainingTime(qint64 elapsed, int percent);
