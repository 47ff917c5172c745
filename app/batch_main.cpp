#include "app/BatchRun.h"
#include "app/batcharguments.h"
#include "app/batchplan.h"
#include "app/console.h"
#include "app/environment.h"
#include "dataset/gdalmessages.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QTimer>

#include <memory>

namespace
{

/// The script runner owns a window, which is never shown here; asked for text alone, the program needs no
/// display.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv)
{
    if (asksForTextOnly(argc, argv))
        return std::make_unique<QCoreApplication>(argc, argv);
    useOffscreenPlatform();
    // Qt warns where no XDG_RUNTIME_DIR is set, as on servers; without a display nothing needs one.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    auto application = std::make_unique<QApplication>(argc, argv);
    QLoggingCategory::setFilterRules(QString());
    return application;
}

int refuse(const BatchPlan &plan)
{
    printError(plan.problem);
    return static_cast<int>(plan.exit);
}

int runBatch(const BatchArguments &arguments)
{
    const QString folder = QCoreApplication::applicationDirPath();
    BatchPlan plan = assembleBatch(arguments, folder);
    if (plan.problem.isEmpty() && arguments.action == BatchAction::PrintCommand) {
        printOutput(plan.command + QLatin1Char('\n'));
        return static_cast<int>(BatchExit::Done);
    }
    if (plan.problem.isEmpty())
        plan = checkBatch(plan, folder);
    if (!plan.problem.isEmpty())
        return refuse(plan);
    for (const QString &warning : qAsConst(plan.warnings))
        printError(warning);

    BatchRun run;
    QObject::connect(&run, &BatchRun::finished, qApp,
                     [](BatchExit exit) { QCoreApplication::exit(static_cast<int>(exit)); });
    // From inside the event loop, since a run may end within start().
    QTimer::singleShot(0, &run, [&] { run.start(plan, arguments.overwrite); });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    useUtf8Paths();
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("QuvoDemBatch"));
    setUpGdal();

    const BatchArguments arguments = readBatchArguments(QCoreApplication::arguments());
    if (!arguments.error.isEmpty()) {
        printError(arguments.error);
        return static_cast<int>(BatchExit::BadArguments);
    }
    switch (arguments.action) {
    case BatchAction::Help:
        printOutput(batchHelp());
        return 0;
    case BatchAction::Version:
        printOutput(batchVersion());
        return 0;
    case BatchAction::List:
        printOutput(batchList());
        return 0;
    case BatchAction::PrintCommand:
    case BatchAction::Run:
        break;
    }
    return runBatch(arguments);
}
