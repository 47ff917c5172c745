#pragma once

#include "app/process/tools.h"
#include "dataset/workfolder.h"
#include "panels/options/sighttiming.h"
#include "runner/QuvoUtilityRunner.h"

#include <QElapsedTimer>

class Previews;

/// Times the intervisibility tool on the reduced copy of the previews, in a child process of its own.
class SightClock : public QObject, public SightTiming
{
    Q_OBJECT

public:
    /// `previews` and `workFolder` outlive this object.
    SightClock(const Previews &previews, const ToolPaths &tools, WorkFolder &workFolder);
    ~SightClock() override;

    QString copy() const override;
    void measure(const QString &fragment, std::function<void(const SightTimes &)> then) override;
    void stop() override;
    bool isBusy() const override { return static_cast<bool>(m_then); }

private:
    void runNextLater();
    void runNext();
    void onEnd();
    void removeProduct();

    const Previews &m_previews;
    ToolPaths m_tools;
    WorkFolder &m_workFolder;
    QuvoUtilityRunner m_runner;
    QElapsedTimer m_clock;
    int m_starts = 0;   ///< number of times that the tool's start was timed
    SightTimes m_times; ///< the start is the shortest one so far
    bool m_isRunning = false;
    bool m_isRun = false;  ///< the last process was the run of the fragment, not a start
    QString m_fragment;    ///< empty: only the start is timed
    int m_firstFolder = 0; ///< those of m_workFolder that hold the product
    int m_endOfFolders = 0;
    std::function<void(const SightTimes &)> m_then;
};
