#pragma once

#include "dataset/productcheck.h"
#include "messages/label.h"
#include "panels/options/processoptions.h"

#include <QVector>

/// The processes, one a tab of the main dialog.
enum class Process
{
    ShadedRelief,
    Slope,
    Aspect,
    Intervisibility,
    ColorRelief,
    Contour,
    TriTpiRoughness
};

/// The external tools.
enum class Tool
{
    Dem,
    Contour,
    Intervisibility,
    Translate
};

/// What the program knows of a process; a new process is a new row.
struct ProcessRow
{
    Process process;
    Tool tool;
    ProductKind product;
    int bands;          ///< bands of a raster product
    int bytesPerCell;   ///< bytes of one cell of one band, without compression
    const char *suffix; ///< of the proposed output name
    const char *icon;   ///< file of its picture in the folder of the tab icons
    Label title;        ///< of its tab
    Label stepTitle;    ///< what the progress window says while it runs
};

const ProcessRow &processRow(Process process);

/// A process as recipes and the batch program name it.
struct BatchProcess
{
    Process process;
    ProcessOptions defaults; ///< processWord() of them names the process
};

/// The processes that the batch program offers, in the order of its listing.
const QVector<BatchProcess> &batchProcesses();

/// The process of that word; null when there is none.
const BatchProcess *findBatchProcess(const QString &word);

/// A sentence that says that there is no such process, and which there are.
QString unknownProcess(const QString &word);
