#pragma once

#include "app/process/outputoptions.h"

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What the batch program does. Only a run starts child processes.
enum class BatchAction
{
    Run,
    PrintCommand,
    BuildOverviews,
    List,
    Help,
    Version
};

/// The batch program's command line. Its values are read but not yet checked against the process and the files.
struct BatchArguments
{
    BatchAction action = BatchAction::Run;
    QString recipeFile; ///< path of the recipe; pipedRecipeName: it comes on the standard input; empty: none
    QByteArray pipedRecipe; ///< the recipe of the standard input, which main() reads
    QStringList dems;       ///< DEMs that the recipe is run for, in place of its own input
    QString process;        ///< word of the process; empty: the recipe's
    std::optional<QString> input;
    std::optional<QString> output;
    std::optional<int> band;
    OutputOptions outputOptions; ///< options that were not given have their defaults
    QString overviewRaster;      ///< raster whose overviews are to be built
    bool overwrite = false;
    QVector<QPair<QString, QString>> options; ///< name and value of each --set, in the order given
    QString problem; ///< why the command line is not valid, in a sentence; empty for a good one
};

constexpr char pipedRecipeName[] = "-";

/// Reads the arguments, of which the first is the program's name. No application object is needed.
BatchArguments readBatchArguments(const QStringList &arguments);

/// The texts of --help, --list and --version. They end in a line feed; an application object must exist.
QString batchHelp();
QString batchList();
QString batchVersion();
