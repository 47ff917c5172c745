#include "app/process/commandline.h"

#include "dataset/formats.h"
#include "runner/quoting.h"

namespace
{

QString intervisibilityArguments(const ProcessingRequest &request)
{
    QString text = QStringLiteral("-SrcFile ") + quotedArgument(request.input) + QLatin1Char(' ');
    text += QStringLiteral("-DstFile ") + quotedArgument(request.output) + QLatin1Char(' ');
    text += QStringLiteral("-iBand %1 ").arg(request.band);
    text += request.toolInput.fragment;
    text += creationArguments(request.outputOptions);
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
    text += creationArguments(request.outputOptions);
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

QString outputFormat(const ProcessingRequest &request)
{
    return outputFormat(request.outputOptions, productKind(request));
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
