#include "dataset/overviews.h"

#include "dataset/formats.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <QFile>

#include <gdal_priv.h>

#include <algorithm>
#include <memory>

namespace
{

struct Listener
{
    const OverviewProgress &progress;
    bool isStopped = false;

    static int report(double complete, const char *, void *listener)
    {
        auto &self = *static_cast<Listener *>(listener);
        self.isStopped = !self.progress(static_cast<int>(complete * 100.0));
        return self.isStopped ? FALSE : TRUE;
    }
};

} // namespace

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

OverviewResult buildOverviews(const QString &raster, const OverviewProgress &progress)
{
    const GdalMessages messages;
    // Opened for reading only, the raster stays as it is and the overviews go beside it.
    std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(raster).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (!dataset)
        return {OverviewResult::Failed, messages.lastError()};
    QVector<int> factors = overviewFactors(dataset->GetRasterXSize(), dataset->GetRasterYSize());
    if (factors.isEmpty())
        return {OverviewResult::NotNeeded, {}};
    const bool existed = QFile::exists(overviewFile(raster));
    Listener listener{progress};
    const CPLErr result = dataset->BuildOverviews("NEAREST", static_cast<int>(factors.size()), factors.data(),
                                                  0, nullptr, Listener::report, &listener);
    dataset.reset(); // writes the last cells, for which a full disk may have no room
    if (result == CE_None && messages.lastError().isEmpty())
        return {OverviewResult::Built, {}};
    if (!existed)
        QFile::remove(overviewFile(raster));
    if (listener.isStopped)
        return {OverviewResult::Stopped, {}};
    return {OverviewResult::Failed, messages.lastError()};
}
