#include "app/run/runplan.h"

#include "app/run/outputname.h"
#include "app/run/replacedoutput.h"
#include "app/run/statisticsfiles.h"
#include "dataset/formatfilters.h"
#include "dataset/formats.h"
#include "dataset/overviews.h"
#include "dataset/pathencoding.h"
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
            ? attributesProblem(format, request.toolInput.attributes)
            : labelText({"MESS_VECT_INCONNU", "GDAL n'écrit aucun format vecteur « %1 » sur cet ordinateur."})
                  .arg(format);
    if (processRow(*request.process).tool == Tool::Intervisibility
        && !outputFormats(*request.process).contains(format))
        return labelText({"MESS_FORMAT_INTERVIS", "L'intervisibilité ne s'écrit qu'en GTiff, pas en « %1 »."})
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
    return writingProblem(request.outputOptions);
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

/// Why the DEM has no such part, in a sentence; empty for a good part and for the whole.
QString partProblem(const QRect &part, const RasterInfo &input)
{
    if (part.isNull() || (!part.isEmpty() && QRect(0, 0, input.width, input.height).contains(part)))
        return {};
    return labelText({"MESS_PARTIE_DEHORS",
                      "La partie à traiter (%1) ne se trouve pas dans le MNT, qui a %2 colonnes et %3 lignes."})
        .arg(partText(part), QString::number(input.width), QString::number(input.height));
}

/// Whether one of the files has the base name and the folder of `path`.
bool hasNamesake(const QString &path, const QStringList &files)
{
    const QFileInfo one(path);
    return std::any_of(files.begin(), files.end(), [&](const QString &other) {
        const QFileInfo file(other);
        return file.completeBaseName() == one.completeBaseName()
            && QFileInfo(file.absolutePath()) == QFileInfo(one.absolutePath());
    });
}

/// The problem of files that the run writes or removes beside the product. `inputFiles`: all that the run
/// reads, among them the DEM's own `demFiles`.
QString neighbourProblem(const ProcessingRequest &request, const QuvoOutputFilesList &outputs,
                         const QStringList &inputFiles, const QStringList &demFiles)
{
    for (const QuvoOutputFile &output : outputs) {
        if (isOneOf(output.path, inputFiles))
            return partOfInputProblem(output.path);
        if (isSpecialFile(output.path))
            return specialFileProblem(output.path);
    }
    // Such a file would be read as part of the product, or removed with the product that the run replaces.
    for (const QString &file : wholeNameFiles(request.output)) {
        if (isOneOf(file, inputFiles))
            return partOfInputProblem(file);
    }
    const bool writesWorldFile = request.outputOptions.tiled && request.outputOptions.worldFile;
    if ((outputs.first().ownsBaseName && hasNamesake(request.output, inputFiles))
        || (writesWorldFile && hasNamesake(request.output, demFiles)))
        return labelText(
                   {"MESS_SORTIE_MEME_BASE",
                    "Le format « %1 » écrit des fichiers annexes qui remplaceraient ceux du MNT d'entrée ; "
                    "choisissez un autre nom que « %2 »."})
            .arg(outputFormat(request), QFileInfo(request.output).fileName());
    return {};
}

/// Whether overviews are wanted and possible.
bool buildsOverviews(const ProcessingRequest &request, const RasterInfo &input)
{
    return request.outputOptions.overviews && productKind(request) == ProductKind::Raster
        && takesOverviews(outputFormat(request)) && !overviewFactors(input.width, input.height).isEmpty();
}

QString overviewCommand(const QString &raster, const ToolPaths &tools)
{
    return processCommand(tools.batch, QStringLiteral("--build-overviews ") + quotedArgument(raster));
}

/// The name of a file in the current folder, as tools take it for nothing else.
QString plainName(const QString &name)
{
    const bool isOrdinary = !name.startsWith(QLatin1Char('-')) && !name.contains(QLatin1Char(':'));
    return isOrdinary ? name : QStringLiteral("./") + name;
}

QuvoOutputFile sideOutput(const QString &path)
{
    if (!path.endsWith(QLatin1String(".gpkg"), Qt::CaseInsensitive))
        return {.path = path};
    return {.path = path, .driver = QStringLiteral("GPKG"), .kind = QuvoOutputFileKind::Vector};
}

