#include "app/series/DemSeries.h"

#include "app/process/productname.h"
#include "app/recipe/recipeinput.h"
#include "app/run/runplan.h"
#include "dataset/formatfilters.h"
#include "messages/label.h"

#include <QApplication>
#include <QFileInfo>
#include <QPixmap>
#include <QTimer>

#include <algorithm>

namespace
{

QString iconOf(const Recipe &recipe)
{
    return QStringLiteral(":/QuvoGdalUtilities/images/icones/")
        + QString::fromLatin1(processRow(processOf(recipe.options)).icon);
}

/// The first reason of a failed run: the program's own, or the tool's.
QString failureText(const RunOutcome &outcome)
{
    const QString text = outcome.problem.isEmpty() ? outcome.toolText.trimmed() : outcome.problem;
    return text.isEmpty()
        ? labelText({"MESS_ERR_CREAT_IMG", "Une erreur est survenue lors de la création de l'image de sortie."})
        : text;
}

} // namespace

QVector<SeriesRow> seriesRows(const Recipe &recipe, const QStringList &dems)
{
    const ProcessRow &process = processRow(processOf(recipe.options));
    const QString extension = formatExtensions(outputFormat(recipe.outputOptions, process.product)).value(0);
    QVector<SeriesRow> rows;
    for (const QString &dem : dems)
        rows += {dem, productName(dem, QString::fromLatin1(process.suffix), extension)};
    return rows;
}

int existingProducts(const QVector<SeriesRow> &rows)
{
    return static_cast<int>(std::count_if(rows.begin(), rows.end(),
                                          [](const SeriesRow &row) { return QFileInfo::exists(row.product); }));
}

DemSeries::DemSeries(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder)
    : m_tools(tools)
    , m_workFolder(workFolder)
    , m_run(runner)
{
    connect(&m_reading, &QuvoProgressDialog::cancelled, this, [this] { m_stopped = true; });
    connect(&m_run, &ProductRun::finished, this,
            [this] { endRun(SeriesRow::Done, m_run.outcome().warnings.join(QLatin1Char('\n'))); });
    connect(&m_run, &ProductRun::aborted, this, [this] {
        m_stopped = true;
        endRun(SeriesRow::Stopped, QString());
    });
    connect(&m_run, &ProductRun::failed, this,
            [this] { endRun(SeriesRow::Failed, failureText(m_run.outcome())); });
}

void DemSeries::start(const Recipe &recipe, const QVector<SeriesRow> &rows, bool overwrite)
{
    m_recipe = recipe;
    m_rows = rows;
    m_overwrite = overwrite;
    m_stopped = false;
    m_current = 0;
    QTimer::singleShot(0, this, &DemSeries::next);
}

void DemSeries::stop()
{
    m_stopped = true;
    m_run.stop();
}

void DemSeries::abandon()
{
    m_stopped = true;
    m_current = -1;
    m_run.abandon();
}

void DemSeries::next()
{
    if (!isRunning())
        return;
    if (m_stopped || m_current == m_rows.size()) {
        m_current = -1;
        emit finished();
        return;
    }
    begin(m_rows[m_current]);
}

void DemSeries::begin(SeriesRow &row)
{
    const RunPlan plan = planOf(row);
    m_reading.hide();
    if (!isRunning()) // abandoned while the elevations were read
        return;
    if (m_stopped) {
        endRun(SeriesRow::Stopped, QString());
        return;
    }
    if (!plan.problem.isEmpty()) {
        endRun(SeriesRow::Failed, plan.problem);
        return;
    }
    row.product = plan.request.output;
    auto lock = std::make_unique<OutputLock>(writtenFiles(plan));
    if (!lock->problem().isEmpty()) {
        endRun(SeriesRow::Failed, lock->problem());
        return;
    }
    // "a.tif" and "a.asc" have the same product.
    const bool isOwnProduct =
        std::any_of(m_rows.begin(), m_rows.begin() + m_current, [&](const SeriesRow &other) {
            return other.end == SeriesRow::Done && other.product == row.product;
        });
    if (!existingOutput(plan).isEmpty() && (!m_overwrite || isOwnProduct)) {
        endRun(SeriesRow::Kept, QString());
        return;
    }
    m_run.start(plan, std::move(lock), true, iconOf(m_recipe));
}

RunPlan DemSeries::planOf(const SeriesRow &row)
{
    const ProcessOptions options = withOwnSideFiles(m_recipe.options, row.product);
    const RecipeInput prepared =
        prepareInput(options, row.dem, m_recipe.band, m_workFolder, [this] { return readingWasStopped(); });
    if (!prepared.problem.isEmpty())
        return {.problemKind = ProblemKind::Input, .problem = prepared.problem};
    ProcessingRequest request = requestOf(m_recipe, prepared.toolInput);
    request.input = row.dem;
    request.tiles.clear();
    request.output = row.product;
    return planRun(request, m_tools, prepared.sourceFiles);
}

/// Called between the portions of a long read: shows a window with a Stop button and lets it work.
bool DemSeries::readingWasStopped()
{
    if (!m_reading.isVisible() && !m_stopped) {
        m_reading.setPixmap(QPixmap(iconOf(m_recipe)));
        m_reading.setTitle(labelText({"MESS_CALC_MNT_MINMAX", "Calcul du minimum et du maximum du MNT."}));
        m_reading.reset();
        m_reading.show();
    }
    QApplication::processEvents();
    return m_stopped;
}

void DemSeries::endRun(SeriesRow::End end, const QString &text)
{
    m_rows[m_current].end = end;
    m_rows[m_current].text = text;
    ++m_current;
    // From the event loop: the progress window closes after the signal of a stop.
    QTimer::singleShot(0, this, &DemSeries::next);
}
