#pragma once

#include "panels/options/computingtime.h"

#include <functional>

/// Times the intervisibility tool on a reduced copy of the DEM. Panels start no child process: their owner
/// brings an object that does.
class SightTiming
{
public:
    virtual ~SightTiming() = default;

    /// Path of the copy of the whole DEM; empty while there is none, and then nothing can be timed.
    virtual QString copy() const = 0;

    /// Starts the tool with the argument fragment of some observers, or only as long as it takes to start where
    /// the fragment is empty, and returns at once. `then` is called when the times are known, and never where
    /// the tool fails. What still runs of an earlier call is stopped.
    virtual void measure(const QString &fragment, std::function<void(const SightTimes &)> then) = 0;

    /// Stops what runs. The `then` of the last call is not called any more.
    virtual void stop() = 0;

    /// Whether a `then` is still to be called.
    virtual bool isBusy() const = 0;
};
