#include "app/batch/request.h"

#include "app/recipe/observerfile.h"
#include "app/recipe/recipe.h"
#include "app/recipe/tablefile.h"
#include "app/run/outputname.h"
#include "app/run/runplan.h"
#include "app/window/dialogrules.h"
#include "dataset/formatfilters.h"
#include "dataset/overviews.h"
#include "dataset/pathencoding.h"
#include "panels/options/contourlevels.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace
{

/// The process of the command line, which a recipe must not contradict.
QString takeProcess(Recipe &recipe, const BatchArguments &arguments)
{
    if (!recipe.process.isEmpty()) {
        if (arguments.process.isEmpty() || arguments.process == recipe.process)
            return {};
        return labelText({"MESS_LOT_AUTRE_TRAIT",
                          "La recette est celle du traitement « %1 », pas du traitement « %2 »."})
            .arg(recipe.process, arguments.process);
    }
    if (arguments.process.isEmpty())
        return labelText(
            {"MESS_LOT_SANS_TRAIT",
             "Indiquez un traitement (--process) ou une recette ; --list affiche les traitements."});
    const BatchProcess *process = findBatchProcess(arguments.process);
    if (!process)
        return unknownProcess(arguments.process);
    recipe.process = arguments.process;
    recipe.options = process->defaults;
    return {};
}

QString takeOptions(Recipe &recipe, const BatchArguments &arguments)
{
    QStringList given;
    for (const auto &option : arguments.options) {
        const QString problem = setOption(recipe.options, option.first, option.second);
        if (!problem.isEmpty())
            return problem;
        given += option.first;
    }
    settle(recipe.options, given);
    resolveFiles(recipe.options, QDir::currentPath());
    return optionsProblem(recipe.options);
}

/// The recipe that the command line's arguments make, over those of a recipe file.
RecipeReading combine(const BatchArguments &arguments)
{
    RecipeReading reading;
    if (arguments.recipeFile == QLatin1String(pipedRecipeName))
        reading = readRecipe(arguments.pipedRecipe, QDir::currentPath());
    else if (!arguments.recipeFile.isEmpty())
        reading = readRecipeFile(arguments.recipeFile);
    Recipe &recipe = reading.recipe;
    if (reading.problem.isEmpty())
        reading.problem = takeProcess(recipe, arguments);
    if (reading.problem.isEmpty())
        reading.problem = takeOptions(recipe, arguments);
    recipe.input = arguments.input.value_or(recipe.input);
    recipe.output = arguments.output.value_or(recipe.output);
    if (!arguments.outputFormat.isEmpty())
        recipe.outputFormat = arguments.outputFormat;
    recipe.band = arguments.band.value_or(recipe.band);
    if (!arguments.layerName.isEmpty())
        recipe.layerName = arguments.layerName;
    recipe.overviews |= arguments.overviews;
    recipe.tiled |= arguments.tiled;
    recipe.worldFile |= arguments.worldFile;

    if (reading.problem.isEmpty() && recipe.input.isEmpty())
        reading.problem = labelText({"MESS_LOT_SANS_ENTREE", "Indiquez le MNT d'entrée (--input)."});
    if (reading.problem.isEmpty() && recipe.output.isEmpty())
        reading.problem = labelText({"MESS_LOT_SANS_SORTIE", "Indiquez le fichier à créer (--output)."});
    return reading;
}

} // namespace

