#include "app/process/productsteps.h"

#include "dataset/pathencoding.h"
#include "dataset/views/demviews.h"
#include "dataset/views/metriccrs.h"
#include "dataset/views/truecells.h"
#include "dataset/views/viewtexts.h"
#include "runner/quoting.h"

#include <QFile>
#include <QMargins>
#include <QtMath>

#include <algorithm>

namespace
{

/// A DEM on the way to the product: the file that the next step reads, and how much of it the product covers.
struct Stage
{
    ViewSource dem;
    QMargins margins; ///< columns and rows at the sides that only serve as neighbours
    DemFacts grid;    ///< of the product: the DEM without the margins
    DemFacts whole;   ///< the DEM that the grid is a part of
    int firstRow = 0; ///< row of the whole DEM that is the first of the grid
};

/// Rows of the product that the tool computes with one size of cells.
struct SizedStrip
{
    RowStrip rows; ///< of the product
    QSizeF cell;   ///< in metres
};

/// The steps of a product, and the files between them.
class Way
{
public:
    Way(const ProcessingRequest &request, const ToolPaths &tools, const QString &folder)
        : m_request(request)
        , m_tools(tools)
        , m_folder(folder)
    { }

    ProductSteps steps;

    /// Path of a file for this run.
    QString file(const QString &name) const { return m_folder + QLatin1Char('/') + name; }

    /// Writes a small file; a failure becomes the problem of the steps.
    void write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush())
            fail(labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."}).arg(path));
    }

    void fail(const QString &problem)
    {
        if (steps.problem.isEmpty())
            steps.problem = problem;
    }

    void add(const QString &command, const QString &title, double share, const QStringList &intermediates = {})
    {
        steps.steps += {command, title, intermediates, share};
    }

    /// Runs the process's tool; `output` is the product or an intermediate file.
    void addTool(const ViewSource &input, const QString &output, const OutputOptions &options, double share)
    {
        ProcessingRequest request = m_request;
        request.input = input.path;
        request.band = input.facts.band;
        request.output = output;
        request.outputOptions = options;
        const bool isProduct = output == m_request.output;
        add(runCommand(request, m_tools), toolTitle(), share, isProduct ? QStringList() : QStringList{output});
    }

    void addBatch(const QString &task, const QString &raster, const ViewSource &dem, const QString &more,
                  const QString &title, double share, const QStringList &intermediates = {})
    {
        add(processCommand(m_tools.batch,
                           QStringLiteral("--%1 ").arg(task) + quotedArgument(raster)
                               + QStringLiteral(" --input ") + quotedArgument(dem.path)
                               + QStringLiteral(" --band %1").arg(dem.facts.band) + more),
            title, share, intermediates);
    }

    void addCorrection(const ViewSource &dem, const QString &raster)
    {
        const bool trigonometric = m_request.cellUse.trigonometric;
        addBatch(QStringLiteral("correct-aspect"), raster, dem,
                 trigonometric ? QStringLiteral(" --set trigonometric=true") : QString(), toolTitle(), 0.5);
    }

    void addGeoreference(const ViewSource &dem)
    {
        addBatch(QStringLiteral("georeference"), m_request.output, dem, {}, toolTitle(), 0.02);
    }

    /// Copies a raster, or a view of several, to another file.
    void addCopy(const QString &arguments, const QString &from, const QString &to, const QString &title,
                 double share)
    {
        const bool isIntermediate = to.startsWith(m_folder);
        add(processCommand(m_tools.translate,
                           arguments + quotedArgument(from) + QLatin1Char(' ') + quotedArgument(to)),
            title, share, isIntermediate ? QStringList{to} : QStringList());
    }

    QString toolTitle() const { return labelText(processRow(*m_request.process).stepTitle); }

private:
    const ProcessingRequest &m_request;
    const ToolPaths &m_tools;
    QString m_folder;
};

