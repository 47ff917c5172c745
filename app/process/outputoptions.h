#pragma once

#include "app/process/processes.h"
#include "panels/options/recordfields.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// How the file of a product is written, whatever the process. Recipes, requests and the command line hold this
/// record. A new option is a new member and a row of outputOptionFields().
struct OutputOptions
{
    QString format;         ///< GDAL's short driver name; empty: "GTiff" or "ESRI Shapefile"
    bool tiled = false;     ///< write the cells of a GeoTIFF in tiles
    bool worldFile = false; ///< write a world file; ignored for a GeoTIFF that is not tiled: kept so on purpose
    bool statistics = false; ///< the product carries the extremes, mean and deviation of each band
    bool overviews = false;  ///< build overviews of a raster product, in a file beside it
    QString compression;     ///< "DEFLATE", "LZW" or "ZSTD"; empty: what the driver does by itself
    int blockSize = 0; ///< columns and rows of a block of a COG, a multiple of 16 from 128; 0: the driver's
    /// How the reduced copies inside of a COG are computed ("AVERAGE"), or "NONE" for no such copies; empty:
    /// the driver's own way.
    QString overviewResampling;
    QString layerName; ///< layer of a vector product; empty: "contour"
    /// Cells without data are filled from the cells around them up to this distance, in cells; 0: not at all.
    double fillDistance = 0.0;
    bool fillMask = false; ///< a raster beside the product marks the cells that were filled
    /// CRS in which contours and views are computed ("EPSG:32632"); "auto": one in metres that suits the DEM
    /// (metricCrs()); empty: that of the DEM.
    QString reproject;
    bool asIs =
        false; ///< the tool reads the DEM itself, whatever its units and rows (app/process/demtreatment)

    bool operator==(const OutputOptions &other) const = default;
};

/// The names of an output option in recipes and on the batch program's command line.
struct OutputOptionField
{
    RecordField<OutputOptions> field; ///< the field's name is the name of the member of a recipe
    const char *argument;             ///< name of the command line's option, without hyphens
    const char *valueName;            ///< placeholder of the option's value in the help; null for a switch
};

/// The output options, in the order of the help.
const QVector<OutputOptionField> &outputOptionFields();

/// The options of `base`, where those of `given` that differ from the defaults replace them.
OutputOptions overridden(const OutputOptions &base, const OutputOptions &given);

/// GDAL's short name of the driver that writes the product: the options' format or, where that is empty,
/// "GTiff" for a raster and "ESRI Shapefile" for a vector product.
QString outputFormat(const OutputOptions &options, ProductKind product);

/// Name of the layer of a vector product.
QString outputLayer(const OutputOptions &options);

/// The options that a product of the process can have: a format that is not among outputFormats() becomes the
/// usual one, and options that the format does not have are dropped.
OutputOptions supportedOptions(const OutputOptions &options, Process process);

/// Why a raster format cannot be written with the compression, blocks or reduced copies of the options, in a
/// sentence; empty where it can.
QString writingProblem(const OutputOptions &options);

/// GDAL's creation options ("TILED=YES") of a raster product.
QStringList creationOptions(const OutputOptions &options, const ProcessRow &product);

/// The same as arguments of the raster tools, each with a blank before it.
QString creationArguments(const OutputOptions &options, const ProcessRow &product);

/// The compressions that a raster format can have on this machine: values of OutputOptions::compression.
QStringList compressions(const QString &format);

/// Values of OutputOptions::overviewResampling that a format can have; empty for all but COG.
QStringList overviewResamplings(const QString &format);

/// Whether the size of the format's blocks can be chosen.
bool takesBlockSize(const QString &format);

/// Short names of GDAL's drivers that can write the product of a process on this machine, the usual one first.
QStringList outputFormats(Process process);
