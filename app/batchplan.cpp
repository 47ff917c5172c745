#include "app/batchplan.h"

#include "app/outputname.h"
#include "app/recipe.h"
#include "app/tools.h"
#include "dataset/formatfilters.h"
#include "dataset/pathencoding.h"
#include "dataset/rasterinfo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

RecipeReading readRecipeFile(const QString &name)
{
    constexpr qint64 largestRecipe = 64LL * 1024 * 1024;
    QFile file(name);
    RecipeReading reading;
    if (QFileInfo(name).isFile() && file.size() <= largestRecipe && file.open(QIODevice::ReadOnly)) {
        reading = readRecipe(file.readAll(), QFileInfo(name).absolutePath());
        if (!reading.error.isEmpty())
            reading.error = QStringLiteral("%1 : %2").arg(name, reading.error);
    } else {
        reading.error = labelText({"MESS_REC_ILLISIBLE", "La recette « %1 » ne peut pas être lue."}).arg(name);
    }
    return reading;
}

/// The process of the command line, which a recipe must not contradict.
QString takeProcess(Recipe &recipe, const BatchArguments &arguments)
{
    if (!recipe.process.isEmpty()) {
        if (arguments.process.isEmpty() || arguments.process == recipe.process)
            return {};
        return labelText({"MESS_LOT_AUTRE_TRAIT", "La recette est celle du traitement %1, pas de %2."})
            .arg(recipe.process, arguments.process);
    }
    if (arguments.process.isEmpty())
        return labelText(
            {"MESS_LOT_SANS_TRAIT", "Indiquez un traitement (--process) ou une recette ; --list les donne."});
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
    return optionsProblem(recipe.options);
}

/// The recipe that the command line's arguments make, over those of a recipe file.
RecipeReading combine(const BatchArguments &arguments)
{
    RecipeReading reading;
    if (!arguments.recipeFile.isEmpty())
        reading = readRecipeFile(arguments.recipeFile);
    Recipe &recipe = reading.recipe;
    if (reading.error.isEmpty())
        reading.error = takeProcess(recipe, arguments);
    if (reading.error.isEmpty())
        reading.error = takeOptions(recipe, arguments);
    if (!arguments.input.isEmpty())
        recipe.input = arguments.input;
    if (!arguments.output.isEmpty())
        recipe.output = arguments.output;
    if (!arguments.outputFormat.isEmpty())
        recipe.outputFormat = arguments.outputFormat;
    recipe.band = arguments.band.value_or(recipe.band);
    recipe.tiled |= arguments.tiled;
    recipe.worldFile |= arguments.worldFile;

    if (reading.error.isEmpty() && recipe.input.isEmpty())
        reading.error = labelText({"MESS_LOT_SANS_ENTREE", "Indiquez le MNT d'entrée (--input)."});
    if (reading.error.isEmpty() && recipe.output.isEmpty())
        reading.error = labelText({"MESS_LOT_SANS_SORTIE", "Indiquez le fichier à créer (--output)."});
    return reading;
}

QString formatProblem(const ProcessingRequest &request)
{
    const QString format = outputFormat(request);
    if (!isRasterOutputFormat(format))
        return labelText({"MESS_FORMAT_INCONNU", "GDAL n'écrit aucun format raster « %1 » sur cette machine."})
            .arg(format);
    if (request.tiled && !hasCreationOption(format, QStringLiteral("TILED")))
        return labelText({"MESS_FORMAT_SANS_TUILE", "Le format « %1 » n'a pas d'option de tuiles."})
            .arg(format);
    return {};
}

QString inputProblem(const ProcessingRequest &request, const RasterInfo &input)
{
    if (!input.error.isEmpty())
        return labelText({"MESS_INV_INPUT_FILE", "Le fichier d'entrée n'est pas valide"}) + QLatin1Char('\n')
            + request.input + QLatin1Char('\n') + input.error;
    if (request.band > input.bandCount)
        return labelText({"MESS_BANDE_ABSENTE", "Le MNT n'a pas de bande %1 ; il en a %2."})
            .arg(request.band)
            .arg(input.bandCount);
    return {};
}

} // namespace

BatchPlan assembleBatch(const BatchArguments &arguments, const QString &programFolder)
{
    BatchPlan plan;
    const RecipeReading reading = combine(arguments);
    if (!reading.error.isEmpty()) {
        plan.problem = reading.error;
        plan.exit = BatchExit::BadArguments;
        return plan;
    }
    const Recipe &recipe = reading.recipe;
    ProcessingRequest &request = plan.request;
    request.process = findBatchProcess(recipe.process)->process;
    request.mode = recipe.process;
    request.input = dataSetName(recipe.input);
    request.format = recipe.outputFormat;
    request.band = recipe.band;
    request.tiled = recipe.tiled;
    request.worldFile = recipe.worldFile;
    request.fragment = argumentFragment(recipe.options);
    const QString output = withExtension(recipe.output, formatExtensions(outputFormat(request)));
    request.output = QFileInfo(output).absoluteFilePath();

    plan.command =
        processCommand(toolPath(programFolder, processRow(*request.process).tool), processArguments(request));
    if (request.worldFile && !request.tiled)
        plan.warnings +=
            labelText({"MESS_CALAGE_SANS_TUILE",
                       "Le fichier de calage n'est écrit qu'avec un produit en tuiles (--tiled)."});
    return plan;
}

BatchPlan checkBatch(BatchPlan plan, const QString &programFolder)
{
    const ProcessRow &process = processRow(*plan.request.process);
    plan.problem = toolProblem(programFolder, process.tool);
    if (!plan.problem.isEmpty()) {
        plan.exit = BatchExit::Failed;
        return plan;
    }

    plan.exit = BatchExit::BadArguments;
    plan.problem = formatProblem(plan.request);
    if (!plan.problem.isEmpty())
        return plan;
    const RasterInfo input = readRasterInfo(plan.request.input);
    plan.problem = inputProblem(plan.request, input);
    if (!plan.problem.isEmpty())
        return plan;
    const OutputName output =
        checkOutputName(plan.request.output, formatExtensions(outputFormat(plan.request)), input.files);
    plan.problem = output.problem;
    if (!plan.problem.isEmpty())
        return plan;

    plan.exit = BatchExit::Done;
    plan.outputExists = output.exists;
    plan.expected = {process.product, plan.request.output, input.width, input.height,
                     outputLayer(plan.request)};
    const QString warning =
        freeSpaceWarning(plan.request.output, expectedProductSize(process, input.width, input.height));
    if (!warning.isEmpty())
        plan.warnings += warning;
    return plan;
}
