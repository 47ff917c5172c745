#include "app/recipe/openedrecipe.h"

#include "app/process/outputoptions.h"
#include "app/process/productname.h"
#include "app/recipe/observerfile.h"
#include "app/recipe/tablefile.h"
#include "dataset/rasterinfo.h"

namespace
{

/// Writes the format's name as the window lists it. Returns why the window does not list it.
QString adaptFormat(Recipe &recipe, Process process)
{
    if (recipe.outputOptions.format.isEmpty())
        return {};
    for (const QString &format : outputFormats(process)) {
        if (format.compare(recipe.outputOptions.format, Qt::CaseInsensitive) == 0) {
            recipe.outputOptions.format = format;
            return {};
        }
    }
    return labelText({"MESS_REC_SANS_FORMAT", "Ce traitement n'écrit pas le format « %1 » sur cette machine."})
        .arg(recipe.outputOptions.format);
}

void adaptInput(Recipe &recipe, const QString &currentInput, QStringList &warnings)
{
    if (!recipe.input.isEmpty() && !readRasterInfo(recipe.input).problem.isEmpty()) {
        warnings += labelText({"MESS_REC_SANS_MNT",
                               "Le MNT des réglages, « %1 », ne peut pas être lu ; celui de la "
                               "fenêtre reste."})
                        .arg(recipe.input);
        const QString suffix = QString::fromLatin1(processRow(findProcess(recipe.process)->process).suffix);
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

/// The panel shows a table file, and of a table of mixed units the entries of one kind. Returns why the table
/// cannot be used.
QString adaptTable(ColorReliefOptions &options, QStringList &warnings)
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

/// The panel holds observers as rows alone: reads those of the vector source. Returns why it cannot be read.
QString readSource(IntervisibilityOptions &options, const QString &dem, int band, QStringList &warnings)
{
    if (options.points.isEmpty())
        return {};
    if (dem.isEmpty())
        return labelText({"MESS_REC_OBS_SANS_MNT",
                          "Les observateurs de ces réglages viennent d'un fichier vecteur : choisissez d'abord "
                          "un MNT."});
    const SourceObservers source = sourceObservers(options, DemGround(dem, band));
    if (source.skippedFeatures > 0)
        warnings += labelText({"MESS_OBS_NON_PRIS",
                               "%1 objets n'ont pas pu être repris : sans géométrie, ou hors du système de "
                               "coordonnées du MNT."})
                        .arg(source.skippedFeatures);
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
    recipe.outputOptions = request.outputOptions;
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
        opened.problem = adaptFormat(recipe, findProcess(recipe.process)->process);
    if (!opened.problem.isEmpty())
        return opened;

    adaptInput(recipe, currentInput, warnings);
    if (auto *colors = std::get_if<ColorReliefOptions>(&recipe.options))
        opened.problem = adaptTable(*colors, warnings);
    if (auto *observers = std::get_if<IntervisibilityOptions>(&recipe.options))
        opened.problem =
            readSource(*observers, recipe.input.isEmpty() ? currentInput : recipe.input, recipe.band, warnings);
    return opened;
}
