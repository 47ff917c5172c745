#pragma once

namespace viewshed
{

/// From now on the signals SIGTERM and SIGINT do not end the process, but make checkStop() throw: a run that
/// has begun to write files must delete them.
void catchStopSignals();

/// Throws Problem if a signal has requested a stop.
void checkStop();

} // namespace viewshed
