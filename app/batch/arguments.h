#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What the batch program is asked to do. All but a run take neither a window nor a child process.
enum class BatchAction
{
    Run,
    PrintCommand,
    BuildOverviews,
    List,
    Help,
    Version
};

/// The batch program's command line, read but not yet judged. What was not given has no value.
struct BatchArguments
{
    BatchAction action = BatchAction::Run;
    QString recipeFile;     ///< pipedRecipeName: the recipe comes on the standard input
    QByteArray pipedRecipe; ///< that came there; whoever runs the program reads it, once
    QStringList dems;       ///< for each of which the recipe is run, instead of for one input
    QString process;
    std::optional<QString> input;
    std::optional<QString> output;
    std::optional<int> band;
    QString outputFormat;
    QString layerName;
    QString overviewRaster; ///< whose overviews are to be built
    bool overviews = false;
    bool tiled = false;
    bool worldFile = false;
    bool overwrite = false;
    QVector<QPair<QString, QString>> options; ///< name and value of each --set, in their order
    QString problem; ///< what is wrong with the command line, in a sentence; empty for a good one
};

constexpr char pipedRecipeName[] = "-";

/// Reads the arguments; the first is the program's name. It needs no application object.
BatchArguments readBatchArguments(const QStringList &arguments);

/// The texts of --help, --list and --version. They end in a line feed and need an application object.
QString batchHelp();
QString batchList();
QString batchVersion();
