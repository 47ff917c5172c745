#include "dataset/overviews.h"

#include "dataset/formats.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <QFile>

#include <gdal_priv.h>

#include <algorithm>
#include <memory>

QVector<int> overviewFactors(int width, int height)
{
    constexpr int smallEnough = 256;
    QVector<int> factors;
    for (int factor = 2; std::min(width, height) / (factor / 2) >= smallEnough; factor *= 2)
        factors += factor;
    return factors;
}

bool takesOverviews(const QString &format)
{
    return formatTraits(format).overviews == OverviewPlace::Beside;
}

QString overviewFile(const QString &raster)
{
    return raster + QStringLiteral(".ovr");
}

QString buildOverviews(const QString &raster, const std::function<void(int)> &progress)
{
    const GdalMessages messages;
    // Opened for reading only, the raster stays as it is and the overviews go beside it.
    std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(raster).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (!dataset)
        return messages.lastError();
    QVector<int> factors = overviewFactors(dataset->GetRasterXSize(), dataset->GetRasterYSize());
    if (factors.isEmpty())
        return {};
    const bool existed = QFile::exists(overviewFile(raster));
    const auto report = [](double complete, const char *, void *listener) -> int {
        (*static_cast<const std::function<void(int)> *>(listener))(static_cast<int>(complete * 100.0));
        return TRUE;
    };
    const CPLErr result =
        dataset->BuildOverviews("NEAREST", static_cast<int>(factors.size()), factors.data(), 0, nullptr, report,
                                const_cast<std::function<void(int)> *>(&progress));
    dataset.reset(); // writes the last cells, for which a full disk may have no room
    if (result == CE_None && messages.lastError().isEmpty())
        return {};
    if (!existed)
        QFile::remove(overviewFile(raster));
    return messages.lastError();
}
