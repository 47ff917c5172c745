#include "app/process/productsteps.h"

#include "dataset/pathencoding.h"
#include "dataset/views/truecells.h"
#include "dataset/views/turnedview.h"
#include "dataset/views/viewtexts.h"
#include "runner/quoting.h"

#include <QFile>

#include <algorithm>

namespace
{

/// The DEM as the tool reads it, and the files of the way to the product.
class Way
{
public:
    Way(const ProcessingRequest &request, const ToolPaths &tools, const QString &folder)
        : m_request(request)
        , m_tools(tools)
        , m_folder(folder)
    { }

    ProductSteps steps;

    /// Path of a file for this run.
    QString file(const QString &name) const { return m_folder + QLatin1Char('/') + name; }

    /// Writes a small file; a failure becomes the problem of the steps.
    void write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
            return;
        steps.problem = labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."}).arg(path);
    }

    void addStep(const QString &command, const QString &title, double share,
                 const QStringList &intermediates = {})
    {
        steps.steps += {command, title, intermediates, share};
    }

    /// The tool reads band 1 of a view, or the DEM itself, and writes `output`.
    void addTool(const ViewSource &input, const QString &output, const OutputOptions &options, double share)
    {
        ProcessingRequest request = m_request;
        request.input = input.path;
        request.band = input.facts.band;
        request.output = output;
        request.outputOptions = options;
        const bool isProduct = output == m_request.output;
        addStep(runCommand(request, m_tools), toolTitle(), share,
                isProduct ? QStringList() : QStringList{output});
    }

    void addCorrection(const ViewSource &dem, const QString &raster)
    {
        QString arguments = QStringLiteral("--correct-aspect ") + quotedArgument(raster)
            + QStringLiteral(" --input ") + quotedArgument(dem.path)
            + QStringLiteral(" --band %1").arg(dem.facts.band);
        if (m_request.cellUse.trigonometric)
            arguments += QStringLiteral(" --set trigonometric=true");
        addStep(processCommand(m_tools.batch, arguments), toolTitle(), 0.5);
    }

    void addGeoreference(const ViewSource &dem)
    {
        addStep(processCommand(m_tools.batch,
                               QStringLiteral("--georeference ") + quotedArgument(m_request.output)
                                   + QStringLiteral(" --input ") + quotedArgument(dem.path)),
                toolTitle(), 0.02);
    }

    void addAssembly(const QString &view)
    {
        QString arguments = QStringLiteral("-of ") + quotedArgument(outputFormat(m_request))
            + creationArguments(m_request.outputOptions) + QLatin1Char(' ') + quotedArgument(view)
            + QLatin1Char(' ') + quotedArgument(m_request.output);
        addStep(processCommand(m_tools.translate, arguments),
                labelText({"MESS_CALC_ASSEMBLE", "Écriture du résultat."}), 0.5);
    }

private:
    QString toolTitle() const { return labelText(processRow(*m_request.process).stepTitle); }

    const ProcessingRequest &m_request;
    const ToolPaths &m_tools;
    QString m_folder;
};

/// What the tool writes.
ProductCells productCells(const ProcessingRequest &request)
{
    if (processRow(*request.process).bytesPerCell == 1)
        return {QStringLiteral("Byte"), 0.0};
    return {QStringLiteral("Float32"), request.cellUse.zeroWithoutData ? std::nullopt : std::optional(-9999.0)};
}

/// The strip with a row more at each side where the DEM has one, so that its outer rows have neighbours.
RowStrip withNeighbours(const RowStrip &strip, int height)
{
    const int first = std::max(0, strip.first - 1);
    const int end = std::min(height, strip.first + strip.count + 1);
    return {first, end - first};
}

/// The view of a strip in metres, as a source for the tool. The rest of its facts is that of the view.
ViewSource writeMetreView(Way &way, const ViewSource &dem, const RowStrip &strip, double middle, int number)
{
    const QString path = way.file(QStringLiteral("metres%1.vrt").arg(number));
    way.write(path, metreView(dem, strip, trueCell(dem.facts, middle)));
    ViewSource view{path, dem.facts};
    view.facts.band = 1;
    return view;
}

