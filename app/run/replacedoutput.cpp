#include "app/run/replacedoutput.h"

#include "app/run/outputname.h"
#include "dataset/formats.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"
#include "runner/outputfiles.h"

#include <QDir>
#include <QFileInfo>

#include <gdal_priv.h>

#include <algorithm>
#include <memory>

namespace
{

using DataSet = std::unique_ptr<GDALDataset>;

/// What stands in the product's place, opened by the driver of its format; null when that driver cannot open
/// it.
DataSet openedByItsDriver(const QuvoOutputFile &product, unsigned kinds)
{
    if (!QFileInfo(product.path).isFile())
        return nullptr;
    const GdalMessages messages; // a broken product is expected here, so GDAL's messages are dropped
    const QByteArray driver = product.driver.toUtf8();
    const char *const drivers[] = {driver.constData(), nullptr};
    return DataSet(GDALDataset::Open(encodePath(product.path).constData(), kinds | GDAL_OF_READONLY, drivers));
}

/// Absolute paths of the files of a data set.
QStringList filesOf(GDALDataset &dataset)
{
    QStringList files;
    char **list = dataset.GetFileList();
    for (char **name = list; name && *name; ++name)
        files += QFileInfo(decodePath(*name)).absoluteFilePath();
    CSLDestroy(list);
    return files;
}

/// Absolute paths of the files that the driver counts to the product in its place.
QStringList filesOfItsDriver(const QuvoOutputFile &product)
{
    const DataSet dataset = openedByItsDriver(product, GDAL_OF_RASTER | GDAL_OF_VECTOR);
    return dataset ? filesOf(*dataset) : QStringList();
}

/// Number of rasters that a database holds.
int rasterCount(GDALDataset &dataset)
{
    const int entries = CSLCount(dataset.GetMetadata("SUBDATASETS")); // a name and a description each
    return entries > 0 ? entries / 2 : (dataset.GetRasterCount() > 0 ? 1 : 0);
}

} // namespace

QStringList replacedFiles(const QuvoOutputFilesList &outputs)
{
    const QuvoOutputFile &product = outputs.first();
    const QFileInfo file(product.path);
    QStringList files = wholeNameFiles(product.path);
    for (const QuvoOutputFile &output : outputs)
        files += output.path;
    for (const char *journal : {"-journal", "-wal", "-shm"})
        files += product.path + QLatin1String(journal);
    const QStringList ofItsDriver = filesOfItsDriver(product);
    for (const QString &other : namesakes(product)) {
        const bool isOfItsFormat = product.kind == QuvoOutputFileKind::Vector
            && product.sideExtensions.contains(
                other.mid(file.path().size() + file.completeBaseName().size() + 2), Qt::CaseInsensitive);
        if (isOfItsFormat || ofItsDriver.contains(other))
            files += other;
    }
    files.removeDuplicates();
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const QString &path) { return !QFileInfo(path).isFile(); }),
                files.end());
    return files;
}

QString otherContentProblem(const QuvoOutputFile &product, const QStringList &layers)
{
    const DataSet dataset = formatTraits(product.driver).isDatabase
        ? openedByItsDriver(product, GDAL_OF_RASTER | GDAL_OF_VECTOR)
        : nullptr;
    if (!dataset)
        return {};
    const bool isVector = product.kind == QuvoOutputFileKind::Vector;
    int others = rasterCount(*dataset) + dataset->GetLayerCount();
    if (!isVector && rasterCount(*dataset) > 0)
        --others;
    for (const QString &layer : isVector ? layers : QStringList()) {
        if (dataset->GetLayerByName(layer.toUtf8().constData()))
            --others;
    }
    if (others == 0)
        return {};
    return labelText({"MESS_SORTIE_AUTRES",
                      "« %1 » contient d'autres couches, qui seraient perdues ; choisissez un autre fichier."})
        .arg(product.path);
}

int layersReplaced(const QuvoOutputFile &product)
{
    const DataSet dataset =
        product.kind == QuvoOutputFileKind::Vector ? openedByItsDriver(product, GDAL_OF_VECTOR) : nullptr;
    return dataset ? dataset->GetLayerCount() : 0;
}

QString sharedFileProblem(const QuvoOutputFile &product)
{
    const GdalMessages messages; // most of the files are no data sets, so GDAL's messages are dropped
    const QFileInfo file(product.path);
    const QStringList ours = namesakes(product);
    for (const QFileInfo &other : QDir(file.absolutePath()).entryInfoList(QDir::Files | QDir::Hidden)) {
        const QString path = other.absoluteFilePath();
        if (ours.isEmpty() || other.completeBaseName() != file.completeBaseName()
            || path == file.absoluteFilePath() || ours.contains(path))
            continue;
        const DataSet dataset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER | GDAL_OF_VECTOR));
        const QStringList theirs = dataset ? filesOf(*dataset) : QStringList();
        const auto shared =
            std::find_if(ours.begin(), ours.end(), [&](const QString &side) { return theirs.contains(side); });
        if (shared != ours.end())
            return labelText({"MESS_SORTIE_PARTAGEE",
                              "« %1 » appartient à « %2 » et serait remplacé ; choisissez un autre nom."})
                .arg(*shared, path);
    }
    return {};
}
