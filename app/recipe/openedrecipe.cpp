#include "app/recipe/openedrecipe.h"

#include "app/process/outputoptions.h"
#include "app/process/productname.h"
#include "app/recipe/observerfile.h"
#include "app/recipe/tablefile.h"
#include "dataset/rasterinfo.h"
#include "dataset/views/mosaic.h"

namespace
{

// Each function below adapts one part of the recipe and adds its warnings and its problem to the record.

/// Changes the format's name to the case in which the window lists it.
void adaptFormat(OpenedRecipe &opened, Process process)
{
    QString &wanted = opened.recipe.outputOptions.format;
    if (wanted.isEmpty())
        return;
    for (const QString &format : outputFormats(process)) {
        if (format.compare(wanted, Qt::CaseInsensitive) == 0) {
            wanted = format;
            return;
        }
    }
    opened.problem =
        labelText({"MESS_REC_SANS_FORMAT", "Ce traitement n'écrit pas le format « %1 » sur cet ordinateur."})
            .arg(wanted);
}

/// Drops a part that does not lie in the DEM.
void adaptPart(OpenedRecipe &opened, const QString &dem)
{
    QRect &part = opened.recipe.part;
    if (part.isNull() || dem.isEmpty())
        return;
    const RasterInfo info = readRasterInfo(dem);
    if (QRect(0, 0, info.width, info.height).contains(part))
        return;
    opened.warnings +=
        labelText({"MESS_REC_PARTIE",
                   "La partie à traiter des réglages (%1) ne se trouve pas dans le MNT ; tout le "
                   "MNT est traité."})
            .arg(partText(part));
    part = QRect();
}

/// Makes the mosaic of the tiles. Returns whether the input, if there is one, can be read.
bool openInput(OpenedRecipe &opened, WorkFolder &workFolder)
{
    Recipe &recipe = opened.recipe;
    if (recipe.tiles.isEmpty())
        return recipe.input.isEmpty() || readRasterInfo(recipe.input).problem.isEmpty();
    const Mosaic mosaic = makeMosaic(recipe.tiles, workFolder);
    recipe.input = mosaic.path;
    opened.warnings += mosaic.warnings;
    if (!mosaic.problem.isEmpty())
        opened.warnings += mosaic.problem;
    return mosaic.problem.isEmpty();
}

/// Drops an input that cannot be read, and a band that the DEM does not have.
void adaptInput(OpenedRecipe &opened, const QString &currentInput, WorkFolder &workFolder)
{
    Recipe &recipe = opened.recipe;
    if (!openInput(opened, workFolder)) {
        opened.warnings += labelText({"MESS_REC_SANS_MNT",
                                      "Le MNT des réglages, « %1 », ne peut pas être lu ; celui de la "
                                      "fenêtre reste."})
                               .arg(recipe.tiles.isEmpty() ? recipe.input : mosaicTitle(recipe.tiles));
        const QString suffix = QString::fromLatin1(processRow(findProcess(recipe.process)->process).suffix);
        if (isProposedName(recipe.output, namingInput(recipe), suffix))
            recipe.output.clear(); // the name was proposed for the DEM that cannot be read
        recipe.input.clear();
        recipe.tiles.clear();
    }
    const QString dem = recipe.input.isEmpty() ? currentInput : recipe.input;
    const int bands = dem.isEmpty() ? recipe.band : readRasterInfo(dem).bandCount;
    if (recipe.band > bands) {
        opened.warnings += labelText({"MESS_BANDE_ABSENTE", "Le MNT n'a pas de bande %1 ; il en a %2."})
                               .arg(QString::number(recipe.band), QString::number(bands));
        recipe.band = 1;
    }
    adaptPart(opened, dem);
}

/// Finds the table's file. Of a table with elevations and percentages the panel shows the entries of one kind.
void adaptTable(OpenedRecipe &opened, ColorReliefOptions &options)
{
    opened.problem = colorTableProblem(options);
    if (opened.problem.isEmpty() && mixesUnits(options))
        opened.warnings +=
            labelText({"MESS_REC_TC_MIXTE",
                       "La table couleur mélange des altitudes et des pourcentages : une seule des deux "
                       "sortes est reprise."});
    if (options.colors.isEmpty())
        options.table = colorTableFile(options.table);
}

/// Reads the observers of the vector source into the list, because the panel shows only a list.
void adaptObservers(OpenedRecipe &opened, IntervisibilityOptions &options, const QString &dem)
{
    if (options.points.isEmpty())
        return;
    if (dem.isEmpty()) {
        opened.problem =
            labelText({"MESS_REC_OBS_SANS_MNT",
                       "Les observateurs de ces réglages viennent d'un fichier vecteur : choisissez d'abord "
                       "un MNT."});
        return;
    }
    const SourceObservers source = sourceObservers(options, DemGround(dem, opened.recipe.band));
    if (source.skippedFeatures > 0)
        opened.warnings +=
            labelText({"MESS_OBS_NON_PRIS",
                       "%1 objets ont été ignorés : sans géométrie, ou hors du système de coordonnées du MNT."})
                .arg(source.skippedFeatures);
    const IntervisibilityOptions defaults;
    options.observers += source.points;
    options.points.clear();
    options.pointsLayer.clear();
    options.height = defaults.height;
    options.mode = defaults.mode;
    options.distance = defaults.distance;
    options.step = defaults.step;
    opened.problem = source.problem;
}

} // namespace

Recipe recipeOf(const ProcessingRequest &request, const ProcessOptions &options)
{
    Recipe recipe;
    recipe.process = processWord(options);
    recipe.input = request.input;
    recipe.tiles = request.tiles;
    recipe.output = request.output;
    recipe.band = request.band;
    recipe.part = request.part;
    recipe.outputOptions = request.outputOptions;
    recipe.options = options;
    return recipe;
}

OpenedRecipe openRecipe(const RecipeReading &reading, const QString &currentInput, WorkFolder &workFolder)
{
    OpenedRecipe opened{.recipe = reading.recipe, .warnings = {}, .problem = reading.problem};
    Recipe &recipe = opened.recipe;
    if (opened.problem.isEmpty())
        opened.problem = valuesProblem(recipe.options);
    if (opened.problem.isEmpty())
        adaptFormat(opened, findProcess(recipe.process)->process);
    if (!opened.problem.isEmpty())
        return opened;

    adaptInput(opened, currentInput, workFolder);
    if (auto *colors = std::get_if<ColorReliefOptions>(&recipe.options))
        adaptTable(opened, *colors);
    if (auto *observers = std::get_if<IntervisibilityOptions>(&recipe.options))
        adaptObservers(opened, *observers, recipe.input.isEmpty() ? currentInput : recipe.input);
    return opened;
}
