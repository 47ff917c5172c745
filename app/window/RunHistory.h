#pragma once

#include "app/recipe/recentruns.h"

#include <QElapsedTimer>
#include <QObject>

class ProductRun;

/// Adds the runs of a window to the user's list of recent runs (app/recipe/recentruns).
class RunHistory : public QObject
{
    Q_OBJECT

public:
    /// `run` outlives this object.
    explicit RunHistory(ProductRun &run);

    /// A run with these settings begins. It is added to the list when it ends.
    void begin(const Recipe &recipe);

private:
    void add(RunEnd end);

    RecentRun m_current;
    QElapsedTimer m_clock;
};
