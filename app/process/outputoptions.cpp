#include "app/process/outputoptions.h"

#include "dataset/formatfilters.h"
#include "dataset/formats.h"
#include "dataset/overviews.h"

namespace
{

bool holdsBands(const FormatTraits &format, int bands)
{
    return format.bands == FormatBands::Any || (format.bands == FormatBands::One) == (bands == 1);
}

bool isOffered(const QString &format, const ProcessRow &process)
{
    const FormatTraits &traits = formatTraits(format);
    if (formatExtensions(format).isEmpty())
        return false;
    if (process.product == ProductKind::Vector)
        return traits.vector == FormatOffer::Listed && isVectorOutputFormat(format);
    const QString cells = process.bytesPerCell == 1 ? QStringLiteral("Byte") : QStringLiteral("Float32");
    return traits.raster == FormatOffer::Listed && isRasterOutputFormat(format) && storesCells(format, cells)
        && holdsBands(traits, process.bands);
}

} // namespace

const QVector<OutputOptionField> &outputOptionFields()
{
    static const QVector<OutputOptionField> fields{
        {{"outputFormat",
          &OutputOptions::format,
          0,
          0,
          {"MESS_LOT_FORMAT", "Format GDAL du produit (GTiff par défaut)."}},
         "of",
         "format"},
        {QUVO_FIELD(OutputOptions, tiled, 0, 0, "MESS_LOT_TUILES", "Produit en tuiles."), "tiled", nullptr},
        {QUVO_FIELD(OutputOptions, worldFile, 0, 0, "MESS_LOT_CALAGE",
                    "Fichier de calage .tfw, avec --tiled seulement."),
         "world-file", nullptr},
        {QUVO_FIELD(OutputOptions, layerName, 0, 0, "MESS_LOT_COUCHE",
                    "Couche d'un produit vecteur (contour par défaut)."),
         "layer", "name"},
        {QUVO_FIELD(OutputOptions, overviews, 0, 0, "MESS_LOT_VUES",
                    "Vues d'ensemble à côté d'un produit raster."),
         "overviews", nullptr},
        {QUVO_FIELD(OutputOptions, fillDistance, 0, 10000, "MESS_LOT_COMBLER",
                    "Comble les cellules sans donnée jusqu'à cette distance, en cellules ; 0 : non."),
         "fill-distance", "cells"},
        {QUVO_FIELD(OutputOptions, fillMask, 0, 0, "MESS_LOT_MASQUE",
                    "Marque les cellules comblées dans un raster à côté du produit."),
         "fill-mask", nullptr},
        {QUVO_FIELD(
             OutputOptions, reproject, 0, 0, "MESS_LOT_REPROJETER",
             "Courbes et intervisibilité dans ce système de coordonnées (EPSG:32632) ; auto : un système en "
             "mètres."),
         "reproject", "crs"},
        {QUVO_FIELD(OutputOptions, asIs, 0, 0, "MESS_LOT_TEL_QUEL",
                    "Lit le MNT tel quel, sans mètres vrais et sans tourner ses lignes."),
         "as-is", nullptr},
    };
    return fields;
}

OutputOptions overridden(const OutputOptions &base, const OutputOptions &given)
{
    OutputOptions options = base;
    for (const OutputOptionField &output : outputOptionFields()) {
        const QVariant value = fieldValue(given, output.field);
        if (value != fieldValue(OutputOptions(), output.field))
            setField(options, output.field, value);
    }
    return options;
}

QString outputFormat(const OutputOptions &options, ProductKind product)
{
    if (!options.format.isEmpty())
        return options.format;
    return product == ProductKind::Vector ? QStringLiteral("ESRI Shapefile") : QStringLiteral("GTiff");
}

QString outputLayer(const OutputOptions &options)
{
    return options.layerName.isEmpty() ? QStringLiteral("contour") : options.layerName;
}

OutputOptions supportedOptions(const OutputOptions &options, Process process)
{
    OutputOptions supported = options;
    if (!outputFormats(process).contains(options.format))
        supported.format.clear();
    const ProductKind product = processRow(process).product;
    const QString format = outputFormat(supported, product);
    const bool raster = product == ProductKind::Raster;
    supported.tiled = options.tiled && raster && hasCreationOption(format, QStringLiteral("TILED"));
    supported.worldFile =
        options.worldFile && supported.tiled && hasCreationOption(format, QStringLiteral("TFW"));
    if (!mayReproject(process))
        supported.reproject.clear();
    supported.asIs = options.asIs && usesNeighbours(process);
    supported.overviews = options.overviews && raster && takesOverviews(format);
    return supported;
}

QString creationArguments(const OutputOptions &options)
{
    QString arguments;
    if (options.tiled) {
        arguments += QStringLiteral(" -co \"TILED=YES\"");
        if (options.worldFile)
            arguments += QStringLiteral(" -co \"TFW=YES\"");
    }
    return arguments;
}

QStringList outputFormats(Process process)
{
    const ProcessRow &row = processRow(process);
    QStringList formats{outputFormat({}, row.product)};
    if (row.tool == Tool::Intervisibility)
        return formats; // the tool writes no other format
    for (const QString &name : driverNames()) {
        if (name != formats.first() && isOffered(name, row))
            formats += name;
    }
    return formats;
}
