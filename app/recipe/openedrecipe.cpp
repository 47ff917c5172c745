#include "app/recipe/openedrecipe.h"

#include "app/process/outputoptions.h"
#include "app/recipe/observerfile.h"
#include "app/recipe/tablefile.h"
#include "app/window/dialogrules.h"
#include "dataset/rasterinfo.h"

namespace
{

/// The format under the name that the window lists it by.
QString formatProblem(Recipe &recipe, Process process)
{
    if (recipe.outputFormat.isEmpty())
        return {};
    for (const QString &format : outputFormats(process)) {
        if (format.compare(recipe.outputFormat, Qt::CaseInsensitive) == 0) {
            recipe.outputFormat = format;
            return {};
        }
    }
    return labelText({"MESS_REC_SANS_FORMAT", "Ce traitement n'écrit pas le format « %1 » sur cette machine."})
        .arg(recipe.outputFormat);
}

void takeInput(Recipe &recipe, const QString &currentInput, QStringList &warnings)
{
    if (!recipe.input.isEmpty() && !readRasterInfo(recipe.input).problem.isEmpty()) {
        warnings += labelText({"MESS_REC_SANS_MNT",
                               "Le MNT des réglages, « %1 », ne peut pas être lu ; celui de la "
                               "fenêtre reste."})
                        .arg(recipe.input);
        const QString suffix =
            QString::fromLatin1(processRow(findBatchProcess(recipe.process)->process).suffix);
        if (isProposedName(recipe.output, recipe.input, suffix))
            recipe.output.clear(); // a name for a product of another DEM
        recipe.input.clear();
    }
    const QString dem = recipe.input.isEmpty() ? currentInput : recipe.input;
    const int bands = dem.isEmpty() ? recipe.band : readRasterInfo(dem).bandCount;
    if (recipe.band > bands) {
        warnings += labelText({"MESS_BANDE_ABSENTE", "Le MNT n'a pas de bande %1 ; il en a %2."})
                        .arg(QString::number(recipe.band), QString::number(bands));
        recipe.band = 1;
    }
}

/// The panel shows the entries of one kind.
QString takeTable(ColorReliefOptions &options, QStringList &warnings)
{
    const QString problem = colorTableProblem(options);
    if (problem.isEmpty() && mixesUnits(options))
        warnings +=
            labelText({"MESS_REC_TC_MIXTE",
                       "La table couleur mélange des altitudes et des pourcentages : une seule des deux "
                       "sortes est reprise."});
    if (options.colors.isEmpty())
        options.table = colorTableFile(options.table);
    return problem;
}

/// The panel holds rows alone.
QString takeSource(IntervisibilityOptions &options, const QString &dem, int band, QStringList &warnings)
{
    if (options.points.isEmpty())
        return {};
    if (dem.isEmpty())
        return labelText({"MESS_REC_OBS_SANS_MNT",
                          "Les observateurs de ces réglages viennent d'un fichier vecteur : choisissez d'abord "
                          "un MNT."});
    const SourceObservers source = sourceObservers(options, DemGround(dem, band));
    if (source.notTaken > 0)
        warnings += labelText({"MESS_OBS_NON_PRIS",
                               "%1 objets n'ont pas pu être repris : sans géométrie, ou hors du système de "
                               "coordonnées du MNT."})
                        .arg(source.notTaken);
    const IntervisibilityOptions defaults;
    options.observers += source.points;
    options.points.clear();
    options.height = defaults.height;
    options.mode = defaults.mode;
    options.distance = defaults.distance;
    options.step = defaults.step;
    return source.problem;
}

} // namespace

Recipe recipeOf(const ProcessingRequest &request, const ProcessOptions &options)
{
    Recipe recipe;
    recipe.process = processWord(options);
    recipe.input = request.input;
    recipe.output = request.output;
    recipe.band = request.band;
    recipe.outputFormat = request.format;
    recipe.layerName = request.layerName;
    recipe.overviews = request.overviews;
    recipe.tiled = request.tiled;
    recipe.worldFile = request.worldFile;
    recipe.options = options;
    return recipe;
}

OpenedRecipe openRecipe(const RecipeReading &reading, const QString &currentInput)
{
    OpenedRecipe opened;
    opened.recipe = reading.recipe;
    Recipe &recipe = opened.recipe;
    QStringList &warnings = opened.warnings;
    opened.problem = reading.problem;
    if (opened.problem.isEmpty())
        opened.problem = valuesProblem(recipe.options);
    if (opened.problem.isEmpty())
        opened.problem = formatProblem(recipe, findBatchProcess(recipe.process)->process);
    if (!opened.problem.isEmpty())
        return opened;

    takeInput(recipe, currentInput, warnings);
    if (auto *colors = std::get_if<ColorReliefOptions>(&recipe.options))
        opened.problem = takeTable(*colors, warnings);
    if (auto *observers = std::get_if<IntervisibilityOptions>(&recipe.options))
        opened.problem =
            takeSource(*observers, recipe.input.isEmpty() ? currentInput : recipe.input, recipe.band, warnings);
    return opened;
}
