#pragma once

#include <QString>
#include <QVector>

/// Version of this program, such as "1.0.0".
QString programVersion();

/// A library that the program uses.
struct LibraryVersion
{
    QString name;
    QString version; ///< the version that is loaded, as far as the library reports it
    QString licence;
    QString address; ///< URL of its home page
};
QVector<LibraryVersion> libraryVersions();
