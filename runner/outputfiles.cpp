#include "runner/outputfiles.h"

#include "dataset/pathencoding.h"
#include "runner/logging.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cpl_error.h>
#include <gdal_priv.h>

#include <cstdio>
#include <memory>

namespace
{

/// The files of the data set, as far as GDAL recognises it.
QStringList filesOf(const QByteArray &path)
{
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(path.constData()));
    QStringList files;
    char **names = dataset ? dataset->GetFileList() : nullptr;
    for (char **name = names; name && *name; ++name)
        files += decodePath(*name);
    CSLDestroy(names);
    return files;
}

void removePlainly(const QString &path)
{
    const QFileInfo file(path);
    const bool removed = file.isDir() && !file.isSymLink() ? QDir(path).removeRecursively()
                                                           : std::remove(encodePath(path).constData()) == 0;
    if (!removed)
        qCWarning(lcRunner, "could not delete %s", qUtf8Printable(path));
}

/// A driver's deletion takes every file that it counts to the data set, a world file of another one of the same
/// name, too. So where files stood beside the output before, those alone are removed that came with it.
void deleteThroughDriver(const QuvoOutputFile &file)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName(file.driver.toUtf8().constData());
    if (!driver)
        return;
    // A driver that meets a broken file of its own complains at length; that is expected here.
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    if (file.keep.isEmpty()) {
        driver->Delete(encodePath(file.path).constData());
        return;
    }
    for (const QString &part : filesOf(encodePath(file.path))) {
        if (!file.keep.contains(part) && QFile::exists(part))
            removePlainly(part);
    }
}

} // namespace

void deleteOutputFile(const QuvoOutputFile &file)
{
    if (!QFile::exists(file.path))
        return;
    if (file.kind != QuvoOutputFileKind::PlainFile)
        deleteThroughDriver(file);
    if (QFile::exists(file.path))
        removePlainly(file.path);
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
