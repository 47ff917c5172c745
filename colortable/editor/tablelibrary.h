#pragma once

#include <QString>
#include <QVector>

/// A colour table file that is offered to the user.
struct LibraryTable
{
    QString name;     ///< for people: the file's name without its ending, with blanks
    QString file;     ///< absolute path
    bool own = false; ///< the user's, which can be renamed and deleted; otherwise it belongs to the program
};

/// The name under which a table file is shown.
QString tableName(const QString &file);

/// The tables of the program's folder, then those of the user's folder, each group by name.
QVector<LibraryTable> libraryTables(const QString &folder, const QString &ownFolder);

/// Path in the folder for a table of that name, which need not exist; empty for a name that no file can have.
QString tableFileFor(const QString &folder, const QString &name);

// The functions below change the user's folder, which they create where it is missing. They return the path of
// the table that is there then, and set `problem` to a sentence where that fails; nothing has changed then.

/// Copies a table file under a name of its own.
QString copyTable(const QString &file, const QString &ownFolder, QString &problem);
QString renameTable(const QString &file, const QString &newName, QString &problem);

/// Deletes a table file; returns why that failed, in a sentence, or an empty text.
QString deleteTable(const QString &file);
