#include "runner/outputfiles.h"

#include "dataset/pathencoding.h"
#include "messages/logging.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cpl_error.h>
#include <gdal_priv.h>

#include <cstdio>

namespace
{

void removePlainly(const QString &path)
{
    const QFileInfo file(path);
    const bool removed = file.isDir() && !file.isSymLink() ? QDir(path).removeRecursively()
                                                           : std::remove(encodePath(path).constData()) == 0;
    if (!removed)
        qCWarning(lcRunner, "could not delete %s", qUtf8Printable(path));
}

void deleteThroughDriver(const QuvoOutputFile &file)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName(file.driver.toUtf8().constData());
    if (!driver)
        return;
    // A driver that meets a broken file of its own complains at length; that is expected here.
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    driver->Delete(encodePath(file.path).constData());
}

void deleteWhatCame(const QuvoOutputFile &file)
{
    for (const QString &other : namesakes(file)) {
        if (!file.before->contains(other))
            removePlainly(other);
    }
}

} // namespace

void deleteOutputFile(const QuvoOutputFile &file)
{
    if (file.before)
        deleteWhatCame(file); // which may be there before the file itself
    if (!QFile::exists(file.path))
        return;
    if (!file.before && file.kind != QuvoOutputFileKind::PlainFile)
        deleteThroughDriver(file);
    if (QFile::exists(file.path))
        removePlainly(file.path);
}

QStringList namesakes(const QuvoOutputFile &output)
{
    // A database's journals stand under its whole name and a hyphen.
    const QStringList journals{"-journal", "-wal", "-shm"};
    const QFileInfo file(output.path);
    const QString base = file.completeBaseName();
    QStringList found;
    for (const QFileInfo &other :
         QDir(file.absolutePath()).entryInfoList(QDir::Files | QDir::Hidden | QDir::System)) {
        const QString name = other.fileName();
        const bool byWholeName = name.startsWith(file.fileName() + QLatin1Char('.'))
            || (name.startsWith(file.fileName()) && journals.contains(name.mid(file.fileName().size())));
        const bool byBaseName = output.ownsBaseName && name != file.fileName()
            && (name == base
                || (name.startsWith(base + QLatin1Char('.'))
                    && output.sideExtensions.contains(name.mid(base.size() + 1), Qt::CaseInsensitive)));
        if (byWholeName || byBaseName)
            found += other.absoluteFilePath();
    }
    return found;
}

void deleteOutputFiles(const QuvoOutputFilesListCollection &files)
{
    for (const QuvoOutputFilesList &step : files) {
        if (step.isEmpty())
            return;
        for (const QuvoOutputFile &file : step)
            deleteOutputFile(file);
    }
}
