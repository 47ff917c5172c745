#include "app/preview/Previews.h"

#include "app/preview/previewgeometry.h"
#include "app/process/productsteps.h"
#include "dataset/overviews.h"
#include "panels/options/contours/contourinput.h"
#include "runner/QuvoScriptRunner.h"
#include "runner/outputfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

constexpr int pauseAfterMove = 120; // ms; a turn of the wheel moves the view several times
constexpr int patience = 1000;      // ms that an outdated computation may take in all

/// Identifies the file, its state and the part that a reduced copy is made of; empty without a DEM.
QString sourceName(const PreviewDem &dem, const QRect &part)
{
    if (dem.path.isEmpty())
        return {};
    return QStringLiteral("%1 %2 %3,%4,%5,%6")
        .arg(dem.path, dem.state, QString::number(part.x()), QString::number(part.y()),
             QString::number(part.width()), QString::number(part.height()));
}

/// Path of a file called `name` in a folder of its own. `file` keeps the path from one call to the next. A
/// folder that was removed meanwhile is made again. Empty when no folder can be made.
QString fileInOwnFolder(WorkFolder &workFolder, QString &file, const QString &name)
{
    if (file.isEmpty()) {
        const QString folder = workFolder.newFolder();
        if (folder.isEmpty())
            return {};
        file = folder + QLatin1Char('/') + name;
    }
    QDir().mkpath(QFileInfo(file).path());
    return file;
}

} // namespace

Previews::Previews(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder,
                   RequestMaker makeRequest)
    : m_runner(runner)
    , m_tools(tools)
    , m_workFolder(workFolder)
    , m_makeRequest(std::move(makeRequest))
{
    m_pause.setSingleShot(true);
    m_patience.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &Previews::runNext);
    connect(&m_patience, &QTimer::timeout, this, &Previews::expire);
    connect(&runner, &QuvoScriptRunner::updateProgress, this, &Previews::onProgress);
    connect(&runner, &QuvoScriptRunner::done, this, &Previews::onDone);
    connect(&runner, &QuvoScriptRunner::error, this, &Previews::onError);
}

Previews::~Previews()
{
    hold();
}

void Previews::setShown(bool shown)
{
    m_queue.setShown(shown);
    scheduleNext();
}

void Previews::setDem(const PreviewDem &dem)
{
    m_dem = dem;
    m_hasAverages.reset();
    setPart(QRect(QPoint(0, 0), dem.size));
}

void Previews::setPart(const QRect &part)
{
    m_part = part;
    m_queue.setSource(sourceName(m_dem, part));
    if (isWhole() && sourceName(m_dem, m_part) == m_wholeSource) {
        m_queue.haveReduction();
        m_copy = m_wholeCopy;
        emit reduced();
    }
    scheduleNext(isWhole() ? 0 : pauseAfterMove);
}

void Previews::renew()
{
    m_wholeSource.clear();
    m_queue.setSource({});
    setPart(m_part);
}

QString Previews::wholeCopy() const
{
    const QRect whole(QPoint(0, 0), m_dem.size);
    return !m_wholeSource.isEmpty() && m_wholeSource == sourceName(m_dem, whole) ? m_wholeCopy : QString();
}

void Previews::update(bool complete)
{
    m_queue.setComplete(complete);
    m_queue.invalidate();
    expire();
    scheduleNext();
}

void Previews::replace(bool complete)
{
    m_queue.setComplete(complete);
    m_queue.invalidate();
    m_queue.discard();
    scheduleNext();
}

/// Stops a computation that is outdated and has had its time.
void Previews::expire()
{
    if (m_patience.isActive() || m_queue.running() != PreviewStep::Compute)
        return;
    m_queue.expire();
    stopStaleStep();
    scheduleNext();
}

void Previews::hold()
{
    m_queue.hold();
    stopStaleStep();
}

void Previews::release()
{
    m_queue.release();
    scheduleNext();
}

/// The next step begins after the pause, in milliseconds; a pause that runs already is not shortened.
void Previews::scheduleNext(int pause)
{
    stopStaleStep();
    if (pause > 0 || !m_pause.isActive())
        m_pause.start(pause);
}

void Previews::stopStaleStep()
{
    if (!m_queue.isStale())
        return;
    m_runner.stop();
    endStep(false);
    emit interrupted();
}

void Previews::endStep(bool succeeded)
{
    m_queue.end(succeeded);
    removeSideFiles();
}

void Previews::removeSideFiles()
{
    m_workFolder.removeFolders(m_firstSideFolder, m_endOfSideFolders);
    m_firstSideFolder = m_endOfSideFolders = 0;
}

void Previews::runNext()
{
    if (m_queue.next() == PreviewStep::Compute && !QFile::exists(m_copy))
        m_queue.loseReduction(); // something has cleaned the temporary directory
    switch (m_queue.next()) {
    case PreviewStep::Reduce:
        reduce();
        break;
    case PreviewStep::Compute:
        compute();
        break;
    case PreviewStep::None:
        break;
    }
}

