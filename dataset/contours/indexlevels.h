#pragma once

#include <QString>

/// Levels in equal steps, every n-th of which is an index level.
struct IndexLevels
{
    double interval = 0.0; ///< as the contour tool received it; 0: there are no steps
    double offset = 0.0;   ///< the level from which the steps count
    int every = 0;         ///< 0: no level is an index level

    bool operator==(const IndexLevels &other) const = default;

    /// Whether there are index levels at all.
    bool exist() const { return interval > 0.0 && every > 0; }

    /// Whether a level is offset + k · every · interval for a whole number k, which may be negative. Allows for
    /// the rounding of the tool's own sums.
    bool hold(double level) const;
};

/// A level as a map shows it: the shortest decimal number without exponent that has the level's first 12
/// digits, which leaves out the rounding of sums.
QString levelText(double level);
