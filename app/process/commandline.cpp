#include "app/process/commandline.h"

#include "dataset/formats.h"
#include "panels/options/fragments.h"
#include "runner/quoting.h"

#include <QRegularExpression>

#include <array>

namespace
{

QString intervisibilityArguments(const ProcessingRequest &request)
{
    QString text = QStringLiteral("-SrcFile ") + quotedArgument(request.input) + QLatin1Char(' ');
    text += QStringLiteral("-DstFile ") + quotedArgument(request.output) + QLatin1Char(' ');
    text += QStringLiteral("-iBand %1 ").arg(request.band);
    text += request.toolInput.fragment + sideFileArguments(request.toolInput.sideFiles);
    text += creationArguments(request.outputOptions, productRow(request));
    return text;
}

QString contourArguments(const ProcessingRequest &request)
{
    QString text = QStringLiteral("-b %1 ").arg(request.band);
    text += QStringLiteral("-f ") + quotedArgument(outputFormat(request)) + QLatin1Char(' ');
    text += request.toolInput.fragment + QLatin1Char(' ');
    text += QStringLiteral("-nln ") + quotedArgument(outputLayer(request.outputOptions)) + QLatin1Char(' ');
    text += quotedArgument(request.input) + QLatin1Char(' ');
    text += quotedArgument(request.output) + QLatin1Char(' ');
    return text;
}

QString demArguments(const ProcessingRequest &request)
{
    QString text = request.mode + QLatin1Char(' ');
    text += quotedArgument(request.input) + QLatin1Char(' ');
    if (processRow(*request.process).takesColorTable)
        text += quotedArgument(request.toolInput.colorTableFile);
    text += QLatin1Char(' ') + quotedArgument(request.output) + QLatin1Char(' ');
    text += request.toolInput.fragment + QLatin1Char(' ');
    text += QStringLiteral("-b %1 ").arg(request.band);
    text += QStringLiteral("-of ") + quotedArgument(outputFormat(request));
    text += creationArguments(request.outputOptions, productRow(request));
    return text;
}

QString withoutExtension(const QString &path)
{
    const auto dot = path.lastIndexOf(QLatin1Char('.'));
    return dot > path.lastIndexOf(QLatin1Char('/')) ? path.left(dot) : path;
}

} // namespace

ProductKind productKind(const ProcessingRequest &request)
{
    return request.process ? processRow(*request.process).product : ProductKind::Raster;
}

ProcessRow productRow(const ProcessingRequest &request)
{
    ProcessRow row = processRow(*request.process);
    if (request.process != Process::Intervisibility || request.cellUse.sight == SightResult::Picture)
        return row;
    row.bands = 1;
    row.bytesPerCell = request.cellUse.sight == SightResult::Count ? 2 : 4;
    return row;
}

QString outputFormat(const ProcessingRequest &request)
{
    return outputFormat(request.outputOptions, productKind(request));
}

bool isShaded(const ProcessingRequest &request)
{
    return !request.toolInput.shadeFragment.isEmpty();
}

bool isFinished(const ProcessingRequest &request)
{
    const ContourSteps &contours = request.toolInput.contours;
    return contours.isFinished || (!contours.linesFragment.isEmpty() && takesNoFields(outputFormat(request)));
}

QString qgisStyleFile(const QString &product)
{
    return withoutExtension(product) + QStringLiteral(".qml");
}

bool hasAlpha(const ProcessingRequest &request)
{
    return request.toolInput.fragment == colorReliefFragment({.alpha = true});
}

QString partText(const QRect &part)
{
    if (part.isNull())
        return {};
    return QStringLiteral("%1 %2 %3 %4")
        .arg(QString::number(part.x()), QString::number(part.y()), QString::number(part.width()),
             QString::number(part.height()));
}

std::optional<QRect> readPart(const QString &text)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,;]+"));
    const QStringList numbers = text.split(separators, Qt::SkipEmptyParts);
    if (numbers.isEmpty())
        return QRect();
    std::array<int, 4> values{};
    if (static_cast<std::size_t>(numbers.size()) != values.size())
        return std::nullopt;
    for (std::size_t at = 0; at < values.size(); ++at) {
        bool isNumber = false;
        values[at] = numbers.at(static_cast<int>(at)).toInt(&isNumber);
        if (!isNumber || values[at] < (at < 2 ? 0 : 1))
            return std::nullopt;
    }
    return QRect(values[0], values[1], values[2], values[3]);
}

QString fillMaskFile(const QString &product)
{
    return withoutExtension(product) + QStringLiteral("_filled.tif");
}

QString processArguments(const ProcessingRequest &request)
{
    if (!request.process)
        return {};
    switch (processRow(*request.process).tool) {
    case Tool::Intervisibility:
        return intervisibilityArguments(request);
    case Tool::Contour:
        return contourArguments(request);
    case Tool::Dem:
        return demArguments(request);
    case Tool::Translate:
        break; // no process uses it
    }
    return {};
}

QString processCommand(const QString &toolPath, const QString &arguments)
{
    return quotedArgument(toolPath) + QLatin1Char(' ') + arguments;
}

QString runCommand(const ProcessingRequest &request, const ToolPaths &tools)
{
    return processCommand(tools.path(processRow(*request.process).tool), processArguments(request));
}

QuvoOutputFilesList declaredOutputs(const ProcessingRequest &request)
{
    if (!request.process)
        return {};
    const ProductKind product = productKind(request);
    const QString format = outputFormat(request);
    const FormatTraits &traits = formatTraits(format);
    QuvoOutputFilesList files{
        {.path = request.output,
         .driver = format,
         .kind = product == ProductKind::Vector ? QuvoOutputFileKind::Vector : QuvoOutputFileKind::Raster,
         .ownsBaseName = !traits.keepsToWholeName,
         .sideExtensions = sideExtensions(format, product)}};
    if (request.outputOptions.fillMask && request.outputOptions.fillDistance > 0.0)
        files += {.path = fillMaskFile(request.output)};
    if (request.toolInput.contours.writesStyle)
        files += {.path = qgisStyleFile(request.output)};
    if (product == ProductKind::Vector)
        return files;
    // A world file that this command does not write is the user's own.
    if (request.outputOptions.tiled && request.outputOptions.worldFile)
        files += {.path = withoutExtension(request.output) + QStringLiteral(".tfw")};
    const QString temporarySuffix = QString::fromLatin1(traits.temporarySuffix);
    if (!temporarySuffix.isEmpty())
        files += {.path = request.output + temporarySuffix};
    return files;
}