void Previews::begin(PreviewStep step, const ProductSteps &steps, const QuvoOutputFile &output)
{
    m_queue.begin(step);
    if (step == PreviewStep::Reduce)
        emit reductionStarted();
    else
        emit computationStarted();
    if (output.path.isEmpty() || !steps.problem.isEmpty()) {
        onError(steps.problem);
        return;
    }
    m_patience.start(patience);
    m_computing.start();
    m_runner.setShares(sharesOf(steps));
    m_runner.run(commandsOf(steps), outputsOf(steps, {output}), NoProgressWindow);
}

void Previews::reduce()
{
    const QString copy =
        fileInOwnFolder(m_workFolder, isWhole() ? m_wholeCopy : m_partCopy, QStringLiteral("tempoReducedImg"));
    m_copy = copy;
    if (isWhole())
        m_wholeSource.clear();
    QFile::remove(copy);
    QFile::remove(copy + QStringLiteral(".aux.xml"));
    Reduction reduction{.dem = m_dem.path,
                        .demSize = m_dem.size,
                        .georeferenced = m_dem.georeferenced,
                        .part = m_part,
                        .copy = copy};
    constexpr double quickCells = 40e6; // they are read in about a second
    const double cells = static_cast<double>(m_part.width()) * m_part.height();
    if (cells <= quickCells && !m_hasAverages)
        m_hasAverages = hasAveragedOverviews(m_dem.path, m_dem.band);
    reduction.ignoresOverviews = cells <= quickCells && !*m_hasAverages;
    ProductSteps steps;
    steps.steps = {{.command = processCommand(m_tools.translate, reductionArguments(reduction))}};
    begin(PreviewStep::Reduce, steps, {copy, QStringLiteral("GTiff"), QuvoOutputFileKind::Raster});
}

void Previews::compute()
{
    m_firstSideFolder = m_workFolder.folderCount();
    std::optional<ProcessingRequest> request = m_makeRequest(m_copy);
    const QString stepsFolder = m_workFolder.newFolder();
    m_endOfSideFolders = m_workFolder.folderCount();
    if (!request || !request->process) {
        m_queue.setComplete(false);
        endStep(true);
        return;
    }
    const bool vector = processRow(*request->process).product == ProductKind::Vector;
    request->input = m_copy;
    // The contour tool makes a folder where the name has another extension.
    const QString name = QStringLiteral("tempoPreviewImage") + (vector ? QStringLiteral(".shp") : QString());
    m_product = fileInOwnFolder(m_workFolder, vector ? m_vectorProduct : m_rasterProduct, name);
    request->output = m_product;
    // A preview shows the whole DEM in its own grid.
    request->part = QRect();
    const double reduction = static_cast<double>(m_part.width()) / reducedSize(m_part.size()).width();
    request->outputOptions = {.fillDistance = request->outputOptions.fillDistance / reduction,
                              .asIs = request->outputOptions.asIs};
    request->toolInput.contours = inLargerCells(request->toolInput.contours, reduction);
    const QuvoOutputFile output = declaredOutputs(*request).first();
    deleteOutputFiles({{output}});
    m_request = *request;
    DemFacts copy = request->cellUse.neighbours ? readDemFacts(m_copy, request->band) : DemFacts();
    copy.isGeoreferenced = m_dem.georeferenced; // the copy of another DEM counts cells
    m_isTurned = treatmentOf(*request, copy).turn && !isRotated(copy);
    constexpr double tolerance = 0.02; // of the size of the cells, less than a picture shows
    begin(
        PreviewStep::Compute,
        productSteps(*request, copy, m_tools, stepsFolder, {.tolerance = tolerance, .isGeoreferenced = false}),
        output);
}

void Previews::onProgress(int percent)
{
    if (m_queue.running() == PreviewStep::Reduce)
        emit reducingProgress(m_runner.listProgress(percent));
    else if (m_queue.running() == PreviewStep::Compute)
        emit computingProgress(m_runner.listProgress(percent));
}

void Previews::onDone()
{
    const PreviewStep step = m_queue.running();
    if (step == PreviewStep::None)
        return;
    m_isOutdated = m_queue.isOutdated();
    m_queue.end(true);
    if (step == PreviewStep::Reduce) {
        if (isWhole())
            m_wholeSource = sourceName(m_dem, m_part);
        emit reduced();
    } else {
        m_computingSeconds = static_cast<double>(m_computing.nsecsElapsed()) / 1e9;
        emit computed();
    }
    removeSideFiles();
    if (!m_pause.isActive())
        runNext();
}

void Previews::onError(const QString &toolText)
{
    const PreviewStep step = m_queue.running();
    if (step == PreviewStep::None)
        return;
    const bool isOutdated = m_queue.isOutdated();
    const QString startProblem = m_runner.startProblem();
    const QString reason = startProblem.isEmpty() ? toolText : startProblem;
    endStep(false);
    if (isOutdated) { // the newer options may be good ones
        emit interrupted();
        scheduleNext();
        return;
    }
    if (step == PreviewStep::Reduce)
        emit reductionFailed(reason);
    else
        emit computationFailed(reason);
}