/// What the tool writes.
ProductCells productCells(const ProcessingRequest &request)
{
    if (processRow(*request.process).bytesPerCell == 1)
        return {QStringLiteral("Byte"), 0.0};
    return {QStringLiteral("Float32"), request.cellUse.zeroWithoutData ? std::nullopt : std::optional(-9999.0)};
}

/// The part as a rectangle of a grid that is turned to the north and west.
QRect mirrored(const QRect &part, const DemFacts &facts)
{
    QRect turned = part;
    if (facts.toGround[1] < 0.0)
        turned.moveLeft(facts.width - part.x() - part.width());
    if (facts.toGround[5] > 0.0)
        turned.moveTop(facts.height - part.y() - part.height());
    return turned;
}

/// The part with `cells` more cells at each side, as far as the DEM reaches.
QRect withMargin(const QRect &part, int cells, const DemFacts &facts)
{
    return part.adjusted(-cells, -cells, cells, cells) & QRect(0, 0, facts.width, facts.height);
}

/// The next step reads a view in the place of the DEM.
void useView(Way &way, Stage &stage, const DemView &view)
{
    if (view.path.isEmpty() || !view.facts.isOpen)
        way.fail(
            view.problem.isEmpty()
                ? labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."}).arg(view.path)
                : view.problem);
    DemFacts facts = view.facts;
    facts.elevationUnit = stage.dem.facts.elevationUnit; // GDAL's translation drops the unit of a part
    stage.dem = {view.path, facts};
    stage.grid = facts;
    stage.whole = facts;
}

bool isReprojected(const ProcessingRequest &request)
{
    return !request.outputOptions.reproject.isEmpty() && mayReproject(*request.process);
}

/// The DEM with its rows from the north, where the treatment says so.
void turn(Way &way, Stage &stage, const DemTreatment &treatment)
{
    if (treatment.turn)
        useView(way, stage,
                writeTurnedView(stage.dem.path, stage.dem.facts, way.file(QStringLiteral("turned.vrt"))));
}

/// The DEM in the CRS of the request.
void reproject(Way &way, Stage &stage, const QString &crs)
{
    const DemFacts &facts = stage.dem.facts;
    const QString proposed = crs == QLatin1String("auto") ? metricCrs(facts) : QString();
    useView(way, stage,
            writeReprojectedView(stage.dem.path, facts, proposed.isEmpty() ? crs : proposed,
                                 way.file(QStringLiteral("projected.vrt"))));
}

/// Gives the tool the observers in the CRS of the reprojected DEM.
void moveObservers(Way &way, ProcessingRequest &request, const DemFacts &dem, const QString &crs)
{
    const QString moved = way.file(QStringLiteral("points.shp"));
    QString &fragment = request.toolInput.fragment;
    const QString problem = reprojectPoints(pointFileOf(fragment), dem, crs, moved);
    if (!problem.isEmpty())
        way.fail(problem);
    fragment = withPointFile(fragment, moved);
}

/// Cuts the part out of the DEM. Where cells are computed from their neighbours, or filled from cells around
/// them, it keeps a margin, so that the product's edge is that of the whole DEM's product.
void cutPart(Way &way, Stage &stage, const QRect &part, const ProcessingRequest &request)
{
    const double fillDistance = request.outputOptions.fillDistance;
    const int margin = (request.cellUse.neighbours ? 1 : 0) + qCeil(fillDistance);
    const ViewSource dem = stage.dem;
    const DemFacts whole = stage.whole;
    const QRect cut = withMargin(part, margin, dem.facts);
    const QString view = way.file(QStringLiteral("cut.vrt"));
    useView(way, stage, writePartView(dem.path, dem.facts.band, cut, view));
    stage.whole = whole; // so that the part is computed with the sizes of cells of the whole DEM
    stage.firstRow = part.top();
    stage.dem.path = way.file(QStringLiteral("cut.tif"));
    stage.margins = {part.left() - cut.left(), part.top() - cut.top(), cut.right() - part.right(),
                     cut.bottom() - part.bottom()};
    if (margin > 0) {
        const DemView grid =
            writePartView(dem.path, dem.facts.band, part, way.file(QStringLiteral("grid.vrt")));
        stage.grid = grid.facts;
    }
    way.addCopy(QStringLiteral("-b %1 -srcwin %2 %3 %4 %5 ")
                    .arg(QString::number(dem.facts.band), QString::number(cut.x()), QString::number(cut.y()),
                         QString::number(cut.width()), QString::number(cut.height())),
                dem.path, stage.dem.path, labelText({"MESS_CALC_DECOUPE", "Découpe du MNT."}), 0.2);
}

