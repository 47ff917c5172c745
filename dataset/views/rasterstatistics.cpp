#include "dataset/views/rasterstatistics.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <gdal_priv.h>

#include <memory>

namespace
{

/// What GDAL's progress function needs to know.
struct BandProgress
{
    const std::function<bool(double)> &progress;
    int before; ///< finished bands
    int bands;
};

int CPL_STDCALL reportBand(double share, const char *, void *data)
{
    const auto &band = *static_cast<BandProgress *>(data);
    return band.progress((band.before + share) / band.bands) ? TRUE : FALSE;
}

} // namespace

QString writeStatistics(const QString &raster, const std::function<bool(double)> &progress)
{
    GdalMessages messages; // also of a band without values, which is no failure
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(raster).constData(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
    if (!dataset)
        return labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."}).arg(raster)
            + QLatin1Char('\n') + messages.lastError();
    BandProgress state{progress, 0, dataset->GetRasterCount()};
    for (; state.before < state.bands; ++state.before) {
        double minimum = 0.0;
        double maximum = 0.0;
        double mean = 0.0;
        double deviation = 0.0;
        // A virtual raster would add up the statistics of its tiles, whose shares of cells are rounded.
        GDALRasterBand &band = *dataset->GetRasterBand(state.before + 1);
        band.GDALRasterBand::ComputeStatistics(FALSE, &minimum, &maximum, &mean, &deviation, reportBand,
                                               &state);
    }
    return {};
}
