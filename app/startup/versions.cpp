#include "app/startup/versions.h"

#include <QtGlobal>

#include <cairo.h>
#include <gdal.h>
#include <glib.h>
#include <pango/pango.h>

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
#ifdef QUVO_LIBRARY_QWT // the programs without a window link no Qwt, and may be built without it
        {QStringLiteral("Qwt"), QStringLiteral(QUVO_LIBRARY_QWT), QStringLiteral("Qwt (LGPL 2.1)"),
         QStringLiteral("https://qwt.sourceforge.io")},
#endif
        {QStringLiteral("cairo"), QString::fromLatin1(cairo_version_string()),
         QStringLiteral("LGPL 2.1 / MPL 1.1"), QStringLiteral("https://www.cairographics.org")},
        {QStringLiteral("Pango"), QString::fromLatin1(pango_version_string()), QStringLiteral("LGPL 2"),
         QStringLiteral("https://pango.gnome.org")},
        {QStringLiteral("GLib"),
         QStringLiteral("%1.%2.%3").arg(glib_major_version).arg(glib_minor_version).arg(glib_micro_version),
         QStringLiteral("LGPL 2.1"), QStringLiteral("https://docs.gtk.org/glib/")},
        // The headers of iniparser do not name their version; the functions in use are those of version 4.
        {QStringLiteral("iniparser"), QStringLiteral("4"), QStringLiteral("MIT"),
         QStringLiteral("https://github.com/ndevilla/iniparser")},
    };
}
