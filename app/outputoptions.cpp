#include "app/outputoptions.h"

#include "app/overviews.h"
#include "dataset/formatfilters.h"

void applyOutputOptions(const OutputOptions &options, ProcessingRequest &request)
{
    request.format = options.format;
    request.layerName = options.layerName;
    const QString format = outputFormat(request);
    const bool vector = request.process && processRow(*request.process).product == ProductKind::Vector;
    request.tiled = options.tiled && !vector && hasCreationOption(format, QStringLiteral("TILED"));
    request.worldFile = options.worldFile && request.tiled && hasCreationOption(format, QStringLiteral("TFW"));
    request.overviews = options.overviews && !vector && takesOverviews(format);
}

QStringList outputFormats(Process process)
{
    ProcessingRequest usual;
    usual.process = process;
    QStringList formats{outputFormat(usual)};
    if (processRow(process).tool == Tool::Intervisibility)
        return formats; // the tool writes no other
    const bool vector = processRow(process).product == ProductKind::Vector;
    const QString cells =
        processRow(process).bytesPerCell == 1 ? QStringLiteral("Byte") : QStringLiteral("Float32");
    for (const QString &name : driverNames()) {
        if (name != formats.first() && !formatExtensions(name).isEmpty()
            && (vector ? isVectorOutputFormat(name) : isRasterOutputFormat(name) && storesCells(name, cells)))
            formats += name;
    }
    return formats;
}
