#pragma once

#include "dataset/chooser/sourceinfo.h"
#include "dataset/elevationgrid.h"

#include <QString>
#include <QStringList>
#include <QVector>

// The texts that the chooser shows of a source, in the language in use.

/// A line of a description.
struct SourceFact
{
    QString title; ///< with a colon
    QString value;
};

/// Format, size, CRS, extent and cell size of a raster; format, CRS and the number of layers of a vector
/// source; dimensions, type and comment of a header of 256 bytes. What is not known is left out, but for the
/// CRS.
QVector<SourceFact> sourceFacts(const SourceInfo &info);

/// The columns of the list of bands or layers: titles, and a row of texts for each band or layer.
QStringList partTitles(SourceKind kind);
QVector<QStringList> partRows(const SourceInfo &info);

/// What a sample says of a band: its values, and the share of its cells without one. isWhole: the sample holds
/// every cell. problem: why the cells could not be read, in GDAL's words; empty where they could.
QVector<SourceFact> sampleFacts(const SampleSummary &summary, bool isWhole, const QString &problem);
