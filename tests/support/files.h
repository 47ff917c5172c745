#pragma once

#include <QByteArray>
#include <QString>

// Files that tests read and write. A file that cannot be written ends the test program.

/// All bytes of a file; empty when it cannot be read.
QByteArray bytesOf(const QString &path);

/// Writes a file anew and returns its path.
QString writeFile(const QString &path, const QByteArray &bytes);

/// Writes an executable shell script, without its first line "#!/bin/sh", and returns its path.
QString writeScript(const QString &path, const QByteArray &commands);

/// Path of the unfinished product of a run onto `output`; empty while there is none.
QString partOf(const QString &output);
