#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// Filters of file dialogs, made of what GDAL's drivers say of themselves.

/// A file format as a row of a filter list.
struct FileFormat
{
    QString title;          ///< as people know it ("GeoTIFF")
    QStringList extensions; ///< without their dot; empty: the format has no row of its own
};

/// The filter text of a file dialog (QFileDialog): every extension of the formats together, one row a format in
/// the order of the list, and all files. The first and the last row bear the names of the language in use.
QString fileFilter(const QVector<FileFormat> &formats);

/// The formats of files that GDAL's drivers read, sorted by their titles, each once.
QVector<FileFormat> rasterFileFormats();
QVector<FileFormat> vectorFileFormats();

/// The formats of both lists, sorted, each once.
QVector<FileFormat> allFileFormats();
