#include "app/window/launch/Launch.h"

#include "app/recipe/openedrecipe.h"
#include "app/run/copiedcommand.h"
#include "app/window/launch/launchquestions.h"
#include "app/window/launch/processResultDialog.h"
#include "messages/Prompt.h"
#include "panels/optionsWidget.h"
#include "runner/desktopnotice.h"

#include <QFileInfo>
#include <QTimer>
#include <QWindow>

#include <utility>

Launch::Launch(QuvoScriptRunner &runner, const ToolPaths &tools, Window window)
    : m_tools(tools)
    , m_window(std::move(window))
    , m_run(runner)
{ }

Launch::~Launch() = default;

Recipe Launch::recipe() const
{
    return recipeOf(m_window.request(), m_window.panel()->processOptions());
}

std::optional<Recipe> Launch::recipeToRun() const
{
    const optionsWidget *panel = m_window.panel();
    if (!panel)
        return std::nullopt;
    const Recipe shown = recipe();
    QString problem = optionsProblem(shown.options);
    if (problem.isEmpty())
        problem = panel->missing();
    if (problem.isEmpty())
        return shown;
    Prompt::warning(m_window.widget, problem);
    return std::nullopt;
}

std::optional<RunPlan> Launch::currentPlan() const
{
    if (!m_window.mayLaunch() || !recipeToRun())
        return std::nullopt;
    const auto toolInput = m_window.panel()->launchInput();
    if (!toolInput)
        return std::nullopt;
    ProcessingRequest request = m_window.request();
    request.toolInput = *toolInput;
    const RunPlan plan = planRun(request, m_tools);
    if (plan.problemKind == ProblemKind::None)
        return plan;
    warnAboutProblem(plan, m_window.widget);
    return std::nullopt;
}

QString Launch::commandToCopy() const
{
    const auto plan = currentPlan();
    return plan ? copiedCommand(*plan, recipe(), m_tools) : QString();
}

bool Launch::start()
{
    auto planned = currentPlan();
    if (!planned)
        return false;
    RunPlan &plan = *planned;
    plan.warnings += m_window.panel()->launchWarnings();
    auto lock = std::make_unique<OutputLock>(writtenFiles(plan));
    if (!lock->problem().isEmpty()) {
        Prompt::warning(m_window.widget, lock->problem());
        return false;
    }
    if (!mayOverwrite(plan, m_window.widget) || !mayIgnoreWarnings(plan, m_window.widget))
        return false;
    const Recipe settings = recipeOf(plan.request, m_window.panel()->processOptions());
    m_command = copiedCommand(plan, settings, m_tools);
    m_source = productSource(settings);
    emit began(settings);
    const QString icon = QStringLiteral(":/QuvoGdalUtilities/images/icones/")
        + QString::fromLatin1(processRow(*plan.request.process).icon);
    m_run.start(plan, std::move(lock), true, icon);
    return true;
}

void Launch::stopSilently()
{
    if (!m_run.isRunning())
        return;
    disconnect(&m_run, nullptr, m_window.widget, nullptr);
    m_run.stop();
}

void Launch::showFinished()
{
    showResult(finishedResult(m_run));
}

void Launch::showAborted()
{
    // The progress window is closing while this is called. The result window is shown after that.
    QTimer::singleShot(0, this, [this] { showResult(abortedResult(m_run)); });
}

void Launch::showFailed()
{
    showResult(failedResult(m_run));
}

void Launch::showResult(ProcessResult result)
{
    result.shellCommand = m_command;
    result.source = m_source;
    auto dialog = new processResultDialog(result, m_window.widget);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
    announceEnd(m_window.widget->windowHandle(), result.title,
                (QFileInfo(result.file).fileName() + QLatin1Char('\n') + result.text).trimmed());
    emit ended();
}
