#include "app/window/RunHistory.h"

#include "app/run/ProductRun.h"
#include "app/startup/settings.h"

RunHistory::RunHistory(ProductRun &run)
{
    connect(&run, &ProductRun::finished, this, [this] { add(RunEnd::Done); });
    connect(&run, &ProductRun::aborted, this, [this] { add(RunEnd::Stopped); });
    connect(&run, &ProductRun::failed, this, [this] { add(RunEnd::Failed); });
}

void RunHistory::begin(const Recipe &recipe)
{
    m_current.recipe = recipe;
    m_current.started = QDateTime::currentDateTimeUtc();
    m_clock.start();
}

void RunHistory::add(RunEnd end)
{
    if (!m_clock.isValid())
        return;
    constexpr double second = 1000.0; // ms
    m_current.seconds = static_cast<double>(m_clock.elapsed()) / second;
    m_current.end = end;
    m_clock.invalidate();
    addRecentRun(recentRunsFile(),
                 m_current); // no warning: the run counts more than a list that cannot be written
}
