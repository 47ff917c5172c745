#pragma once

#include <QByteArray>
#include <QString>

// GDAL and the C library take paths as bytes, and every path goes through encodePath() and decodePath(): in the
// encoding of the file system on Unix, in the local code page on Windows (GDAL_FILENAME_IS_UTF8=NO sets GDAL to
// it).

/// The bytes of a path for GDAL and the C library.
QByteArray encodePath(const QString &path);

/// The path of bytes that GDAL or the C library returned.
QString decodePath(const char *bytes);

/// Whether the path names something inside one of GDAL's virtual file systems ("/vsizip/…", "/vsicurl/…"). GDAL
/// receives such a path unchanged.
bool isVirtualPath(const QString &path);

/// The name under which GDAL and the tools open an input that the user typed. A local file: its absolute path,
/// with `typed` relative to `folder`. A virtual path, or a name with a driver's prefix ("NETCDF:…") that is no
/// local file: unchanged, so a path inside it is relative to the current directory.
QString dataSetName(const QString &typed, const QString &folder);
