#include "app/process/productsteps.h"

#include "app/process/demstage.h"
#include "dataset/views/demviews.h"
#include "dataset/views/truecells.h"
#include "dataset/views/viewtexts.h"
#include "panels/options/fragments.h"
#include "panels/options/valueclasses.h"
#include "runner/quoting.h"

#include <QDir>

#include <algorithm>

namespace
{

/// Rows of the product that the tool computes with one size of cells.
struct SizedStrip
{
    RowStrip rows; ///< rows of the product
    QSizeF cell;   ///< in metres
};

/// What the tool writes.
ProductCells productCells(const ProcessingRequest &request)
{
    if (processRow(*request.process).bytesPerCell == 1)
        return {QStringLiteral("Byte"), 0.0};
    return {QStringLiteral("Float32"), request.cellUse.zeroWithoutData ? std::nullopt : std::optional(-9999.0)};
}

/// The strips of the whole DEM as far as they belong to the product.
QVector<SizedStrip> stripsOf(const DemStage &stage, double tolerance)
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
ViewSource writeMetreView(ProductWay &way, const ViewSource &dem, const RowStrip &strip, const QSizeF &cell,
                          int number)
{
    const QString path = way.file(QStringLiteral("metres%1.vrt").arg(number));
    way.write(path, metreView(dem, strip, cell));
    ViewSource view{path, dem.facts};
    view.facts.band = 1;
    return view;
}

/// The product is written by the tool itself and put right where it stands.
void makeInPlace(ProductWay &way, const ProcessingRequest &request, const DemStage &stage,
                 const DemTreatment &treatment, const QSizeF &cell, bool isGeoreferenced)
{
    const RowStrip whole{0, stage.dem.facts.height};
    const ViewSource input = treatment.metres ? writeMetreView(way, stage.dem, whole, cell, 0) : stage.dem;
    way.addTool(request, input, request.output, request.outputOptions, 1.0);
    if (treatment.directions)
        way.addCorrection(stage.dem, request.output);
    if (treatment.metres && isGeoreferenced)
        way.addGeoreference(stage.dem, request.output);
}

/// Copies the finished cells to the product in the format and with the options of the request.
void writeProduct(ProductWay &way, const ProcessingRequest &request, const QString &cells)
{
    const ProcessRow product = productRow(request);
    QString statistics;
    if (request.outputOptions.statistics) {
        statistics = QStringLiteral(" -stats");
        if (product.bands == 1)
            statistics += QStringLiteral(" -colorinterp gray");
    }
    // Like the processes' tool, "-strict" refuses a format that would change the cells.
    way.addCopy(QStringLiteral("-strict -of ") + quotedArgument(outputFormat(request))
                    + creationArguments(request.outputOptions, product) + statistics + QLatin1Char(' '),
                cells, request.output, labelText({"MESS_CALC_ASSEMBLE", "Écriture du résultat."}), 0.5);
}

/// The same cells in a GeoTIFF between the steps.
ProcessingRequest between(const ProductWay &way, const ProcessingRequest &request)
{
    ProcessingRequest plain = request;
    plain.output = way.file(QStringLiteral("plain.tif"));
    plain.outputOptions = {};
    return plain;
}

/// The tool writes strips of rows with a row more at each side where the DEM has one. The strips are then put
/// together without what only served as neighbours.
void makeFromStrips(ProductWay &way, const ProcessingRequest &request, const DemStage &stage,
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
        way.addTool(request, input, part, {}, static_cast<double>(strip.count) / stage.grid.height);
        if (treatment.directions)
            way.addCorrection(stage.dem, part);
        parts += {part, {facts.width, seen.count}, {stage.margins.left(), row - seen.first}, strip};
    }
    const QString view = way.file(QStringLiteral("whole.vrt"));
    way.write(view, assembledView(stage.grid, parts, productCells(request)));
    writeProduct(way, request, view);
}

/// Gives the tool the observers in the CRS of the reprojected DEM.
void moveObservers(ProductWay &way, ProcessingRequest &request, const DemFacts &dem, const QString &crs)
{
    const QString moved = way.file(QStringLiteral("points.shp"));
    QString &fragment = request.toolInput.fragment;
    const QString problem = reprojectPoints(pointFileOf(fragment), dem, crs, moved);
    if (!problem.isEmpty())
        way.fail(problem);
    fragment = withPointFile(fragment, moved);
}

/// The last part of the way: from a DEM in the right grid to the product.
void makeProduct(ProductWay &way, const ProcessingRequest &request, DemStage stage,
                 const DemTreatment &treatment, const StepOptions &options)
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
    const bool hasStatistics = request.outputOptions.statistics && productKind(request) == ProductKind::Raster;
    if (isWhole && hasStatistics) {
        const ProcessingRequest plain = between(way, request);
        makeInPlace(way, plain, stage, treatment, strips.first().cell, options.isGeoreferenced);
        writeProduct(way, request, plain.output);
    } else if (isWhole && (!isChanged || outputFormat(request) == QLatin1String("GTiff")))
        makeInPlace(way, request, stage, treatment, strips.first().cell, options.isGeoreferenced);
    else
        makeFromStrips(way, request, stage, treatment, strips);
}

