#pragma once

#include <QByteArray>
#include <QString>

// Paths cross to GDAL and to the C library as bytes, and everywhere through these two: the file system's own
// bytes on Unix, the local code page on Windows (where GDAL is told so by GDAL_FILENAME_IS_UTF8=NO).

/// The bytes under which GDAL and the C library know the path.
QByteArray encodePath(const QString &path);

/// The path that GDAL or the C library gave as bytes.
QString decodePath(const char *bytes);

/// Whether the path names something inside one of GDAL's virtual file systems ("/vsizip/…", "/vsicurl/…"). Such
/// a path is no path of the local disk: it is handed to GDAL as it was typed.
bool isVirtualPath(const QString &path);

/// What GDAL and the tools are given for an input that somebody named: the absolute path of a local file,
/// relative to `folder`; a virtual path, or a name behind a driver's prefix ("NETCDF:…") of which there is no
/// local file, as it was typed, so that a path inside it is relative to the current directory.
QString dataSetName(const QString &typed, const QString &folder);
