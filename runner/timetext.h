#pragma once

#include <QString>
#include <QTime>

/// The time of day that a clock at midnight shows after so many milliseconds: it wraps at 24 hours, and below 0
/// too.
QTime clockTime(qint64 milliseconds);

/// A duration in words, with the units in the language in use: "1 hour(s), 2 minute(s) and 5 second(s)". Units
/// that are 0 are left out, so a duration under a second is an empty text; the null time is "0 second(s)".
QString formatTime(const QTime &duration);

/// How long the rest takes, in milliseconds, when `elapsed` milliseconds brought `percent` (not 0) of the
/// whole.
qint64 remainingTime(qint64 elapsed, int percent);
