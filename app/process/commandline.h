#pragma once

#include "app/process/outputoptions.h"
#include "app/process/tools.h"
#include "panels/options/celluse.h"
#include "panels/options/toolinput.h"
#include "runner/processing.h"

#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>

/// Everything that the command line of one run is made of. Paths are absolute, or names by which GDAL opens
/// data sets that are not files.
struct ProcessingRequest
{
    std::optional<Process> process; ///< empty: no process is chosen, and there are no arguments
    QString mode;           ///< mode word of the DEM tool ("hillshade", "TRI"); the other tools ignore it
    QString input;          ///< path of the DEM
    QStringList tiles = {}; ///< the files of which the input is a temporary mosaic; empty: it is a file itself
    int band = 1;           ///< band of the DEM, counted from 1
    /// Cells of the DEM that the product covers, counted from the upper left corner of the file. A null
    /// rectangle stands for the whole DEM.
    QRect part{};
    QString output; ///< path of the product
    OutputOptions outputOptions;
    ToolInput toolInput; ///< argument fragment and files made from the options of the process
    CellUse cellUse{};   ///< what the process does with the DEM's grid (cellUse() of its options)
};

/// The kind of the product; Raster where no process is chosen.
ProductKind productKind(const ProcessingRequest &request);

/// The row of the request's process with the bands and bytes of the product that it asks for: numbers of
/// observers and heights have one band each.
ProcessRow productRow(const ProcessingRequest &request);

/// GDAL's short name of the driver that writes the product.
QString outputFormat(const ProcessingRequest &request);

/// Whether the product is colours that a shaded relief darkens.
bool isShaded(const ProcessingRequest &request);

/// Whether the contours are finished by a step after the tool.
bool isFinished(const ProcessingRequest &request);

/// Path of the QGIS style beside a product: "dem_contour_lines.qml".
QString qgisStyleFile(const QString &product);

/// Whether the product of a colour relief has an alpha band.
bool hasAlpha(const ProcessingRequest &request);

/// The arguments of the process's tool as one text, empty where no process is chosen. Paths are quoted for the
/// runner. Some arguments have two blanks between them; this is kept so on purpose.
QString processArguments(const ProcessingRequest &request);

/// The command line for the runner: the quoted path of a tool and its arguments.
QString processCommand(const QString &toolPath, const QString &arguments);

/// The command line for the runner of a request that has a process.
QString runCommand(const ProcessingRequest &request, const ToolPaths &tools);

/// Path of the raster that marks the filled cells beside a product: "dem_slope_filled.tif".
QString fillMaskFile(const QString &product);

/// The part as recipes and the command line write it: "column row columns rows"; empty for the whole DEM.
QString partText(const QRect &part);

/// Reads such a text. Nothing where it is no part; a null rectangle for an empty text.
std::optional<QRect> readPart(const QString &text);

/// The files that the run creates, the product first. A stop or a failure deletes them. Empty where no process
/// is chosen.
QuvoOutputFilesList declaredOutputs(const ProcessingRequest &request);
