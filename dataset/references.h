#pragma once

#include <QString>
#include <QStringList>

/// The local files that the name of a data set leads to, where they exist: those inside a name with a driver's
/// prefix ("NETCDF:\"a.nc\":z", "GPKG:a.gpkg:t", "vrt://a.tif?bands=1"), the file that holds a path of GDAL's
/// virtual file systems, and everything that a text of XML (a virtual raster, an OGR VRT, a sparse file, as a
/// file or as the name itself) names, recursively. Absolute paths. GDAL's own list of files leaves many of them
/// out.
///
/// The search is generous: any part of a name counts that is an existing file. It serves to protect files from
/// being replaced, not to open them.
QStringList referencedFiles(const QString &name);

/// The first pipe, device or socket that the name leads to in the same way, or a name of GDAL's for the
/// standard input; empty where there is none. Reading one might never end, and the tool would not find what
/// this program has already read from it.
QString endlessSource(const QString &name);

/// A sentence where the name leads to such a source; empty otherwise.
QString endlessSourceProblem(const QString &name);

/// The local file that holds a virtual path ("a.zip" for "/vsizip/a.zip/b.tif"); any other path unchanged.
QString localFile(QString path);
