#include "app/run/runplan.h"

#include "app/run/outputname.h"
#include "app/run/statisticsfiles.h"
#include "dataset/formatfilters.h"
#include "dataset/formats.h"
#include "dataset/overviews.h"
#include "dataset/rasterinfo.h"
#include "runner/outputfiles.h"
#include "runner/quoting.h"

#include <QDir>
#include <QFileInfo>

namespace
{

QString formatProblem(const ProcessingRequest &request)
{
    const QString format = outputFormat(request);
    if (productKind(request) == ProductKind::Vector)
        return isVectorOutputFormat(format)
            ? attributeProblem(format, request.toolInput.attribute)
            : labelText({"MESS_VECT_INCONNU", "GDAL n'écrit aucun format vecteur « %1 » sur cet ordinateur."})
                  .arg(format);
    if (!isRasterOutputFormat(format))
        return labelText({"MESS_FORMAT_INCONNU", "GDAL n'écrit aucun format raster « %1 » sur cet ordinateur."})
            .arg(format);
    if (request.outputOptions.tiled && !hasCreationOption(format, QStringLiteral("TILED")))
        return labelText({"MESS_FORMAT_SANS_TUILE", "Le format « %1 » ne peut pas être en tuiles."})
            .arg(format);
    if (request.outputOptions.tiled && request.outputOptions.worldFile
        && !hasCreationOption(format, QStringLiteral("TFW")))
        return labelText({"MESS_FORMAT_SANS_CALAGE", "Le format « %1 » n'a pas de fichier de calage."})
            .arg(format);
    return {};
}

QString inputProblem(const ProcessingRequest &request, const RasterInfo &input)
{
    if (!input.problem.isEmpty())
        return labelText({"MESS_INV_INPUT_FILE", "Le fichier d'entrée n'est pas valide"}) + QLatin1Char('\n')
            + request.input + QLatin1Char('\n') + input.problem;
    if (request.band > input.bandCount)
        return labelText({"MESS_BANDE_ABSENTE", "Le MNT n'a pas de bande %1 ; il en a %2."})
            .arg(QString::number(request.band), QString::number(input.bandCount));
    return {};
}

QString colorTableProblem(const ProcessingRequest &request)
{
    const QString &file = request.toolInput.colorTableFile;
    if (!processRow(*request.process).takesColorTable || QFileInfo(file).isFile())
        return {};
    return labelText({"MESS_TC_ABSENTE", "La table couleur « %1 » n'existe pas."}).arg(file);
}

/// The problem of files that the run writes or removes beside the product.
QString neighbourProblem(const ProcessingRequest &request, const QuvoOutputFilesList &outputs,
                         const QStringList &inputFiles)
{
    for (const QuvoOutputFile &output : outputs) {
        if (isOneOf(output.path, inputFiles))
            return partOfInputProblem(output.path);
    }
    // Such a file would be read as part of the product, or removed with the product that the run replaces.
    for (const QString &file : wholeNameFiles(request.output)) {
        if (isOneOf(file, inputFiles))
            return partOfInputProblem(file);
    }
    const QFileInfo product(request.output);
    const auto isNeighbour = [&](const QString &inputFile) {
        const QFileInfo file(inputFile);
        return file.completeBaseName() == product.completeBaseName()
            && QFileInfo(file.absolutePath()) == QFileInfo(product.absolutePath());
    };
    if (outputs.first().ownsBaseName && std::any_of(inputFiles.begin(), inputFiles.end(), isNeighbour))
        return labelText(
                   {"MESS_SORTIE_MEME_BASE",
                    "Le format « %1 » écrit des fichiers annexes qui remplaceraient ceux du MNT d'entrée ; "
                    "choisissez un autre nom que « %2 »."})
            .arg(outputFormat(request), product.fileName());
    return {};
}

/// The command line that builds overviews of the product; empty where none are wanted or possible.
QString overviewCommand(const ProcessingRequest &request, const ToolPaths &tools, const RasterInfo &input)
{
    if (!request.outputOptions.overviews || productKind(request) != ProductKind::Raster
        || !takesOverviews(outputFormat(request)) || overviewFactors(input.width, input.height).isEmpty())
        return {};
    return processCommand(tools.batch, QStringLiteral("--build-overviews ") + quotedArgument(request.output));
}

RunPlan refused(RunPlan plan, ProblemKind kind, const QString &problem)
{
    plan.problemKind = kind;
    plan.problem = problem;
    return plan;
}

} // namespace

QString existingOutput(const RunPlan &plan)
{
    for (const QuvoOutputFile &output : plan.outputs) {
        if (QFileInfo::exists(output.path))
            return output.path;
    }
    const QuvoOutputFile &product = plan.outputs.first();
    for (const QString &file : wholeNameFiles(product.path)) {
        if (QFileInfo::exists(file))
            return file;
    }
    return product.ownsBaseName ? namesakes(product).value(0) : QString();
}

RunPlan planRun(const ProcessingRequest &request, const ToolPaths &tools, const QStringList &otherInputs)
{
    RunPlan plan;
    plan.request = request;
    const ProcessRow &process = processRow(*request.process);

    QString problem = toolProblem(tools, process.tool);
    if (!problem.isEmpty())
        return refused(plan, ProblemKind::Tool, problem);
    problem = formatProblem(request);
    if (!problem.isEmpty())
        return refused(plan, ProblemKind::Format, problem);
    const RasterInfo input = readRasterInfo(request.input);
    problem = inputProblem(request, input);
    if (!problem.isEmpty())
        return refused(plan, ProblemKind::Input, problem);

    problem = colorTableProblem(request);
    if (!problem.isEmpty())
        return refused(plan, ProblemKind::Input, problem);

    QStringList inputFiles = input.files + otherInputs;
    if (!request.toolInput.colorTableFile.isEmpty())
        inputFiles += request.toolInput.colorTableFile;
    const OutputName output =
        checkOutputName(request.output, formatExtensions(outputFormat(request)), inputFiles);
    if (!output.problem.isEmpty())
        return refused(plan, ProblemKind::Output, output.problem);
    plan.request.output = output.path;
    plan.outputs = declaredOutputs(plan.request);
    problem = neighbourProblem(plan.request, plan.outputs, inputFiles);
    if (!problem.isEmpty())
        return refused(plan, ProblemKind::Output, problem);

    plan.touchedInputFiles = filesWithStatistics(request.toolInput.colorTableFile, input.files);
    plan.command = runCommand(plan.request, tools);
    plan.overviewCommand = overviewCommand(plan.request, tools, input);
    plan.expected = {process.product, output.path, input.width, input.height,
                     outputLayer(request.outputOptions)};
    plan.warnings = freeSpaceWarnings(output.path, expectedProductSize(process, input.width, input.height));
    return plan;
}
