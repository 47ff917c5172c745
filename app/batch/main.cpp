#include "app/batch/BatchSeries.h"
#include "app/batch/arguments.h"
#include "app/batch/rastertasks.h"
#include "app/batch/request.h"
#include "app/batch/tiletask.h"
#include "app/run/runplan.h"
#include "app/startup/StopSignals.h"
#include "app/startup/console.h"
#include "app/startup/environment.h"
#include "app/startup/settings.h"
#include "dataset/gdalmessages.h"
#include "messages/QuvoLanguageManager.h"

#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTimer>

#include <memory>

namespace
{

QStringList commandLine(int argc, char **argv)
{
    QStringList texts;
    for (int index = 0; index < argc; ++index)
        texts += QString::fromLocal8Bit(argv[index]);
    return texts;
}

/// A run needs QApplication, since the script runner owns a window, though it is never shown. To print text,
/// the program needs no display. Qt receives only the program's name, because no argument is meant for Qt.
std::unique_ptr<QCoreApplication> makeApplication(BatchAction action, char **argv)
{
    static int programNameOnly = 1;
    if (action != BatchAction::Run)
        return std::make_unique<QCoreApplication>(programNameOnly, argv);
    useOffscreenPlatform();
    // Qt warns where XDG_RUNTIME_DIR is not set, as on servers; without a display nothing needs it.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    auto application = std::make_unique<QApplication>(programNameOnly, argv);
    QLoggingCategory::setFilterRules(QString());
    return application;
}

/// Uses the environment file and the settings of the window.
void setUpEnvironment()
{
    const QString window =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("QuvoDemToolBox"));
    Environment environment = readEnvironment(window);
    environment.language = chosenLanguage(environment.language, environment.messagesPath);
    exportInstallDir(environment.installDir);
    QuvoLanguageManager::getInstance()->defaultSetup(environment.messagesPath, environment.language, QString());
    exportMessageVariables(environment);
    exportGdalVariables(environment.installDir);
    setUpGdal();
}

int refuse(const QString &problem, BatchExit exit)
{
    printError(problem);
    return static_cast<int>(exit);
}

/// Prints what the user asked for; fails where it cannot be written, as on a full disk.
int print(const QString &text)
{
    return static_cast<int>(printOutput(text) ? BatchExit::Done : BatchExit::Failed);
}

int run(const StopSignals &stopSignals, const BatchRequest &batch, bool overwrite)
{
    const RunPlan plan =
        planRun(batch.request, findTools(QCoreApplication::applicationDirPath()), batch.otherInputs);
    if (plan.problemKind != ProblemKind::None)
        return refuse(plan.problem, exitOfProblem(plan.problemKind));
    printError(plan.treatmentNote);
    for (const QString &warning : plan.warnings)
        printError(warning);

    BatchRun batchRun(stopSignals);
    QObject::connect(&batchRun, &BatchRun::finished, qApp,
                     [](BatchExit exit) { QCoreApplication::exit(static_cast<int>(exit)); });
    // From inside the event loop, which exit() needs: a run may end inside start().
    QTimer::singleShot(0, &batchRun, [&] { batchRun.start(plan, overwrite); });
    return QCoreApplication::exec();
}

int runOrPrintOne(const StopSignals &stopSignals, const BatchArguments &arguments)
{
    WorkFolder workFolder;
    const BatchRequest batch = assembleBatch(arguments, workFolder);
    if (StopSignals::stopWasRequested())
        return refuse(stoppedText(), stoppedExit());
    if (!batch.problem.isEmpty())
        return refuse(batch.problem, batch.exit);
    for (const QString &warning : batch.warnings)
        printError(warning);
    if (arguments.action == BatchAction::Run)
        return run(stopSignals, batch, arguments.overwrite);
    return print(printedCommand(batch.request, findTools(QCoreApplication::applicationDirPath()))
                 + QLatin1Char('\n'));
}

int runSeries(const StopSignals &stopSignals, const QVector<BatchArguments> &runs)
{
    BatchSeries series(stopSignals, runs);
    QObject::connect(&series, &BatchSeries::finished, qApp,
                     [](BatchExit exit) { QCoreApplication::exit(static_cast<int>(exit)); });
    QTimer::singleShot(0, &series, &BatchSeries::start);
    return QCoreApplication::exec();
}

int runOrPrint(const BatchArguments &arguments)
{
    const StopSignals stopSignals;
    if (arguments.tiles.tiles)
        return static_cast<int>(runTiles(stopSignals, arguments));
    const BatchRuns batch = splitBatch(arguments);
    if (!batch.problem.isEmpty())
        return refuse(batch.problem, BatchExit::BadArguments);
    if (!arguments.dems.isEmpty() && !arguments.mosaic && arguments.action == BatchAction::Run)
        return runSeries(stopSignals, batch.runs);
    int code = 0;
    for (const BatchArguments &run : batch.runs)
        code = qMax(code, runOrPrintOne(stopSignals, run));
    return code;
}

} // namespace

int main(int argc, char *argv[])
{
    useUtf8Paths();
    const QStringList texts = commandLine(argc, argv);
    const std::unique_ptr<QCoreApplication> application =
        makeApplication(readBatchArguments(texts).action, argv);
    setUpEnvironment();

    BatchArguments arguments = readBatchArguments(texts); // again: problems are now in the user's language
    if (!arguments.problem.isEmpty())
        return refuse(arguments.problem, BatchExit::BadArguments);
    switch (arguments.action) {
    case BatchAction::Help:
        return print(batchHelp());
    case BatchAction::Version:
        return print(batchVersion());
    case BatchAction::List:
        return print(batchList());
    case BatchAction::BuildOverviews:
    case BatchAction::CorrectAspect:
    case BatchAction::FillVoids:
    case BatchAction::SmoothDem:
    case BatchAction::FinishContours:
    case BatchAction::CopyGeoreference:
        return static_cast<int>(runRasterTask(arguments));
    case BatchAction::PrintCommand:
    case BatchAction::Run:
        break;
    }
    constexpr qint64 largestRecipe = 64LL * 1024 * 1024;
    if (arguments.recipeFile == QLatin1String(pipedRecipeName))
        arguments.pipedRecipe = readInput(largestRecipe);
    return runOrPrint(arguments);
}