/// The product is written by the tool itself and put right where it stands.
void makeInPlace(Way &way, const ProcessingRequest &request, const ViewSource &dem,
                 const DemTreatment &treatment, bool isGeoreferenced)
{
    const RowStrip whole{0, dem.facts.height};
    const ViewSource input = treatment.metres ? writeMetreView(way, dem, whole, middleRow(whole), 0) : dem;
    way.addTool(input, request.output, request.outputOptions, 1.0);
    if (treatment.directions)
        way.addCorrection(dem, request.output);
    if (treatment.metres && isGeoreferenced)
        way.addGeoreference(dem);
}

/// The tool writes strips of rows, which are then put together.
void makeFromStrips(Way &way, const ViewSource &dem, const DemTreatment &treatment,
                    const QVector<RowStrip> &strips, const ProductCells &cells)
{
    QVector<ProductPart> parts;
    for (const RowStrip &strip : strips) {
        const int number = static_cast<int>(parts.size());
        const RowStrip seen = withNeighbours(strip, dem.facts.height);
        const ViewSource input =
            treatment.metres ? writeMetreView(way, dem, seen, middleRow(strip), number) : dem;
        const QString part = way.file(QStringLiteral("part%1.tif").arg(number));
        way.addTool(input, part, {}, static_cast<double>(strip.count) / dem.facts.height);
        if (treatment.directions)
            way.addCorrection(dem, part);
        parts += {part, strip, strip.first - seen.first, seen.first + seen.count - strip.first - strip.count};
    }
    const QString view = way.file(QStringLiteral("whole.vrt"));
    way.write(view, assembledView(dem.facts, parts, cells));
    way.addAssembly(view);
}

} // namespace

DemTreatment treatmentOf(const ProcessingRequest &request, const DemFacts &facts)
{
    return request.outputOptions.asIs ? DemTreatment() : treatmentOf(request.cellUse, facts);
}

ProductSteps productSteps(const ProcessingRequest &request, const DemFacts &facts, const ToolPaths &tools,
                          const QString &folder, const StepOptions &options)
{
    Way way(request, tools, folder);
    ViewSource dem{request.input, facts};
    DemTreatment treatment = treatmentOf(request, facts);
    treatment.turn = treatment.turn && (options.isGeoreferenced || !isRotated(facts));
    if (treatment.turn) {
        const TurnedView view = writeTurnedView(request.input, facts, folder);
        way.steps.problem = view.problem;
        dem = {view.path, readDemFacts(view.path, 1)};
    }
    way.steps.width = dem.facts.width;
    way.steps.height = dem.facts.height;
    if (!request.cellUse.lengths && !request.cellUse.heights) { // the user's own ratio covers the elevations
        dem.facts.elevationUnit = 1.0;
        dem.facts.elevationScale = 1.0;
        dem.facts.elevationOffset = 0.0;
    }
    const bool hasLengths = treatment.metres && request.cellUse.lengths;
    const QVector<RowStrip> strips =
        hasLengths ? rowStrips(dem.facts, options.tolerance) : QVector<RowStrip>{{0, dem.facts.height}};
    const bool isChanged = treatment.metres || treatment.directions;
    if (!isChanged) {
        way.addTool(dem, request.output, request.outputOptions, 1.0);
    } else if (strips.size() == 1 && outputFormat(request) == QLatin1String("GTiff")) {
        makeInPlace(way, request, dem, treatment, options.isGeoreferenced);
    } else {
        makeFromStrips(way, dem, treatment, strips, productCells(request));
    }
    return way.steps;
}

QuvoProcessingCollection commandsOf(const ProductSteps &steps)
{
    QuvoProcessingCollection commands;
    for (const ProductStep &step : steps.steps)
        commands += {step.command, step.title};
    return commands;
}

QuvoOutputFilesListCollection outputsOf(const ProductSteps &steps, const QuvoOutputFilesList &product)
{
    QuvoOutputFilesListCollection outputs;
    for (const ProductStep &step : steps.steps) {
        outputs += product;
        for (const QString &file : step.intermediates)
            outputs.last() += QuvoOutputFile{.path = file};
    }
    return outputs;
}

QVector<double> sharesOf(const ProductSteps &steps)
{
    QVector<double> shares;
    for (const ProductStep &step : steps.steps)
        shares += step.share;
    return shares;
}