BatchRequest assembleBatch(const BatchArguments &arguments, WorkFolder &workFolder)
{
    BatchRequest batch;
    const RecipeReading reading = combine(arguments);
    if (!reading.problem.isEmpty()) {
        batch.problem = reading.problem;
        return batch;
    }
    const Recipe &recipe = reading.recipe;
    ProcessingRequest &request = batch.request;
    request.process = findBatchProcess(recipe.process)->process;
    request.mode = recipe.process;
    request.input = dataSetName(recipe.input, QDir::currentPath());
    request.format = recipe.outputFormat;
    request.band = recipe.band;
    request.layerName = recipe.layerName;
    request.overviews = recipe.overviews;
    request.tiled = recipe.tiled;
    request.worldFile = recipe.worldFile;
    request.fragment = argumentFragment(recipe.options);
    request.output = recipe.output;
    if (!arguments.recipeFile.isEmpty() && arguments.recipeFile != QLatin1String(pipedRecipeName))
        batch.otherInputs += QFileInfo(arguments.recipeFile).absoluteFilePath();

    if (const auto *colors = std::get_if<ColorReliefOptions>(&recipe.options)) {
        const BatchColorTable table = batchColorTable(*colors, request.input, request.band, workFolder);
        request.colorTableFile = table.file;
        batch.problem = table.problem;
        if (arguments.action == BatchAction::PrintCommand && table.file.startsWith(workFolder.path()))
            batch.warnings +=
                labelText({"MESS_LOT_TABLE_TEMP",
                           "La table couleur de cette commande est un fichier temporaire de ce programme."});
    }
    if (const auto *zones = std::get_if<IntervisibilityOptions>(&recipe.options)) {
        const BatchObservers observers = batchObservers(*zones, request.input, request.band, workFolder);
        request.fragment = observers.fragment;
        batch.problem = observers.problem;
        batch.warnings += observers.warnings;
        batch.otherInputs += observers.sourceFiles;
        if (arguments.action == BatchAction::PrintCommand)
            batch.warnings += labelText({"MESS_LOT_OBS_TEMP",
                                         "Le fichier des observateurs de cette commande est un fichier "
                                         "temporaire de ce programme."});
    }
    if (const auto *contours = std::get_if<ContourOptions>(&recipe.options); contours && contours->interval)
        batch.warnings += manyLevelsWarnings(*contours, estimatedExtremes(request.input, request.band));
    const bool hasOwn = outputFormat(request).compare(QLatin1String("COG"), Qt::CaseInsensitive) == 0;
    if (request.overviews && !hasOwn && !takesOverviews(outputFormat(request)))
        batch.warnings +=
            labelText({"MESS_VUES_FORMAT", "Ce format ne reçoit pas de vues d'ensemble à côté du produit."});
    if (request.worldFile && !request.tiled)
        batch.warnings +=
            labelText({"MESS_CALAGE_SANS_TUILE",
                       "Le fichier de calage n'est écrit qu'avec un produit en tuiles (--tiled)."});
    return batch;
}

BatchRuns splitBatch(const BatchArguments &arguments)
{
    if (arguments.dems.isEmpty())
        return {{arguments}, {}};
    BatchArguments one = arguments;
    one.dems.clear();
    one.input = arguments.dems.first();
    one.output = one.input; // until the format is known
    const RecipeReading reading = combine(one);
    if (!reading.problem.isEmpty())
        return {{}, reading.problem};
    const BatchProcess &process = *findBatchProcess(reading.recipe.process);
    ProcessingRequest request;
    request.process = process.process;
    request.format = reading.recipe.outputFormat;
    const QString extension = formatExtensions(outputFormat(request)).value(0);
    const QString suffix = QString::fromLatin1(processRow(process.process).suffix);

    QVector<BatchArguments> runs;
    QStringList products;
    for (const QString &dem : arguments.dems) {
        one.input = dataSetName(dem, QDir::currentPath());
        one.output = productName(*one.input, suffix, extension);
        products += *one.output;
        runs += one;
    }
    runs.erase(std::remove_if(runs.begin(), runs.end(),
                              [&](const BatchArguments &run) { return products.contains(*run.input); }),
               runs.end());
    return {runs, {}};
}

QString printedCommand(const ProcessingRequest &request, const ToolPaths &tools)
{
    ProcessingRequest printed = request;
    const QString output = withExtension(request.output, formatExtensions(outputFormat(request)));
    printed.output = QFileInfo(output).absoluteFilePath();
    return runCommand(printed, tools);
}
