#include "app/tiles/makeplan.h"

#include "app/process/productsteps.h"
#include "app/startup/versions.h"
#include "app/tiles/sightgroups.h"
#include "app/tiles/tilejoin.h"
#include "colortable/colortablefile.h"
#include "dataset/extremes.h"
#include "dataset/join/contourwindow.h"
#include "dataset/views/mosaic.h"
#include "messages/label.h"
#include "panels/options/contours/contourinput.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QtMath>

#include <gdal.h>

#include <algorithm>

namespace
{

TilePlanning refused(const QString &problem, bool isInputProblem)
{
    TilePlanning planning;
    planning.problem = problem;
    planning.isInputProblem = isInputProblem;
    return planning;
}

/// Turns percentages of a table into elevations of the whole DEM, as the DEM tool does.
QString fixPercentages(QList<QuvoColorDef> &colors, const QString &dem, int band, const StopCheck &isStopped)
{
    const auto isPercentage = [](const QuvoColorDef &color) { return color.percent && !color.isNoData(); };
    if (std::none_of(colors.begin(), colors.end(), isPercentage))
        return {};
    constexpr int slice = 200; // ms
    ExtremesReader reader(dem, band, ExtremesReader::Exact);
    while (!isStopped() && reader.advance(slice)) { }
    const Extremes extremes = reader.extremes();
    if (!extremes.known)
        return labelText({"MESS_TC_SANS_ALTITUDE",
                          "Le MNT n'a pas d'altitudes lisibles sur lesquelles étaler la table couleur."});
    constexpr double all = 100.0;
    for (QuvoColorDef &color : colors) {
        if (isPercentage(color))
            color = {extremes.minimum + (extremes.maximum - extremes.minimum) * color.value / all, color.color};
    }
    return {};
}

/// Puts the colours themselves into the options, at elevations. Returns why that failed, in a sentence; empty
/// otherwise.
QString fixColors(ProcessOptions &options, const QString &dem, int band, WorkFolder &workFolder,
                  const StopCheck &isStopped)
{
    auto *relief = std::get_if<ColorReliefOptions>(&options);
    if (!relief)
        return {};
    const ToolTable table = prepareTable(*relief, dem, band, workFolder, isStopped);
    if (!table.problem.isEmpty())
        return table.problem;
    holdTableByValue(options, table.file);
    return fixPercentages(relief->colors, dem, band, isStopped);
}

/// Why a DEM with this grid has no tiles, in a sentence; empty where it has.
QString gridProblem(const DemFacts &facts, const TilePlan &plan)
{
    if (!facts.isOpen)
        return labelText({"MESS_INV_INPUT_FILE", "Le fichier d'entrée n'est pas valide"}) + QLatin1Char('\n')
            + plan.recipe.input;
    if (isRotated(facts) || !facts.isGeoreferenced)
        return labelText({"MESS_TUILES_OBLIQUE",
                          "Un MNT sans coordonnées, ou dont la grille est oblique, ne se fait pas en tuiles."});
    if (isMirrored(facts) && isContourPlan(plan))
        return labelText(
            {"MESS_TUILES_MIROIR",
             "Les courbes d'un MNT dont les lignes vont du sud au nord ne se font pas en tuiles."});
    return {};
}

/// Finds out what the whole DEM decides for all tiles.
void settleOptions(TilePlanning &planning, WorkFolder &workFolder, const StopCheck &isStopped)
{
    Recipe &recipe = planning.plan.recipe;
    planning.isInputProblem = true;
    auto *sight = std::get_if<IntervisibilityOptions>(&recipe.options);
    if (!sight) {
        planning.problem = fixColors(recipe.options, recipe.input, recipe.band, workFolder, isStopped);
        return;
    }
    const DemGround ground(recipe.input, recipe.band);
    const ObserverReading observers = holdObserversByValue(*sight, ground);
    planning.warnings += observers.warnings;
    planning.problem = observers.problem;
    groupObservers(planning.plan, ground);
}

} // namespace

