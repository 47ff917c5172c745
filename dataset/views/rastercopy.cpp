#include "dataset/views/rastercopy.h"

#include "dataset/pathencoding.h"

#include <array>

std::unique_ptr<GDALDataset> createLike(const QString &path, GDALDataset &like, GDALDataType type)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    const char *options[] = {"BIGTIFF=IF_SAFER", nullptr};
    std::unique_ptr<GDALDataset> dataset(driver->Create(encodePath(path).constData(), like.GetRasterXSize(),
                                                        like.GetRasterYSize(), 1, type,
                                                        const_cast<char **>(options)));
    std::array<double, 6> toGround{};
    if (dataset && like.GetGeoTransform(toGround.data()) == CE_None)
        dataset->SetGeoTransform(toGround.data());
    if (dataset && like.GetSpatialRef())
        dataset->SetSpatialRef(like.GetSpatialRef());
    return dataset;
}

void describeLike(GDALRasterBand &from, GDALRasterBand &to)
{
    int hasNoData = FALSE;
    const double noData = from.GetNoDataValue(&hasNoData);
    if (hasNoData)
        to.SetNoDataValue(to.GetRasterDataType() == GDT_Float32 ? static_cast<float>(noData) : noData);
    to.SetUnitType(from.GetUnitType());
    int isKnown = FALSE;
    if (const double scale = from.GetScale(&isKnown); isKnown && scale != 1.0)
        to.SetScale(scale);
    if (const double offset = from.GetOffset(&isKnown); isKnown && offset != 0.0)
        to.SetOffset(offset);
}
