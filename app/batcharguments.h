#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What the batch program is asked to do.
enum class BatchAction
{
    Run,
    PrintCommand,
    List,
    Help,
    Version
};

/// The batch program's command line, read but not yet judged. What was not given has no value.
struct BatchArguments
{
    BatchAction action = BatchAction::Run;
    QString recipeFile;
    QString process;
    QString input;
    QString output;
    std::optional<int> band;
    QString outputFormat;
    bool tiled = false;
    bool worldFile = false;
    bool overwrite = false;
    QVector<QPair<QString, QString>> options; ///< name and value of each --set, in their order
    QString error; ///< what is wrong with the command line, in a sentence; empty for a good one
};

/// Reads the arguments; the first is the program's name.
BatchArguments readBatchArguments(const QStringList &arguments);

/// Whether the arguments ask only for text, which takes no window and no child process. Reads the raw argument
/// vector, since it is asked before there is an application object.
bool asksForTextOnly(int argc, const char *const *argv);

/// The texts of --help, --list and --version. They end in a line feed and need an application object.
QString batchHelp();
QString batchList();
QString batchVersion();
