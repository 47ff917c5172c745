#pragma once

#include <QString>

/// Writes a run's progress the way GDAL's tools do: "0...10...20", a dot for every 2.5 %, " - done." at the
/// end.
class TerminalProgress
{
public:
    /// What to print when the run reaches the percentage, truncated to a whole one; empty when nothing is new.
    QString advance(int percent);

    /// The rest of a run that ended well: up to "100 - done." and a line feed.
    QString finish();

    /// What to print when the run ended otherwise: a line feed when a line has begun.
    QString abandon();

private:
    QString upTo(int tick);

    int m_tick = -1; ///< the last tick printed; 40 of them make 100 %
};
