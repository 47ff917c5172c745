#include "app/batch/request.h"

#include "app/process/productname.h"
#include "app/process/productsteps.h"
#include "app/recipe/recipe.h"
#include "app/recipe/recipeinput.h"
#include "app/run/outputname.h"
#include "app/startup/StopSignals.h"
#include "dataset/formatfilters.h"
#include "dataset/formats.h"
#include "dataset/pathencoding.h"
#include "dataset/rasterinfo.h"
#include "dataset/references.h"
#include "dataset/views/mosaic.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace
{

// Both functions below fill in the recipe from the command line and return the problem, in a sentence; empty
// for valid arguments.

/// Sets the process of the command line, which must be that of a recipe file.
QString chooseProcess(Recipe &recipe, const BatchArguments &arguments)
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
    const NamedProcess *process = findProcess(arguments.process);
    if (!process)
        return unknownProcessProblem(arguments.process);
    recipe.process = arguments.process;
    recipe.options = process->defaults;
    return {};
}

QString setOptions(Recipe &recipe, const BatchArguments &arguments)
{
    QStringList given;
    for (const auto &option : arguments.options) {
        const QString problem = setOption(recipe.options, option.first, option.second);
        if (!problem.isEmpty())
            return problem;
        given += option.first;
    }
    completeOptions(recipe.options, given, QDir::currentPath());
    return optionsProblem(recipe.options);
}

/// Reads the recipe, whose values the arguments of the command line override.
RecipeReading combinedRecipe(const BatchArguments &arguments)
{
    RecipeReading reading;
    if (arguments.recipeFile == QLatin1String(pipedRecipeName))
        reading = readRecipe(arguments.pipedRecipe, QDir::currentPath());
    else if (!arguments.recipeFile.isEmpty())
        reading = readRecipeFile(arguments.recipeFile);
    Recipe &recipe = reading.recipe;
    if (reading.problem.isEmpty())
        reading.problem = chooseProcess(recipe, arguments);
    if (reading.problem.isEmpty())
        reading.problem = setOptions(recipe, arguments);
    if (arguments.mosaic)
        recipe.tiles = arguments.dems;
    else if (arguments.input)
        recipe.tiles.clear();
    if (!recipe.tiles.isEmpty())
        recipe.input.clear();
    recipe.input = arguments.input.value_or(recipe.input);
    recipe.output = arguments.output.value_or(recipe.output);
    recipe.band = arguments.band.value_or(recipe.band);
    recipe.part = arguments.part.value_or(recipe.part);
    recipe.outputOptions = overridden(recipe.outputOptions, arguments.outputOptions);

    if (reading.problem.isEmpty() && recipe.input.isEmpty() && recipe.tiles.isEmpty())
        reading.problem = labelText({"MESS_LOT_SANS_ENTREE", "Indiquez le MNT d'entrée (--input)."});
    if (reading.problem.isEmpty() && recipe.output.isEmpty())
        reading.problem = labelText({"MESS_LOT_SANS_SORTIE", "Indiquez le fichier à créer (--output)."});
    return reading;
}

QStringList outputWarnings(const ProcessingRequest &request)
{
    QStringList warnings;
    const OutputOptions &output = request.outputOptions;
    if (output.overviews && formatTraits(outputFormat(request)).overviews == OverviewPlace::InProduct)
        warnings +=
            labelText({"MESS_VUES_FORMAT", "Ce format n'accepte pas de vues d'ensemble à côté du produit."});
    if (output.worldFile && !output.tiled)
        warnings += labelText({"MESS_CALAGE_SANS_TUILE",
                               "Le fichier de calage n'est écrit qu'avec un produit en tuiles (--tiled)."});
    if (!output.reproject.isEmpty() && request.process && !mayReproject(*request.process))
        warnings += labelText({"MESS_PROJ_SANS_EFFET",
                               "--reproject ne vaut que pour les courbes de niveau et l'intervisibilité : ce "
                               "produit garde le système du MNT."});
    return warnings;
}

/// What the names of a recipe's products end in.
struct ProductNaming
{
    QString suffix;
    QString extension;
};

ProductNaming namingOf(const Recipe &recipe)
{
    const ProcessRow &row = processRow(findProcess(recipe.process)->process);
    return {QString::fromLatin1(row.suffix),
            formatExtensions(outputFormat(recipe.outputOptions, row.product)).value(0)};
}

/// The DEMs by the names under which GDAL opens them, without those that have the name of a product of one of
/// them, or of their mosaic.
QStringList withoutProducts(const QStringList &typed, const ProductNaming &naming)
{
    QStringList dems;
    QStringList products;
    for (const QString &dem : typed)
        dems += dataSetName(dem, QDir::currentPath());
    for (const QString &dem : qAsConst(dems)) {
        products += productName(dem, naming.suffix, naming.extension);
        products += productName(mosaicName({dem}), naming.suffix, naming.extension);
        for (const QString &product : products.mid(products.size() - 2))
            products += sideFileName(product, classPictureWord, QStringLiteral("tif"));
    }
    dems.erase(
        std::remove_if(dems.begin(), dems.end(), [&](const QString &dem) { return products.contains(dem); }),
        dems.end());
    return dems;
}

