#pragma once

#include "app/recipe/recentruns.h"

#include <QElapsedTimer>
#include <QObject>

class ProductRun;

/// Notes the runs of a window in the user's list (app/recipe/recentruns).
class RunHistory : public QObject
{
    Q_OBJECT

public:
    explicit RunHistory(ProductRun &run);

    /// A run begins; how it ends is noted when it does.
    void begin(const Recipe &recipe);

private:
    void note(RunEnd end);

    RecentRun m_current;
    QElapsedTimer m_clock;
};
