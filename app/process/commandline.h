#pragma once

#include "app/process/processes.h"
#include "runner/processing.h"

#include <QString>

#include <optional>

/// Everything that one run's command line is made of. Paths are absolute, or GDAL's own names of data sets.
struct ProcessingRequest
{
    std::optional<Process> process; ///< none: no tab's process, which has no arguments
    QString mode; ///< mode word of the DEM tool ("hillshade", "TRI"); not used by the other tools
    QString input;
    QString output;
    QString format;         ///< GDAL's short driver name; empty: the product's usual one
    QString layerName;      ///< vector layer of the contours; empty: "contour"
    int band = 1;           ///< of the input, counted from 1
    bool tiled = false;     ///< tiled GeoTIFF
    bool worldFile = false; ///< a world file beside the GeoTIFF; takes effect on a tiled one only, on purpose
    bool overviews = false; ///< of a raster product, beside it, after it was found whole
    QString fragment;       ///< the option panel's argument fragment
    QString colorTableFile; ///< colour relief only
};

/// The driver that writes the product: the request's, or the usual one of the kind of product ("GTiff",
/// "ESRI Shapefile").
QString outputFormat(const ProcessingRequest &request);

/// The layer of a vector product: the request's, or "contour".
QString outputLayer(const ProcessingRequest &request);

/// The arguments of the process's tool, each blank as the tool's grammar has it.
QString processArguments(const ProcessingRequest &request);

/// Tool and arguments as one command line, for the runner.
QString processCommand(const QString &toolPath, const QString &arguments);

/// The files that the run creates, for deletion when it does not end well.
QuvoOutputFilesList declaredOutputs(const ProcessingRequest &request);
