#pragma once

#include "app/batch/tilearguments.h"
#include "app/process/outputoptions.h"

#include <QByteArray>
#include <QPair>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What the batch program does. Only Run starts child processes.
enum class BatchAction
{
    Run,
    PrintCommand,
    BuildOverviews,
    CorrectAspect,    ///< a step of a product: corrects directions for cells that are not square
    FillVoids,        ///< a step of a product: writes a copy of the DEM whose cells without data are filled
    SmoothDem,        ///< a step of a product: writes a smoothed copy of the DEM
    FinishContours,   ///< a step of a product: makes it of the file that the contour tool wrote
    CopyGeoreference, ///< a step of a product: gives a raster the georeference of the DEM
    List,
    Help,
    Version
};

/// The batch program's command line. Its values are read but not yet checked against the process and the files.
struct BatchArguments
{
    BatchAction action = BatchAction::Run;
    QString recipeFile;     ///< path of the recipe; pipedRecipeName for standard input; empty: no recipe
    QByteArray pipedRecipe; ///< text of the recipe on standard input; main() reads it
    QStringList dems;       ///< DEMs that the recipe is run for, each in place of the recipe's own input
    bool mosaic = false;    ///< the DEMs are the tiles of a single one
    QString process;        ///< word of the process; empty: the recipe names it
    std::optional<QString> input;
    std::optional<QString> output;
    std::optional<int> band;
    std::optional<QRect> part;   ///< cells of the DEM; a null rectangle: all of them
    QString mask;                ///< path of the raster that marks filled cells; empty: none
    QString lines;               ///< path of the file that the contour tool wrote; empty: none
    OutputOptions outputOptions; ///< options that were not given have their defaults
    QString raster;              ///< path of the file that another action than Run and PrintCommand works on
    bool overwrite = false;      ///< a run may replace existing files
    QVector<QPair<QString, QString>> options; ///< name and value of each --set, in the order given
    TileArguments tiles;
    QString problem; ///< why the command line is not valid, in a sentence; empty for a good one
};

/// The recipe's name on the command line when its text comes on standard input.
constexpr char pipedRecipeName[] = "-";

/// A sentence: --mosaic needs more DEMs.
QString tooFewTilesProblem();

/// Reads the arguments, the first of which is the program's name. No application object is needed.
BatchArguments readBatchArguments(const QStringList &arguments);

/// The texts of --help, --list and --version. Each ends in a line feed. An application object must exist.
QString batchHelp();
QString batchList();
QString batchVersion();
