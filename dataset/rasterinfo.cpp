#include "dataset/rasterinfo.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <gdal_priv.h>

#include <memory>

namespace
{

/// The local file that holds a virtual path ("a.zip" for "/vsizip/a.zip/b.tif"); any other path unchanged.
QString localFile(QString path)
{
    static const QRegularExpression prefix(QStringLiteral("^/vsi[a-z0-9_]+/"));
    bool isVirtual = false;
    while (isVirtualPath(path) && prefix.match(path).hasMatch()) {
        isVirtual = true;
        path.remove(prefix);
        path = path.mid(path.indexOf(QLatin1Char(',')) + 1); // "/vsisubfile/0_1000,dem.tif"
        path.remove(QLatin1Char('{')).remove(QLatin1Char('}'));
    }
    while (isVirtual && !path.isEmpty() && !QFileInfo(path).isFile())
        path.truncate(qMax(0, static_cast<int>(path.lastIndexOf(QLatin1Char('/')))));
    return path;
}

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
    return labelText({"MESS_RASTER_INCONNU", "Ce fichier n'est pas un raster que GDAL peut lire."})
        + QLatin1Char('\n') + gdalText;
}

} // namespace

RasterInfo readRasterInfo(const QString &path)
{
    RasterInfo info;
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
    const QString source = localFile(path);
    if (isVirtualPath(path) && !source.isEmpty() && !info.files.contains(source))
        info.files += source;
    if (info.bandCount == 0)
        info.problem = labelText({"MESS_RASTER_SANS_BANDE", "Ce fichier ne contient aucune bande raster."});
    return info;
}
