#include "viewshed/io/stop.h"

#include "viewshed/problem.h"

#include <csignal>

namespace viewshed
{

namespace
{

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int /*signal*/)
{
    stopRequested = 1;
}

} // namespace

void catchStopSignals()
{
    std::signal(SIGTERM, requestStop);
    std::signal(SIGINT, requestStop);
}

void checkStop()
{
    if (stopRequested != 0)
        throw Problem("The work was stopped.");
}

} // namespace viewshed
