#pragma once

#include "app/process/commandline.h"

#include <QString>
#include <QStringList>

/// What a product looks like, apart from what it shows.
struct OutputOptions
{
    QString format;    ///< GDAL's short driver name; empty: the product's usual one
    QString layerName; ///< of a vector product; empty: the usual one
    bool tiled = false;
    bool worldFile = false;
    bool overviews = false;
};

/// Puts the options into a request; what the format does not have is left out.
void applyOutputOptions(const OutputOptions &options, ProcessingRequest &request);

/// Short names of GDAL's drivers that can hold the product of a process, the usual one first.
QStringList outputFormats(Process process);