/// The options that name the files beside one product of several.
QVector<QPair<QString, QString>> sideFileOptions(const Recipe &recipe, const QString &product)
{
    QVector<QPair<QString, QString>> options;
    const QVariantMap before = optionValues(recipe.options);
    const QVariantMap own = optionValues(withOwnSideFiles(recipe.options, product));
    for (auto value = own.begin(); value != own.end(); ++value) {
        if (value.value() != before.value(value.key()))
            options += {value.key(), value.value().toString()};
    }
    return options;
}

/// The run of the mosaic of the tiles, whose product stands beside the first of them where no name is given.
BatchRuns mosaicRun(const BatchArguments &arguments, const QStringList &tiles, const ProductNaming &naming)
{
    if (tiles.size() < 2)
        return {{}, tooFewTilesProblem()};
    BatchArguments run = arguments;
    run.dems = tiles;
    if (!run.output)
        run.output = productName(mosaicName(tiles), naming.suffix, naming.extension);
    return {{run}, {}};
}

} // namespace

BatchRequest assembleBatch(const BatchArguments &arguments, WorkFolder &workFolder)
{
    BatchRequest batch;
    const RecipeReading reading = combinedRecipe(arguments);
    batch.problem = reading.problem;
    batch.exit = BatchExit::BadArguments;
    if (!batch.problem.isEmpty())
        return batch;
    batch.exit = BatchExit::BadInput;
    const Recipe &recipe = reading.recipe;
    QString dem = dataSetName(recipe.input, QDir::currentPath());
    if (recipe.tiles.isEmpty()) {
        batch.problem = endlessSourceProblem(dem); // before the DEM is opened
        dem = rasterName(dem);
    } else {
        const Mosaic mosaic = makeMosaic(recipe.tiles, workFolder);
        dem = mosaic.path;
        batch.problem = mosaic.problem;
        batch.warnings = mosaic.warnings;
    }
    if (!batch.problem.isEmpty())
        return batch;
    const RecipeInput prepared =
        prepareInput(recipe.options, dem, recipe.band, workFolder, &StopSignals::stopWasRequested);
    batch.request = requestOf(recipe, prepared.toolInput);
    batch.request.input = dem;
    batch.problem = prepared.problem;
    batch.warnings += prepared.warnings + outputWarnings(batch.request);
    if (arguments.action == BatchAction::PrintCommand
        && (prepared.toolInput.readsTemporaryFile || !recipe.tiles.isEmpty()))
        batch.warnings += labelText(
            {"MESS_LOT_FICHIER_TEMP",
             "Cette commande lit un fichier temporaire de ce programme, supprimé quand il se termine."});
    if (arguments.action == BatchAction::PrintCommand && batch.problem.isEmpty()
        && needsSteps(batch.request, readDemFacts(dem, recipe.band)))
        batch.warnings +=
            labelText({"MESS_LOT_AUTRES_ETAPES",
                       "Cette commande lit le MNT tel quel ; pour ce produit, ce programme exécute "
                       "d'autres étapes encore."});
    if (!arguments.recipeFile.isEmpty() && arguments.recipeFile != QLatin1String(pipedRecipeName))
        batch.otherInputs += QFileInfo(arguments.recipeFile).absoluteFilePath();
    batch.otherInputs += prepared.sourceFiles;
    return batch;
}

RecipeReading recipeForDems(const BatchArguments &arguments)
{
    BatchArguments one = arguments;
    if (!arguments.mosaic) {
        one.dems.clear();
        one.input = arguments.dems.first();
    }
    one.output = arguments.dems.first(); // a placeholder until the format is known
    return combinedRecipe(one);
}

BatchRuns splitBatch(const BatchArguments &arguments)
{
    if (arguments.dems.isEmpty())
        return {{arguments}, {}};
    BatchArguments one = arguments;
    if (!arguments.mosaic) {
        one.dems.clear();
        one.input = arguments.dems.first();
    }
    const RecipeReading reading = recipeForDems(arguments);
    if (!reading.problem.isEmpty())
        return {{}, reading.problem};
    const ProductNaming naming = namingOf(reading.recipe);
    const QStringList dems = withoutProducts(arguments.dems, naming);
    if (arguments.mosaic)
        return mosaicRun(arguments, dems, naming);

    QVector<BatchArguments> runs;
    for (const QString &dem : dems) {
        one.input = dem;
        one.output = productName(dem, naming.suffix, naming.extension);
        one.options = arguments.options + sideFileOptions(reading.recipe, *one.output);
        runs += one;
    }
    return {runs, {}};
}

QString printedCommand(const ProcessingRequest &request, const ToolPaths &tools)
{
    ProcessingRequest printed = request;
    const QString output = withExtension(request.output, formatExtensions(outputFormat(request)));
    printed.output = QFileInfo(output).absoluteFilePath();
    return runCommand(printed, tools);
}