/// Fills the voids of the DEM in a copy of it.
void fillVoids(Way &way, Stage &stage, const ProcessingRequest &request, const QString &mask)
{
    const QString filled = way.file(QStringLiteral("filled.tif"));
    QString more = QStringLiteral(" --fill-distance %1").arg(request.outputOptions.fillDistance);
    QStringList intermediates{filled}; // the mask itself is one of the product's files
    const bool isTrimmed = !mask.isEmpty() && !stage.margins.isNull();
    const QString wholeMask = isTrimmed ? way.file(QStringLiteral("mask.tif")) : mask;
    if (!mask.isEmpty())
        more += QStringLiteral(" --mask ") + quotedArgument(wholeMask);
    if (isTrimmed)
        intermediates += wholeMask;
    way.addBatch(QStringLiteral("fill-voids"), filled, stage.dem, more,
                 labelText({"MESS_CALC_COMBLER", "Comblement des vides du MNT."}), 1.0, intermediates);
    if (isTrimmed)
        way.addCopy(QStringLiteral("-srcwin %1 %2 %3 %4 ")
                        .arg(QString::number(stage.margins.left()), QString::number(stage.margins.top()),
                             QString::number(stage.grid.width), QString::number(stage.grid.height)),
                    wholeMask, mask, labelText({"MESS_CALC_COMBLER", "Comblement des vides du MNT."}), 0.1);
    stage.dem.path = filled;
    stage.dem.facts.band = 1;
    stage.dem.facts.cellType = QStringLiteral("Float32");
}

/// Cuts off the margins, for a process that looks at each cell by itself.
void trim(Way &way, Stage &stage)
{
    const QString trimmed = way.file(QStringLiteral("trimmed.tif"));
    way.addCopy(QStringLiteral("-b %1 -srcwin %2 %3 %4 %5 ")
                    .arg(QString::number(stage.dem.facts.band), QString::number(stage.margins.left()),
                         QString::number(stage.margins.top()), QString::number(stage.grid.width),
                         QString::number(stage.grid.height)),
                stage.dem.path, trimmed, labelText({"MESS_CALC_DECOUPE", "Découpe du MNT."}), 0.2);
    stage.dem = {trimmed, stage.grid};
    stage.dem.facts.band = 1;
    stage.margins = {};
}

/// The DEM in a grid that lies askew in its own. Before, the part is taken and the voids are filled, so that
/// the corners of the new grid, where there is no DEM, stay empty.
void changeGrid(Way &way, Stage &stage, const ProcessingRequest &request, const DemTreatment &treatment,
                const QString &mask)
{
    if (!request.part.isNull())
        useView(way, stage,
                writePartView(stage.dem.path, stage.dem.facts.band, request.part,
                              way.file(QStringLiteral("part.vrt"))));
    if (request.outputOptions.fillDistance > 0.0) {
        fillVoids(way, stage, request, mask);
        // The views of the filled DEM are written before the step that makes it has run.
        const DemFacts &facts = stage.dem.facts;
        const ProductPart all{stage.dem.path, {facts.width, facts.height}, {}, {0, facts.height}};
        stage.dem.path = way.file(QStringLiteral("filled.vrt"));
        way.write(stage.dem.path, assembledView(facts, {all}, {facts.cellType, facts.noData}));
    }
    if (isReprojected(request))
        reproject(way, stage, request.outputOptions.reproject);
    else
        turn(way, stage, treatment);
}

