#include "app/process/commandline.h"

#include "runner/quoting.h"

namespace
{

/// "-co" arguments of the raster tools, each with its blank in front. A world file goes only with tiling, on
/// purpose.
QString creationOptions(const ProcessingRequest &request)
{
    QString options;
    if (request.tiled) {
        options += QStringLiteral(" -co \"TILED=YES\"");
        if (request.worldFile)
            options += QStringLiteral(" -co \"TFW=YES\"");
    }
    return options;
}

QString intervisibilityArguments(const ProcessingRequest &request)
{
    QString text = QStringLiteral("-SrcFile ") + quotedArgument(request.input) + QLatin1Char(' ');
    text += QStringLiteral("-DstFile ") + quotedArgument(request.output) + QLatin1Char(' ');
    text += QStringLiteral("-iBand %1 ").arg(request.band);
    text += request.fragment;
    text += creationOptions(request);
    return text;
}

QString contourArguments(const ProcessingRequest &request)
{
    QString text = QStringLiteral("-b %1 ").arg(request.band);
    text += QStringLiteral("-f ") + quotedArgument(outputFormat(request)) + QLatin1Char(' ');
    text += request.fragment + QLatin1Char(' ');
    text += QStringLiteral("-nln ") + quotedArgument(outputLayer(request)) + QLatin1Char(' ');
    text += quotedArgument(request.input) + QLatin1Char(' ');
    text += quotedArgument(request.output) + QLatin1Char(' ');
    return text;
}

QString demArguments(const ProcessingRequest &request)
{
    QString text = request.mode + QLatin1Char(' ');
    text += quotedArgument(request.input) + QLatin1Char(' ');
    if (request.process == Process::ColorRelief)
        text += quotedArgument(request.colorTableFile);
    text += QLatin1Char(' ') + quotedArgument(request.output) + QLatin1Char(' ');
    text += request.fragment + QLatin1Char(' ');
    text += QStringLiteral("-b %1 ").arg(request.band);
    text += QStringLiteral("-of ") + quotedArgument(outputFormat(request));
    text += creationOptions(request);
    return text;
}

/// These raster formats keep to files of the product's whole name.
bool writesOneFile(const QString &format)
{
    return format.compare(QLatin1String("GTiff"), Qt::CaseInsensitive) == 0
        || format.compare(QLatin1String("COG"), Qt::CaseInsensitive) == 0;
}

QString withoutExtension(const QString &path)
{
    const auto dot = path.lastIndexOf(QLatin1Char('.'));
    return dot > path.lastIndexOf(QLatin1Char('/')) ? path.left(dot) : path;
}

} // namespace

QString outputFormat(const ProcessingRequest &request)
{
    if (!request.format.isEmpty())
        return request.format;
    const bool vector = request.process && processRow(*request.process).product == ProductKind::Vector;
    return vector ? QStringLiteral("ESRI Shapefile") : QStringLiteral("GTiff");
}

QString outputLayer(const ProcessingRequest &request)
{
    return request.layerName.isEmpty() ? QStringLiteral("contour") : request.layerName;
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
        break; // no process of the dialog
    }
    return {};
}

QString processCommand(const QString &toolPath, const QString &arguments)
{
    return quotedArgument(toolPath) + QLatin1Char(' ') + arguments;
}

QuvoOutputFilesList declaredOutputs(const ProcessingRequest &request)
{
    if (!request.process)
        return {};
    const QString format = outputFormat(request);
    if (processRow(*request.process).product == ProductKind::Vector)
        return {{request.output, format, QuvoOutputFileKind::Vector, true}};

    QuvoOutputFilesList files{{request.output, format, QuvoOutputFileKind::Raster, !writesOneFile(format)}};
    // Only what the command really makes: a world file of the user's own is not ours to delete.
    if (request.tiled && request.worldFile)
        files += {withoutExtension(request.output) + QStringLiteral(".tfw"), QString(),
                  QuvoOutputFileKind::PlainFile};
    if (format.compare(QLatin1String("COG"), Qt::CaseInsensitive) == 0)
        files += {request.output + QStringLiteral(".ovr.tmp"), QString(), QuvoOutputFileKind::PlainFile};
    return files;
}
