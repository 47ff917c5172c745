#include "app/startup/versions.h"

#include <QtGlobal>

#include <gdal.h>

QString programVersion()
{
    return QStringLiteral(QUVO_VERSION);
}

QVector<LibraryVersion> libraryVersions()
{
    return {
        {QStringLiteral("Qt"), QString::fromLatin1(qVersion()), QStringLiteral("LGPL 3"),
         QStringLiteral("https://www.qt.io")},
        {QStringLiteral("GDAL/OGR"), QString::fromLatin1(GDALVersionInfo("RELEASE_NAME")),
         QStringLiteral("MIT"), QStringLiteral("https://gdal.org")},
        {QStringLiteral("Qwt"), QStringLiteral(QUVO_LIBRARY_QWT), QStringLiteral("Qwt (LGPL 2.1)"),
         QStringLiteral("https://qwt.sourceforge.io")},
        // The headers of iniparser do not name their version; the functions in use are those of version 4.
        {QStringLiteral("iniparser"), QStringLiteral("4"), QStringLiteral("MIT"),
         QStringLiteral("https://github.com/ndevilla/iniparser")},
    };
}
