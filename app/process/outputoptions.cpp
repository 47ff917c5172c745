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

/// Whether the cells of the product differ little from one to the next, so that their differences take less
/// room. The zones of an intervisibility are few even colours, which the compressions see as they are.
bool isSmooth(const ProcessRow &product)
{
    return product.bytesPerCell > 1 || product.process != Process::Intervisibility;
}

/// The driver's option that stores differences between cells; empty where they take no less room.
QString predictor(const QString &format, const ProcessRow &product)
{
    if (!isSmooth(product) || !hasCreationOption(format, QStringLiteral("PREDICTOR")))
        return {};
    if (creationOptionValues(format, QStringLiteral("PREDICTOR")).contains(QLatin1String("YES")))
        return QStringLiteral("PREDICTOR=YES"); // the driver knows the type of the cells
    constexpr int bytesOfFloat = 4;
    return product.bytesPerCell == bytesOfFloat ? QStringLiteral("PREDICTOR=3") : QStringLiteral("PREDICTOR=2");
}

/// GDAL's names of formats are the same in upper and lower case.
bool isFormat(const QString &format, const char *name)
{
    return format.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

QString lacksProblem(const QString &format, const QString &value)
{
    return labelText(
               {"MESS_FORMAT_SANS_VALEUR", "Le format « %1 » ne s'écrit pas avec « %2 » sur cet ordinateur."})
        .arg(format, value);
}

constexpr int largestBlock = 4096;

const QString withoutCopies = QStringLiteral("NONE");

bool isBlockSize(int size)
{
    constexpr int least = 128;
    constexpr int step = 16;
    return size >= least && size % step == 0;
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
        {QUVO_FIELD(OutputOptions, compression, 0, 0, "MESS_LOT_COMPRESSION",
                    "Compression sans perte d'un GeoTIFF ou d'un COG : DEFLATE, LZW ou ZSTD."),
         "compress", "method"},
        {QUVO_FIELD(OutputOptions, blockSize, 0, largestBlock, "MESS_LOT_BLOC",
                    "Côté des blocs d'un COG, en cellules, multiple de 16 à partir de 128 ; 0 : 512."),
         "block-size", "cells"},
        {QUVO_FIELD(OutputOptions, overviewResampling, 0, 0, "MESS_LOT_REECHANT",
                    "Vues d'ensemble d'un COG : NEAREST, AVERAGE, BILINEAR, CUBIC, MODE, ou NONE pour aucune."),
         "overview-resampling", "method"},
        {QUVO_FIELD(OutputOptions, statistics, 0, 0, "MESS_LOT_STATS",
                    "Écrit dans un produit raster les statistiques de ses bandes."),
         "statistics", nullptr},
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
    supported.statistics = options.statistics && raster;
    if (!raster || !compressions(format).contains(options.compression, Qt::CaseInsensitive))
        supported.compression.clear();
    if (!raster || !takesBlockSize(format))
        supported.blockSize = 0;
    if (!raster || !overviewResamplings(format).contains(options.overviewResampling, Qt::CaseInsensitive))
        supported.overviewResampling.clear();
    return supported;
}

QString writingProblem(const OutputOptions &options)
{
    const QString format = outputFormat(options, ProductKind::Raster);
    const auto lacks = [](const QString &value, const QStringList &values) {
        return !value.isEmpty() && !values.contains(value, Qt::CaseInsensitive);
    };
    if (lacks(options.compression, compressions(format)))
        return lacksProblem(format, options.compression);
    if (lacks(options.overviewResampling, overviewResamplings(format)))
        return lacksProblem(format, options.overviewResampling);
    if (options.blockSize != 0 && !(takesBlockSize(format) && isBlockSize(options.blockSize)))
        return lacksProblem(format, QStringLiteral("blockSize=%1").arg(options.blockSize));
    return {};
}

QStringList creationOptions(const OutputOptions &options, const ProcessRow &product)
{
    QStringList creation;
    if (options.tiled) {
        creation += QStringLiteral("TILED=YES");
        if (options.worldFile)
            creation += QStringLiteral("TFW=YES");
    }
    if (!options.compression.isEmpty()) {
        creation += QStringLiteral("COMPRESS=") + options.compression.toUpper();
        creation += predictor(outputFormat(options, product.product), product);
        creation += QStringLiteral("BIGTIFF=IF_SAFER"); // the driver cannot foresee the size
        creation.removeAll(QString());
    }
    if (options.blockSize > 0)
        creation += QStringLiteral("BLOCKSIZE=%1").arg(options.blockSize);
    const QString resampling = options.overviewResampling.toUpper();
    if (resampling == withoutCopies)
        creation += QStringLiteral("OVERVIEWS=NONE");
    else if (!resampling.isEmpty())
        creation += QStringLiteral("OVERVIEW_RESAMPLING=") + resampling;
    return creation;
}

QString creationArguments(const OutputOptions &options, const ProcessRow &product)
{
    QString arguments;
    for (const QString &option : creationOptions(options, product))
        arguments += QStringLiteral(" -co \"%1\"").arg(option);
    return arguments;
}

QStringList compressions(const QString &format)
{
    QStringList offered;
    if (!isFormat(format, "GTiff") && !isFormat(format, "COG"))
        return offered; // other drivers give these names another meaning
    const QStringList known = creationOptionValues(format, QStringLiteral("COMPRESS"));
    for (const char *method : {"DEFLATE", "LZW", "ZSTD"}) {
        if (known.contains(QLatin1String(method)))
            offered += QLatin1String(method);
    }
    return offered;
}

QStringList overviewResamplings(const QString &format)
{
    if (!hasCreationOption(format, QStringLiteral("OVERVIEW_RESAMPLING")))
        return {};
    return {QStringLiteral("NEAREST"), QStringLiteral("AVERAGE"), QStringLiteral("BILINEAR"),
            QStringLiteral("CUBIC"),   QStringLiteral("MODE"),    withoutCopies};
}

bool takesBlockSize(const QString &format)
{
    return isFormat(format, "COG");
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
