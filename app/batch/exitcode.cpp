#include "app/batch/exitcode.h"

#include "app/run/ProductRun.h"
#include "app/run/outputname.h"
#include "app/startup/StopSignals.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <cerrno>
#include <cstring>

BatchExit stoppedExit()
{
    constexpr int signalled = 128;
    return static_cast<BatchExit>(signalled + StopSignals::stopSignal());
}

BatchExit exitOfProblem(ProblemKind kind)
{
    switch (kind) {
    case ProblemKind::None:
        return BatchExit::Done;
    case ProblemKind::Tool:
        return BatchExit::Failed;
    case ProblemKind::Input:
        return BatchExit::BadInput;
    case ProblemKind::Replacement:
        return BatchExit::Refused;
    case ProblemKind::Format:
    case ProblemKind::Output:
    case ProblemKind::SideFile:
        break;
    }
    return BatchExit::BadArguments;
}

bool saysDiskFull(const QString &text)
{
    return text.contains(QString::fromLocal8Bit(std::strerror(ENOSPC)))
        || text.contains(QLatin1String("No space left on device"));
}

BatchExit exitOfFailure(const RunOutcome &outcome, const RunPlan &plan)
{
    if (outcome.isDiskFull || saysDiskFull(outcome.toolText) || saysDiskFull(outcome.problem))
        return BatchExit::TryAgain;
    // GDAL reports a full disk in many words. The half product is gone, so that the room which it had counts.
    const QSize size =
        plan.request.part.isNull() ? QSize(plan.dem.width, plan.dem.height) : plan.request.part.size();
    const qint64 needed = expectedProductSize(productRow(plan.request), size.width(), size.height());
    const QStorageInfo disk(QFileInfo(plan.request.output).path());
    return disk.isValid() && disk.bytesAvailable() < needed ? BatchExit::TryAgain : BatchExit::Failed;
}
