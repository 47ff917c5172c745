#pragma once

#include "app/process/processes.h"
#include "panels/options/recordfields.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// How the file of a product is written, whatever it shows. Recipes, requests and the command line hold this
/// record; a new option is a new member and a row of outputOptionFields().
struct OutputOptions
{
    QString format;         ///< GDAL's short driver name; empty: the usual one of the kind of product
    bool tiled = false;     ///< tiled GeoTIFF
    bool worldFile = false; ///< a world file beside the GeoTIFF; written only with a tiled one, on purpose
    QString layerName;      ///< layer of a vector product; empty: "contour"
    bool overviews = false; ///< overviews of a raster product, in a file beside it

    bool operator==(const OutputOptions &other) const = default;
};

/// An output option as recipes and the batch program's command line name it.
struct OutputOptionField
{
    RecordField<OutputOptions> field; ///< its name is the member of a recipe
    const char *argument;             ///< name of the command line's option, without its hyphens
    const char *valueName;            ///< what the help calls the option's value; null for a switch
};

/// The output options, in the order of the help.
const QVector<OutputOptionField> &outputOptionFields();

/// The options of `base`, replaced by those of `given` that differ from the defaults.
OutputOptions overridden(const OutputOptions &base, const OutputOptions &given);

/// GDAL's short name of the driver that writes the product: the one of the options or the usual one ("GTiff",
/// "ESRI Shapefile").
QString outputFormat(const OutputOptions &options, ProductKind product);

/// Name of the layer of a vector product.
QString outputLayer(const OutputOptions &options);

/// The options without those that the product or its format does not have.
OutputOptions supportedOptions(const OutputOptions &options, ProductKind product);

/// The arguments of the raster tools that the options add, each with a blank before it.
QString creationArguments(const OutputOptions &options);

/// Short names of GDAL's drivers that can hold the product of a process, the usual one first.
QStringList outputFormats(Process process);
