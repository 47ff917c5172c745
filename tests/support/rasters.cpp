#include "tests/support/rasters.h"

#include "dataset/pathencoding.h"

#include <gdal_priv.h>
#include <gdal_utils.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <memory>

bool writeRaster(const QString &path, int width, int height, const QVector<float> &values, int bands)
{
    GDALAllRegister();
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    const std::unique_ptr<GDALDataset> dataset(
        driver->Create(encodePath(path).constData(), width, height, bands, GDT_Float32, nullptr));
    if (!dataset)
        return false;
    double transform[] = {500000.0, 10.0, 0.0, 5100000.0, 0.0, -10.0};
    dataset->SetGeoTransform(transform);
    OGRSpatialReference utm;
    utm.importFromEPSG(32632);
    dataset->SetSpatialRef(&utm);
    QVector<float> cells = values;
    bool written = true;
    for (int band = 1; band <= bands; ++band) {
        dataset->GetRasterBand(band)->SetNoDataValue(-9999.0);
        written = written
            && dataset->GetRasterBand(band)->RasterIO(GF_Write, 0, 0, width, height, cells.data(), width,
                                                      height, GDT_Float32, 0, 0, nullptr)
                == CE_None;
    }
    return written;
}

bool writeHill(const QString &path, int side)
{
    QVector<float> values;
    values.reserve(side * side);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column)
            values += static_cast<float>(row + 40.0 * std::sin(column * 0.05) * std::cos(row * 0.03));
    }
    return writeRaster(path, side, side, values);
}

bool copyRaster(const QString &from, const QString &to, const QList<QByteArray> &options)
{
    QVector<char *> arguments;
    for (const QByteArray &option : options)
        arguments += const_cast<char *>(option.constData());
    arguments += nullptr;
    GDALTranslateOptions *parsed = GDALTranslateOptionsNew(arguments.data(), nullptr);
    GDALDatasetH source = GDALOpen(encodePath(from).constData(), GA_ReadOnly);
    GDALDatasetH copy = GDALTranslate(encodePath(to).constData(), source, parsed, nullptr);
    GDALTranslateOptionsFree(parsed);
    GDALClose(copy);
    GDALClose(source);
    return copy != nullptr;
}
