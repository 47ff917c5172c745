#pragma once

#include <QString>
#include <QVector>

/// Version of this program.
QString programVersion();

/// A library in use, in the version that runs.
struct LibraryVersion
{
    QString name;
    QString version;
    QString licence;
    QString address; ///< of its home page
};
QVector<LibraryVersion> libraryVersions();
