#include "runner/outputfiles.h"

#include "dataset/pathencoding.h"
#include "runner/logging.h"

#include <QFile>

#include <cpl_error.h>
#include <gdal_priv.h>

#include <cstdio>

namespace
{

/// A driver that meets a broken file of its own complains at length; that is expected here.
void deleteThroughDriver(const QuvoOutputFile &file)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName(file.driver.toUtf8().constData());
    if (!driver)
        return;
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    driver->Delete(encodePath(file.path).constData());
}

} // namespace

void deleteOutputFile(const QuvoOutputFile &file)
{
    if (!QFile::exists(file.path))
        return;
    if (file.kind != QuvoOutputFileKind::PlainFile)
        deleteThroughDriver(file);
    if (QFile::exists(file.path) && std::remove(encodePath(file.path).constData()) != 0)
        qCWarning(lcRunner, "could not delete %s", qUtf8Printable(file.path));
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