/// The DEM in a grid whose cells are those of its own. The part keeps neighbours, also for filling its voids.
void keepCells(Way &way, Stage &stage, const ProcessingRequest &request, const DemTreatment &treatment,
               const QString &mask)
{
    const QRect part =
        treatment.turn && !request.part.isNull() ? mirrored(request.part, stage.dem.facts) : request.part;
    turn(way, stage, treatment);
    if (!part.isNull())
        cutPart(way, stage, part, request);
    if (request.outputOptions.fillDistance > 0.0)
        fillVoids(way, stage, request, mask);
    if (!request.cellUse.neighbours && !stage.margins.isNull())
        trim(way, stage);
}

/// The strips of the whole DEM as far as they belong to the product.
QVector<SizedStrip> stripsOf(const Stage &stage, double tolerance)
{
    QVector<SizedStrip> strips;
    for (const RowStrip &strip : rowStrips(stage.whole, tolerance)) {
        const int first = std::max(0, strip.first - stage.firstRow);
        const int end = std::min(stage.grid.height, strip.first + strip.count - stage.firstRow);
        if (end > first)
            strips += {{first, end - first}, trueCell(stage.whole, middleRow(strip))};
    }
    return strips;
}

/// The view of a strip in metres, as a source for the tool.
ViewSource writeMetreView(Way &way, const ViewSource &dem, const RowStrip &strip, const QSizeF &cell,
                          int number)
{
    const QString path = way.file(QStringLiteral("metres%1.vrt").arg(number));
    way.write(path, metreView(dem, strip, cell));
    ViewSource view{path, dem.facts};
    view.facts.band = 1;
    return view;
}

/// The product is written by the tool itself and put right where it stands.
void makeInPlace(Way &way, const ProcessingRequest &request, const Stage &stage, const DemTreatment &treatment,
                 const QSizeF &cell, bool isGeoreferenced)
{
    const RowStrip whole{0, stage.dem.facts.height};
    const ViewSource input = treatment.metres ? writeMetreView(way, stage.dem, whole, cell, 0) : stage.dem;
    way.addTool(input, request.output, request.outputOptions, 1.0);
    if (treatment.directions)
        way.addCorrection(stage.dem, request.output);
    if (treatment.metres && isGeoreferenced)
        way.addGeoreference(stage.dem);
}

/// The tool writes strips of rows with a row more at each side where the DEM has one. The strips are then put
/// together without what only served as neighbours.
void makeFromStrips(Way &way, const ProcessingRequest &request, const Stage &stage,
                    const DemTreatment &treatment, const QVector<SizedStrip> &strips)
{
    QVector<ProductPart> parts;
    const DemFacts &facts = stage.dem.facts;
    for (const auto &[strip, cell] : strips) {
        const int number = static_cast<int>(parts.size());
        const int row = stage.margins.top() + strip.first; // in the DEM
        const int first = std::max(0, row - 1);
        const RowStrip seen{first, std::min(facts.height, row + strip.count + 1) - first};
        const ViewSource input =
            treatment.metres ? writeMetreView(way, stage.dem, seen, cell, number) : stage.dem;
        const QString part = way.file(QStringLiteral("part%1.tif").arg(number));
        way.addTool(input, part, {}, static_cast<double>(strip.count) / stage.grid.height);
        if (treatment.directions)
            way.addCorrection(stage.dem, part);
        parts += {part, {facts.width, seen.count}, {stage.margins.left(), row - seen.first}, strip};
    }
    const QString view = way.file(QStringLiteral("whole.vrt"));
    way.write(view, assembledView(stage.grid, parts, productCells(request)));
    // Like the processes' tool, "-strict" refuses a format that would change the cells.
    way.addCopy(QStringLiteral("-strict -of ") + quotedArgument(outputFormat(request))
                    + creationArguments(request.outputOptions) + QLatin1Char(' '),
                view, request.output, labelText({"MESS_CALC_ASSEMBLE", "Écriture du résultat."}), 0.5);
}

