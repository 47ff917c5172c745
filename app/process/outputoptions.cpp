#include "app/process/outputoptions.h"

#include "dataset/formatfilters.h"
#include "dataset/overviews.h"

namespace
{

/// What the drivers do not say of themselves: formats of a fixed grid, scale or purpose, and formats of so many
/// bands.
bool takesProduct(const QString &format, int bands)
{
    static const QStringList special{"DTED", "MBTiles", "MEM", "NITF", "NTv2", "PCRaster", "PDF", "SRTMHGT"};
    static const QStringList ofOneBand{"AAIGrid", "GIF", "GS7BG", "GSAG", "GSBG", "netCDF", "XPM"};
    static const QStringList ofSeveral{"WEBP"};
    return !special.contains(format) && !(bands > 1 ? ofOneBand : ofSeveral).contains(format);
}

bool isOffered(const QString &format, const ProcessRow &process)
{
    if (formatExtensions(format).isEmpty())
        return false;
    if (process.product == ProductKind::Vector)
        return isVectorOutputFormat(format);
    const QString cells = process.bytesPerCell == 1 ? QStringLiteral("Byte") : QStringLiteral("Float32");
    return isRasterOutputFormat(format) && storesCells(format, cells) && takesProduct(format, process.bands);
}

} // namespace

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
    for (const QString &name : driverNames()) {
        if (name != formats.first() && isOffered(name, processRow(process)))
            formats += name;
    }
    return formats;
}