/// The request of the shaded relief that darkens the colours of a request.
ProcessingRequest shadeRequest(const ProcessingRequest &request, const QString &shade)
{
    ProcessingRequest relief = request;
    relief.process = Process::ShadedRelief;
    relief.mode = processWord(ShadedOptions());
    relief.toolInput = {.fragment = request.toolInput.shadeFragment};
    relief.output = shade;
    relief.outputOptions = {.asIs = request.outputOptions.asIs};
    return relief;
}

/// The tool makes the colours and the shaded relief, and a view of both is the product.
void makeShadedColors(ProductWay &way, const ProcessingRequest &request, const DemStage &stage,
                      const DemTreatment &treatment, const StepOptions &options)
{
    const QString colors = way.file(QStringLiteral("colors.tif"));
    const QString shade = way.file(QStringLiteral("shade.tif"));
    const QString view = way.file(QStringLiteral("shaded.vrt"));
    way.addTool(request, stage.dem, colors, {}, 1.0);
    makeProduct(way, shadeRequest(request, shade), stage, treatment, options);
    const DemFacts &dem = stage.dem.facts;
    way.write(view,
              shadedColorsView(stage.grid,
                               {.colors = colors,
                                .colorsSize = {dem.width, dem.height},
                                .firstColor = {stage.margins.left(), stage.margins.top()},
                                .hasAlpha = hasAlpha(request),
                                .shade = shade,
                                .strength = request.toolInput.shadeStrength}));
    writeProduct(way, request, view);
}

/// The tool draws the contours into a file between the steps, of which the product is made.
void makeFinishedContours(ProductWay &way, const ProcessingRequest &request, const DemStage &stage)
{
    const QString lines = way.file(QStringLiteral("lines.gpkg"));
    ProcessingRequest drawn = request;
    drawn.toolInput.fragment = request.toolInput.contours.linesFragment;
    way.addTool(drawn, stage.dem, lines,
                {.format = QStringLiteral("GPKG"), .layerName = request.outputOptions.layerName}, 1.0);
    way.addFinishing(stage.dem, lines, request.toolInput.contours.settings);
}

/// Paints the classes of the values into the first side file. Where the product holds 0 for flat cells, for
/// north and for voids alike, the directions are computed once more with a mark for cells without one.
void addClasses(ProductWay &way, const ProcessingRequest &request, const DemStage &stage,
                const DemTreatment &treatment, const StepOptions &options, const ToolPaths &tools)
{
    const ToolInput &input = request.toolInput;
    if (input.classes.classes.isEmpty())
        return;
    QString values = request.output;
    if (request.cellUse.zeroWithoutData) {
        ProcessingRequest marked = request;
        marked.toolInput.fragment = withFlatMarked(input.fragment);
        marked.cellUse.zeroWithoutData = false;
        marked.outputOptions = {};
        const QString folder = way.file(QStringLiteral("directions"));
        QDir().mkpath(folder);
        marked.output = values = folder + QStringLiteral("/directions.tif");
        ProductWay again(marked, tools, folder);
        makeProduct(again, marked, stage, treatment, options);
        way.append(again);
    }
    const QString table = way.file(QStringLiteral("classes.txt"));
    way.write(table, classTableText(input.classes));
    way.addColors(values, table, input.sideFiles.first().path,
                  labelText({"MESS_CALC_CLASSES", "Peinture des classes."}));
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
    ProductWay way(asked, tools, folder);
    DemFacts known = facts;
    known.band = request.band;
    DemStage stage{.dem = {request.input, known}, .margins = {}, .grid = known, .whole = known};
    DemTreatment treatment = treatmentOf(request, facts);
    treatment.turn = treatment.turn && (options.isGeoreferenced || !isRotated(facts));
    const OutputOptions &output = request.outputOptions;
    const QString mask = output.fillMask ? fillMaskFile(request.output) : QString();
    prepareDem(way, stage, request, treatment, mask);
    if (way.steps.problem.isEmpty() && isReprojected(request)
        && !pointFileOf(asked.toolInput.fragment).isEmpty())
        moveObservers(way, asked, facts, stage.grid.crsText);
    way.steps.width = stage.grid.width;
    way.steps.height = stage.grid.height;
    if (isShaded(request))
        makeShadedColors(way, request, stage, treatment, options);
    else if (isFinished(request))
        makeFinishedContours(way, asked, stage);
    else
        makeProduct(way, asked, stage, treatment, options);
    addClasses(way, asked, stage, treatment, options, tools);
    return way.steps;
}

bool needsSteps(const ProcessingRequest &request, const DemFacts &facts)
{
    const OutputOptions &output = request.outputOptions;
    return !request.toolInput.classes.classes.isEmpty() || treatmentOf(request, facts).isNeeded()
        || !request.part.isNull() || output.fillDistance > 0.0 || !output.reproject.isEmpty()
        || isShaded(request) || isFinished(request) || request.toolInput.contours.smoothing > 0
        || (output.statistics && productKind(request) == ProductKind::Raster);
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