/// Resolves the names of the side files in the plan, whose output is known. Returns the first problem, in a
/// sentence; empty for good names.
QString placeSideFiles(RunPlan &plan, const QStringList &inputFiles)
{
    const QStringList layers{QStringLiteral("skyline"), QStringLiteral("seen")};
    const QDir folder = QFileInfo(plan.request.output).dir();
    for (SideFile &side : plan.request.toolInput.sideFiles) {
        if (side.path.isEmpty())
            side.path = sideFileName(plan.request.output, side.word, side.extensions.first());
        const OutputName name =
            checkOutputName(folder.absoluteFilePath(side.path), side.extensions, inputFiles);
        if (!name.problem.isEmpty())
            return side.path + QLatin1Char('\n') + name.problem;
        if (writtenFiles(plan).contains(name.path))
            return labelText({"MESS_COTE_DEUX_FOIS",
                              "« %1 » serait écrit deux fois ; donnez un autre nom à l'un des fichiers."})
                .arg(name.path);
        side.path = name.path;
        plan.sideOutputs += sideOutput(name.path);
        const QString problem = otherContentProblem(plan.sideOutputs.last(), layers);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
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
    const QString namesake = product.ownsBaseName ? namesakes(product).value(0) : QString();
    return namesake.isEmpty() ? existingSideOutputs(plan).value(0) : namesake;
}

QStringList existingSideOutputs(const RunPlan &plan)
{
    QStringList files;
    for (const QuvoOutputFile &side : plan.sideOutputs) {
        if (QFileInfo::exists(side.path))
            files += side.path;
    }
    return files;
}

QStringList writtenFiles(const RunPlan &plan)
{
    QStringList files{plan.request.output};
    for (const QuvoOutputFile &side : plan.sideOutputs)
        files += side.path;
    return files;
}

RunPlan planAt(RunPlan plan, const QString &path)
{
    // A name inside of a container may hold a path that is relative to the current folder.
    const bool isMovable = QFileInfo(plan.request.input).isAbsolute() && !isVirtualPath(plan.request.input);
    plan.workingFolder = isMovable ? QFileInfo(path).path() : QString();
    plan.toolOutput = isMovable ? plainName(QFileInfo(path).fileName()) : path;
    plan.request.output = path;
    if (!plan.overviewCommand.isEmpty())
        plan.overviewCommand = overviewCommand(path, plan.tools);
    plan.outputs = declaredOutputs(plan.request);
    plan.expected.path = path;
    return plan;
}

ProductSteps stepsOf(const RunPlan &plan, const QString &folder)
{
    ProcessingRequest request = plan.request;
    request.output = plan.toolOutput;
    return productSteps(request, plan.dem, plan.tools, folder);
}

RunPlan planRun(const ProcessingRequest &request, const ToolPaths &tools, const QStringList &otherInputs)
{
    RunPlan plan;
    plan.request = request;
    plan.tools = tools;
    const ProcessRow process = productRow(request);

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

    problem = partProblem(request.part, input);
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
        return refused(plan, output.isInput ? ProblemKind::Replacement : ProblemKind::Output, output.problem);
    plan.request.output = output.path;
    plan.outputs = declaredOutputs(plan.request);
    problem = neighbourProblem(plan.request, plan.outputs, inputFiles, input.files);
    if (problem.isEmpty())
        problem = otherContentProblem(plan.outputs.first(), {outputLayer(request.outputOptions)});
    if (problem.isEmpty())
        problem = sharedFileProblem(plan.outputs.first());
    if (!problem.isEmpty())
        return refused(plan, ProblemKind::Replacement, problem);
    problem = placeSideFiles(plan, inputFiles);
    if (!problem.isEmpty())
        return refused(plan, ProblemKind::SideFile, problem);

    plan.touchedInputFiles = filesWithStatistics(request.toolInput.colorTableFile, input.files);
    plan.command = runCommand(plan.request, tools);
    plan.toolOutput = output.path;
    plan.dem = readDemFacts(request.input, request.band);
    plan.treatment = treatmentOf(plan.request, plan.dem);
    plan.treatmentNote = treatmentText(plan.treatment, plan.dem, request.cellUse, QLocale());
    if (buildsOverviews(plan.request, input))
        plan.overviewCommand = overviewCommand(output.path, tools);
    plan.expected = {process.product,
                     output.path,
                     input.width,
                     input.height,
                     outputLayer(request.outputOptions),
                     process.tool == Tool::Intervisibility ? process.bands : 0};
    // Intermediate files stand beside the product until it is finished.
    const int copies = isShaded(plan.request) ? 3 : needsSteps(plan.request, plan.dem) ? 2 : 1;
    const QSize size = request.part.isNull() ? QSize(input.width, input.height) : request.part.size();
    plan.warnings =
        freeSpaceWarnings(output.path, copies * expectedProductSize(process, size.width(), size.height()));
    return plan;
}
