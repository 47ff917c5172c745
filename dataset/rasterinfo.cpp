#include "dataset/rasterinfo.h"

#include "dataset/gdalmessages.h"
#include "dataset/hgt.h"
#include "dataset/pathencoding.h"
#include "dataset/references.h"
#include "messages/label.h"

#include <QFileInfo>
#include <QLocale>

#include <gdal_priv.h>

#include <algorithm>
#include <memory>

namespace
{

bool isVirtualRaster(const QString &file)
{
    GDALDriverH driver = GDALIdentifyDriverEx(encodePath(file).constData(), GDAL_OF_RASTER, nullptr, nullptr);
    return driver && EQUAL(GDALGetDescription(driver), "VRT");
}

/// Adds the files of a data set and, recursively, those of the data sets among them: virtual rasters, and names
/// that are no files ("GTIFF_DIR:1:…").
void addFiles(GDALDataset &dataset, QStringList &names)
{
    char **list = dataset.GetFileList();
    QStringList found;
    for (char **name = list; name && *name; ++name)
        found += localFile(decodePath(*name));
    CSLDestroy(list);
    for (const QString &name : qAsConst(found)) {
        if (name.isEmpty() || names.contains(name))
            continue;
        names += name;
        if (QFileInfo::exists(name) && !isVirtualRaster(name))
            continue;
        const std::unique_ptr<GDALDataset> inner(
            GDALDataset::Open(encodePath(name).constData(), GDAL_OF_RASTER));
        if (inner)
            addFiles(*inner, names);
    }
}

/// The names of the rasters that hold the positions of the cells.
QStringList geolocationNames(GDALDataset &dataset)
{
    QStringList names;
    for (const char *key : {"X_DATASET", "Y_DATASET"}) {
        if (const char *name = dataset.GetMetadataItem(key, "GEOLOCATION"))
            names += decodePath(name);
    }
    return names;
}

bool isArchive(const QString &path)
{
    return path.endsWith(QLatin1String(".zip"), Qt::CaseInsensitive);
}

bool isRaster(const QString &name)
{
    return GDALIdentifyDriverEx(encodePath(name).constData(), GDAL_OF_RASTER, nullptr, nullptr) != nullptr;
}

/// Why GDAL opened no raster, in a sentence and, where it helps, GDAL's own words.
QString unreadableProblem(const QString &path, const QString &gdalText)
{
    const QFileInfo file(path);
    if (isVirtualPath(path) || !file.isAbsolute()) // a name inside a file, or with a driver's prefix
        return gdalText;
    if (!file.exists())
        return labelText({"MESS_RASTER_ABSENT", "Ce fichier n'existe pas."});
    if (!file.isReadable())
        return labelText({"MESS_RASTER_DROITS", "Vous n'avez pas le droit de lire ce fichier."});
    if (isArchive(path))
        return labelText(
            {"MESS_RASTER_ARCHIVE",
             "Cette archive contient plusieurs fichiers ou aucun raster : « Source de données... », dans "
             "le menu du bouton, montre ce qu'elle contient."});
    const QString hgt = hgtProblem(file.fileName(), file.size());
    if (!hgt.isEmpty())
        return hgt;
    return labelText({"MESS_RASTER_INCONNU", "Ce fichier n'est pas un raster que GDAL peut lire."})
        + QLatin1Char('\n') + gdalText;
}

/// The problem of a raster whose cells stand plainly in a file that ends before the last of them. GDAL's
/// drivers of such formats read the missing cells as zeros.
QString truncationProblem(GDALDataset &dataset)
{
    GDALDataset::RawBinaryLayout layout;
    if (!dataset.GetRawBinaryLayout(layout))
        return {};
    GIntBig end = static_cast<GIntBig>(layout.nImageOffset) + GDALGetDataTypeSizeBytes(layout.eDataType);
    const auto goTo = [&end](GIntBig last, GIntBig step) { end += std::max<GIntBig>(0, last * step); };
    goTo(dataset.GetRasterXSize() - 1, layout.nPixelOffset);
    goTo(dataset.GetRasterYSize() - 1, layout.nLineOffset);
    goTo(dataset.GetRasterCount() - 1, layout.nBandOffset);
    VSIStatBufL status;
    if (VSIStatL(layout.osRawFilename.c_str(), &status) != 0 || static_cast<GIntBig>(status.st_size) >= end)
        return {};
    const QLocale locale;
    return labelText({"MESS_RASTER_TRONQUE",
                      "Ce fichier est incomplet : il lui faudrait %1 octets, et il n'en contient que %2."})
        .arg(locale.toString(static_cast<qlonglong>(end)),
             locale.toString(static_cast<qlonglong>(status.st_size)));
}

} // namespace

RasterInfo readRasterInfo(const QString &path)
{
    RasterInfo info;
    info.problem = endlessSourceProblem(path);
    if (!info.problem.isEmpty())
        return info;
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (!dataset) {
        info.problem = unreadableProblem(path, messages.lastError());
        return info;
    }
    info.width = dataset->GetRasterXSize();
    info.height = dataset->GetRasterYSize();
    info.bandCount = dataset->GetRasterCount();
    addFiles(*dataset, info.files);
    const QStringList names = QStringList{path} + geolocationNames(*dataset) + info.files;
    for (const QString &name : names) {
        for (const QString &file : referencedFiles(name)) {
            if (!info.files.contains(file))
                info.files += file;
        }
    }
    if (info.bandCount == 0)
        info.problem = labelText({"MESS_RASTER_SANS_BANDE", "Ce fichier ne contient aucune bande raster."});
    else
        info.problem = truncationProblem(*dataset);
    return info;
}

QString rasterName(const QString &path)
{
    if (isVirtualPath(path) || !isArchive(path) || !QFileInfo(path).isFile() || isRaster(path))
        return path;
    const GdalMessages messages;
    const QString archive = QStringLiteral("/vsizip/") + path;
    char **list = VSIReadDirRecursive(encodePath(archive).constData());
    QStringList rasters;
    for (char **name = list; name && *name; ++name) {
        const QString member = archive + QLatin1Char('/') + decodePath(*name);
        if (!member.endsWith(QLatin1Char('/')) && isRaster(member))
            rasters += member;
    }
    CSLDestroy(list);
    return rasters.size() == 1 ? rasters.first() : path;
}
