#pragma once

#include "dataset/productcheck.h"
#include "messages/label.h"
#include "panels/options/processoptions.h"

#include <QVector>

#include <cstddef>
#include <optional>

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

/// Whether a table has one row for each process, in the order of the enumeration, so that a process is the
/// index of its row. A row has a member `process`.
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

/// The properties of a process.
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
    const char *page;     ///< page of the guide
    Label title;          ///< title of the tab
    Label stepTitle;      ///< title of the progress window while the process runs
};

/// The row of a process; Process::Count has none.
const ProcessRow &processRow(Process process);

/// The page of the guide about a process; its index where there is none.
QString helpPage(std::optional<Process> process);

/// Whether the tool computes each cell of the product from the eight cells around it.
bool usesNeighbours(Process process);

/// Whether the process may be computed in another CRS than the DEM's. The others are more exact in the grid of
/// the DEM.
bool mayReproject(Process process);

/// The process that the options belong to.
Process processOf(const ProcessOptions &options);

/// A word by which recipes and the batch program name a process. A process may have several words.
struct NamedProcess
{
    Process process;
    ProcessOptions defaults; ///< processWord() of these options is the word
};

/// Every word with its process, in the order of the processes.
const QVector<NamedProcess> &namedProcesses();

/// The process of a word; null when no process has that word.
const NamedProcess *findProcess(const QString &word);

/// A sentence: no process has that word, and these are the words of the processes.
QString unknownProcessProblem(const QString &word);