/// The last part of the way: from a DEM in the right grid to the product.
void makeProduct(Way &way, const ProcessingRequest &request, Stage stage, const DemTreatment &treatment,
                 const StepOptions &options)
{
    if (!request.cellUse.lengths && !request.cellUse.heights) { // the user's own ratio covers the elevations
        stage.dem.facts.elevationUnit = 1.0;
        stage.dem.facts.elevationScale = 1.0;
        stage.dem.facts.elevationOffset = 0.0;
    }
    const bool hasLengths = treatment.metres && request.cellUse.lengths;
    const RowStrip all{0, stage.grid.height};
    const QVector<SizedStrip> strips = hasLengths
        ? stripsOf(stage, options.tolerance)
        : QVector<SizedStrip>{{all, trueCell(stage.grid, middleRow(all))}};
    const bool isChanged = treatment.metres || treatment.directions;
    const bool isWhole = strips.size() == 1 && stage.margins.isNull();
    if (isWhole && (!isChanged || outputFormat(request) == QLatin1String("GTiff")))
        makeInPlace(way, request, stage, treatment, strips.first().cell, options.isGeoreferenced);
    else
        makeFromStrips(way, request, stage, treatment, strips);
}

} // namespace

DemTreatment treatmentOf(const ProcessingRequest &request, const DemFacts &facts)
{
    return request.outputOptions.asIs ? DemTreatment() : treatmentOf(request.cellUse, facts);
}

ProductSteps productSteps(const ProcessingRequest &request, const DemFacts &facts, const ToolPaths &tools,
                          const QString &folder, const StepOptions &options)
{
    ProcessingRequest asked = request;
    Way way(asked, tools, folder);
    DemFacts known = facts;
    known.band = request.band;
    Stage stage{.dem = {request.input, known}, .margins = {}, .grid = known, .whole = known};
    DemTreatment treatment = treatmentOf(request, facts);
    treatment.turn = treatment.turn && (options.isGeoreferenced || !isRotated(facts));
    const OutputOptions &output = request.outputOptions;
    const QString mask = output.fillMask ? fillMaskFile(request.output) : QString();
    if (isReprojected(request) || (treatment.turn && isRotated(facts)))
        changeGrid(way, stage, request, treatment, mask);
    else
        keepCells(way, stage, request, treatment, mask);
    if (way.steps.problem.isEmpty() && isReprojected(request)
        && !pointFileOf(asked.toolInput.fragment).isEmpty())
        moveObservers(way, asked, facts, stage.grid.crsText);
    way.steps.width = stage.grid.width;
    way.steps.height = stage.grid.height;
    makeProduct(way, request, stage, treatment, options);
    return way.steps;
}

bool needsSteps(const ProcessingRequest &request, const DemFacts &facts)
{
    const OutputOptions &output = request.outputOptions;
    return treatmentOf(request, facts).isNeeded() || !request.part.isNull() || output.fillDistance > 0.0
        || !output.reproject.isEmpty();
}

QuvoProcessingCollection commandsOf(const ProductSteps &steps)
{
    QuvoProcessingCollection commands;
    for (const ProductStep &step : steps.steps)
        commands += {step.command, step.title};
    return commands;
}

QuvoOutputFilesListCollection outputsOf(const ProductSteps &steps, const QuvoOutputFilesList &product)
{
    QuvoOutputFilesListCollection outputs;
    for (const ProductStep &step : steps.steps) {
        outputs += product;
        for (const QString &file : step.intermediates)
            outputs.last() += QuvoOutputFile{.path = file};
    }
    return outputs;
}

QVector<double> sharesOf(const ProductSteps &steps)
{
    QVector<double> shares;
    for (const ProductStep &step : steps.steps)
        shares += step.share;
    return shares;
}