QString tilesProblem(const Recipe &recipe)
{
    const Process process = processOf(recipe.options);
    const auto *sight = std::get_if<IntervisibilityOptions>(&recipe.options);
    if (sight && (!sight->skyline.isEmpty() || !sight->statistics.isEmpty()))
        return labelText({"MESS_TUILES_COTE",
                          "L'horizon et les statistiques (skyline, statistics) ne se font pas en tuiles."});
    const auto *slope = std::get_if<SlopeOptions>(&recipe.options);
    const auto *aspect = std::get_if<AspectOptions>(&recipe.options);
    if ((slope && !slope->classes.isEmpty()) || (aspect && aspect->directions > 0))
        return labelText(
            {"MESS_TUILES_CLASSES", "L'image en classes (classes, directions) ne se fait pas en tuiles."});
    const auto *contour = std::get_if<ContourOptions>(&recipe.options);
    if (contour && needsFinishing(*contour))
        return labelText({"MESS_TUILES_COURBES",
                          "Les courbes maîtresses, la longueur minimale, les surfaces et les dessins "
                          "(indexEvery, shortestRing, polygons, styled, qgisStyle) ne se font pas en tuiles."});
    if (!recipe.outputOptions.reproject.isEmpty() && mayReproject(process))
        return labelText(
            {"MESS_TUILES_PROJ", "Un autre système de coordonnées (reproject) ne va pas avec des tuiles."});
    if (!recipe.part.isNull())
        return labelText({"MESS_TUILES_PARTIE", "Une partie du MNT (part) ne se fait pas en tuiles."});
    return {};
}

TilePlanning makePlan(const TileOrder &order, WorkFolder &workFolder, const StopCheck &isStopped)
{
    TilePlanning planning;
    TilePlan &plan = planning.plan;
    plan.recipe = order.recipe;
    plan.recipe.output.clear();
    plan.recipe.tiles.clear();
    plan.recipe.input = order.dems.first();
    QVector<QRect> cells;
    if (order.dems.size() > 1) {
        const Mosaic mosaic = writeMosaic(order.dems, order.folder + QStringLiteral("/dem.vrt"));
        if (!mosaic.problem.isEmpty())
            return refused(mosaic.problem, true);
        plan.recipe.input = mosaic.path;
        planning.warnings = mosaic.warnings;
        cells = mosaic.cells;
    }
    const DemFacts facts = readDemFacts(plan.recipe.input, plan.recipe.band);
    const QString problem = gridProblem(facts, plan);
    if (!problem.isEmpty())
        return refused(problem, true);
    plan.grid = {{facts.width, facts.height}, order.side};
    const double fill = plan.recipe.outputOptions.fillDistance;
    const auto *contour = std::get_if<ContourOptions>(&plan.recipe.options);
    plan.margin = (cellUse(plan.recipe.options).neighbours || contour ? 1 : 0) + qCeil(fill)
        + (contour ? contour->smoothing : 0);
    plan.program = programVersion();
    plan.tool = QString::fromUtf8(GDALVersionInfo("--version"));
    for (int at = 0; at < order.dems.size(); ++at) {
        plan.inputs += inputNow(order.dems.at(at));
        plan.inputs.last().cells = cells.isEmpty() ? QRect(0, 0, facts.width, facts.height) : cells.at(at);
    }
    settleOptions(planning, workFolder, isStopped);
    return planning;
}

ProcessingRequest tileRequest(const TilePlan &plan, const PlannedTile &tile, const ToolInput &toolInput)
{
    ProcessingRequest request = requestOf(tileRecipe(plan, tile), toolInput);
    request.part = tile.window;
    if (isContourPlan(plan)) {
        const DemFacts dem = readDemFacts(plan.recipe.input, plan.recipe.band);
        request.part = contourWindow(plan.grid.raster, tile.window, dem.toGround).cells;
        request.outputOptions.format = QStringLiteral("GPKG");
    }
    return request;
}

QString tileSizesText(const TilePlan &plan)
{
    const ProcessRow &row = processRow(processOf(plan.recipe.options));
    const QString number =
        labelText(plan.tileCount() == 1 ? Label{"MESS_TUILES_UNE", "%1 tuile de %2 × %2 cellules."}
                                        : Label{"MESS_TUILES_NOMBRE", "%1 tuiles de %2 × %2 cellules."})
            .arg(QLocale().toString(plan.tileCount()), QLocale().toString(plan.grid.side));
    if (row.product == ProductKind::Vector || !plan.groups.isEmpty())
        return number;
    const double cellBytes = static_cast<double>(row.bands) * row.bytesPerCell;
    const QSize raster = plan.grid.raster;
    const double tileCells = static_cast<double>(std::min(plan.grid.side, raster.width()))
        * std::min(plan.grid.side, raster.height());
    const auto size = [&](double cells) {
        return QLocale().formattedDataSize(static_cast<qint64>(cells * cellBytes));
    };
    return number + QLatin1Char(' ')
        + labelText({"MESS_TUILES_TAILLE",
                     "Environ %1 par tuile, %2 en tout ; le calcul d'une tuile demande en plus deux fois sa "
                     "place, et moins de 600 Mo de mémoire."})
              .arg(size(tileCells), size(static_cast<double>(raster.width()) * raster.height()));
}
