#include "app/process/demstage.h"

#include "dataset/views/demviews.h"
#include "dataset/views/metriccrs.h"

#include <QtMath>

namespace
{

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
void useView(ProductWay &way, DemStage &stage, const DemView &view)
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

/// The DEM with its rows from the north, where the treatment says so.
void turn(ProductWay &way, DemStage &stage, const DemTreatment &treatment)
{
    if (treatment.turn)
        useView(way, stage,
                writeTurnedView(stage.dem.path, stage.dem.facts, way.file(QStringLiteral("turned.vrt"))));
}

/// The DEM in the CRS of the request.
void reproject(ProductWay &way, DemStage &stage, const QString &crs)
{
    const DemFacts &facts = stage.dem.facts;
    const QString proposed = crs == QLatin1String("auto") ? metricCrs(facts) : QString();
    useView(way, stage,
            writeReprojectedView(stage.dem.path, facts, proposed.isEmpty() ? crs : proposed,
                                 way.file(QStringLiteral("projected.vrt"))));
}

/// Cuts the part out of the DEM. Where cells are computed from their neighbours, or filled from cells around
/// them, it keeps a margin, so that the product's edge is that of the whole DEM's product.
void cutPart(ProductWay &way, DemStage &stage, const QRect &part, const ProcessingRequest &request)
{
    const double fillDistance = request.outputOptions.fillDistance;
    const int margin =
        (request.cellUse.neighbours ? 1 : 0) + qCeil(fillDistance) + request.toolInput.contours.smoothing;
    const ViewSource dem = stage.dem;
    const DemFacts whole = stage.whole;
    const QRect cut = withMargin(part, margin, dem.facts);
    const QString view = way.file(QStringLiteral("cut.vrt"));
    useView(way, stage, writePartView(dem.path, dem.facts.band, cut, view));
    stage.whole = whole; // so that the part is computed with the sizes of cells of the whole DEM
    stage.firstRow = part.top();
    stage.margins = {part.left() - cut.left(), part.top() - cut.top(), cut.right() - part.right(),
                     cut.bottom() - part.bottom()};
    if (margin > 0) {
        const DemView grid =
            writePartView(dem.path, dem.facts.band, part, way.file(QStringLiteral("grid.vrt")));
        stage.grid = grid.facts;
    }
}

/// Fills the voids of the DEM in a copy of it.
void fillVoids(ProductWay &way, DemStage &stage, const ProcessingRequest &request, const QString &mask)
{
    const QString filled = way.file(QStringLiteral("filled.tif"));
    const bool isTrimmed = !mask.isEmpty() && !stage.margins.isNull();
    const QString wholeMask = isTrimmed ? way.file(QStringLiteral("mask.tif")) : mask;
    way.addFilling(stage.dem, filled, request.outputOptions.fillDistance, wholeMask);
    if (isTrimmed)
        way.addCopy(QStringLiteral("-srcwin %1 %2 %3 %4 ")
                        .arg(QString::number(stage.margins.left()), QString::number(stage.margins.top()),
                             QString::number(stage.grid.width), QString::number(stage.grid.height)),
                    wholeMask, mask, labelText({"MESS_CALC_COMBLER", "Comblement des vides du MNT."}), 0.1);
    stage.dem.path = filled;
    stage.dem.facts.band = 1;
    stage.dem.facts.cellType = QStringLiteral("Float32");
}

/// Smooths the DEM in a copy of it, where the request says so.
void smooth(ProductWay &way, DemStage &stage, const ProcessingRequest &request)
{
    const ContourSteps &contours = request.toolInput.contours;
    if (contours.smoothing == 0)
        return;
    const QString smoothed = way.file(QStringLiteral("smoothed.tif"));
    way.addSmoothing(stage.dem, smoothed, contours.settings);
    stage.dem.path = smoothed;
    stage.dem.facts.band = 1;
}

/// Cuts off the margins, for a process that looks at each cell by itself.
void trim(ProductWay &way, DemStage &stage)
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
void changeGrid(ProductWay &way, DemStage &stage, const ProcessingRequest &request,
                const DemTreatment &treatment, const QString &mask)
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
    smooth(way, stage, request);
}

/// The DEM in a grid whose cells are those of its own. The part keeps neighbours, also for filling its voids.
void keepCells(ProductWay &way, DemStage &stage, const ProcessingRequest &request,
               const DemTreatment &treatment, const QString &mask)
{
    const QRect part =
        treatment.turn && !request.part.isNull() ? mirrored(request.part, stage.dem.facts) : request.part;
    turn(way, stage, treatment);
    if (!part.isNull())
        cutPart(way, stage, part, request);
    if (request.outputOptions.fillDistance > 0.0)
        fillVoids(way, stage, request, mask);
    smooth(way, stage, request);
    if (!request.cellUse.neighbours && !stage.margins.isNull())
        trim(way, stage);
}

} // namespace

bool isReprojected(const ProcessingRequest &request)
{
    return !request.outputOptions.reproject.isEmpty() && mayReproject(*request.process);
}

void prepareDem(ProductWay &way, DemStage &stage, const ProcessingRequest &request,
                const DemTreatment &treatment, const QString &mask)
{
    if (isReprojected(request) || (treatment.turn && isRotated(stage.dem.facts)))
        changeGrid(way, stage, request, treatment, mask);
    else
        keepCells(way, stage, request, treatment, mask);
}
