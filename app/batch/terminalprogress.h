#pragma once

#include <QString>

/// Formats a run's progress as GDAL's tools print it: "0...10...20", a dot for every 2.5 %, " - done." at the
/// end.
class TerminalProgress
{
public:
    /// The text to print when the run reaches the percentage, rounded down; empty where nothing is added.
    QString advance(int percent);

    /// The text to print when the run succeeded: the rest up to "100 - done." and a line feed.
    QString finish();

    /// The text to print when the run failed or was stopped: a line feed where a line has begun.
    QString abandon();

private:
    QString upTo(int tick);

    int m_tick = -1; ///< number of the last tick that was printed; tick 40 is 100 %
};
