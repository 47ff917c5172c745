#pragma once

#include "app/process/outputoptions.h"
#include "app/process/tools.h"
#include "panels/options/toolinput.h"
#include "runner/processing.h"

#include <QString>

#include <optional>

/// Everything that the command line of one run is made of. Paths are absolute, or GDAL's own names of data
/// sets.
struct ProcessingRequest
{
    std::optional<Process> process; ///< nothing: no process is chosen, and there are no arguments
    QString mode;  ///< mode word of the DEM tool ("hillshade", "TRI"); the other tools have no mode
    QString input; ///< the DEM
    int band = 1;  ///< band of the DEM, counted from 1
    QString output;
    OutputOptions outputOptions;
    ToolInput toolInput; ///< what the options of the process contribute
};

/// The kind of the product; a raster where no process is chosen.
ProductKind productKind(const ProcessingRequest &request);

/// GDAL's short name of the driver that writes the product.
QString outputFormat(const ProcessingRequest &request);

/// The arguments of the process's tool, with each blank that the tool's grammar has; empty where no process is
/// chosen.
QString processArguments(const ProcessingRequest &request);

/// Path of a tool and its arguments as one command line, for the runner.
QString processCommand(const QString &toolPath, const QString &arguments);

/// The whole command line of a request that has a process.
QString runCommand(const ProcessingRequest &request, const ToolPaths &tools);

/// The files that the run creates. A stop or a failure deletes them.
QuvoOutputFilesList declaredOutputs(const ProcessingRequest &request);
