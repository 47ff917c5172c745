#include "colortable/editor/tablelibrary.h"

#include "colortable/colortablefile.h"
#include "messages/label.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

void addTables(QVector<LibraryTable> &tables, const QString &folder, bool own)
{
    if (folder.isEmpty())
        return;
    const QFileInfoList files =
        QDir(folder).entryInfoList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &file : files)
        tables += LibraryTable{tableName(file.filePath()), file.absoluteFilePath(), own};
}

QString failedText(const QString &file, const QString &reason)
{
    return labelText({"MESS_TC_NON_ECRITE", "« %1 » ne peut pas être écrit : %2"}).arg(file, reason);
}

} // namespace

QString tableName(const QString &file)
{
    return QFileInfo(file).completeBaseName().replace(QLatin1Char('_'), QLatin1Char(' '));
}

QVector<LibraryTable> libraryTables(const QString &folder, const QString &ownFolder)
{
    QVector<LibraryTable> tables;
    addTables(tables, folder, false);
    addTables(tables, ownFolder, true);
    return tables;
}

QString tableFileFor(const QString &folder, const QString &name)
{
    const QString trimmed = name.trimmed();
    const bool isName = !trimmed.isEmpty() && !trimmed.contains(QLatin1Char('/'))
        && !trimmed.contains(QLatin1Char('\\')) && !trimmed.startsWith(QLatin1Char('.'));
    return isName ? QDir(folder).filePath(trimmed + QStringLiteral(".txt")) : QString();
}

QString copyTable(const QString &file, const QString &ownFolder, QString &problem)
{
    QDir().mkpath(ownFolder);
    const QString copy = freeTableName(ownFolder, QFileInfo(file).completeBaseName());
    QFile source(file);
    if (source.copy(copy)) {
        QFile::setPermissions(copy, QFile::permissions(copy) | QFileDevice::WriteOwner);
        return copy;
    }
    problem = failedText(copy, source.errorString());
    return {};
}

QString renameTable(const QString &file, const QString &newName, QString &problem)
{
    const QString renamed = tableFileFor(QFileInfo(file).path(), newName);
    if (renamed == file)
        return file;
    if (renamed.isEmpty()) {
        problem =
            labelText({"MESS_TCE_NOM_INVALIDE", "« %1 » ne peut pas être le nom d'une table."}).arg(newName);
        return {};
    }
    QFile source(file);
    if (source.rename(renamed)) // never replaces another file
        return renamed;
    problem = failedText(renamed, source.errorString());
    return {};
}

QString deleteTable(const QString &file)
{
    QFile table(file);
    if (table.remove())
        return {};
    return labelText({"MESS_TCE_NON_SUPPR", "« %1 » ne peut pas être supprimé : %2"})
        .arg(file, table.errorString());
}
