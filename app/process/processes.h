#pragma once

#include "dataset/productcheck.h"
#include "messages/label.h"
#include "panels/options/processoptions.h"

#include <QVector>

#include <cstddef>

/// The processes, in the order of the alternatives of ProcessOptions.
enum class Process
{
    ShadedRelief,
    Slope,
    Aspect,
    Intervisibility,
    ColorRelief,
    Contour,
    TriTpiRoughness,
    Count ///< not a process: the number of processes
};

constexpr std::size_t processCount = static_cast<std::size_t>(Process::Count);

/// Whether a table has one row a process, in the order of the enumeration, so that the process is its index.
/// The rows have a member `process`.
template <class Row, std::size_t rowCount> constexpr bool hasRowOfEachProcess(const Row (&rows)[rowCount])
{
    for (std::size_t at = 0; at < rowCount; ++at) {
        if (static_cast<std::size_t>(rows[at].process) != at)
            return false;
    }
    return rowCount == processCount;
}

/// The external tools.
enum class Tool
{
    Dem,
    Contour,
    Intervisibility,
    Translate
};

/// What the program knows of a process.
struct ProcessRow
{
    Process process;
    Tool tool;
    ProductKind product;
    int bands;            ///< number of bands of a raster product
    int bytesPerCell;     ///< bytes of one cell of one band, without compression
    bool takesColorTable; ///< the tool reads a colour table file
    const char *suffix;   ///< suffix of the proposed output name
    const char *icon;     ///< file of the tab's picture in the folder of the tab icons
    Label title;          ///< title of the tab
    Label stepTitle;      ///< title of the progress window while the process runs
};

const ProcessRow &processRow(Process process);

/// The process whose options these are.
Process processOf(const ProcessOptions &options);

/// A process under a word of its own, as recipes and the batch program name it; one process may have several.
struct NamedProcess
{
    Process process;
    ProcessOptions defaults; ///< processWord() of these options is the word
};

/// Every word with its process, in the order of the processes.
const QVector<NamedProcess> &namedProcesses();

/// The process of a word; null when no process has that word.
const NamedProcess *findProcess(const QString &word);

/// A sentence that says that no process has that word, and lists the words there are.
QString unknownProcessProblem(const QString &word);
