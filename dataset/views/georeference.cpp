#include "dataset/views/georeference.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <gdal_priv.h>

#include <QFile>
#include <QFileInfo>

#include <array>
#include <memory>

namespace
{

/// Path of the raster's world file; empty where none exists.
QString worldFile(const QString &raster)
{
    const QFileInfo file(raster);
    const QString world = file.path() + QLatin1Char('/') + file.completeBaseName() + QStringLiteral(".tfw");
    return QFile::exists(world) ? world : QString();
}

} // namespace

QString copyGeoreference(const QString &dem, const QString &raster)
{
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> from(
        GDALDataset::Open(encodePath(dem).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    std::unique_ptr<GDALDataset> to(GDALDataset::Open(encodePath(raster).constData(),
                                                      GDAL_OF_RASTER | GDAL_OF_UPDATE | GDAL_OF_VERBOSE_ERROR));
    if (!from || !to)
        return messages.lastError();
    if (from->GetRasterXSize() != to->GetRasterXSize() || from->GetRasterYSize() != to->GetRasterYSize())
        return labelText({"MESS_CALAGE_TAILLE", "Les deux rasters n'ont pas les mêmes dimensions."});
    std::array<double, 6> toGround{};
    if (from->GetGeoTransform(toGround.data()) != CE_None)
        toGround = {}; // six zeros remove the transform
    bool isWritten = to->SetGeoTransform(toGround.data()) == CE_None;
    if (const OGRSpatialReference *crs = from->GetSpatialRef())
        isWritten = to->SetSpatialRef(crs) == CE_None && isWritten;
    to.reset(); // writes it
    const QString world = worldFile(raster);
    if (!world.isEmpty())
        isWritten = GDALWriteWorldFile(encodePath(world).constData(), "tfw", toGround.data()) && isWritten;
    return isWritten ? QString() : messages.lastError();
}
