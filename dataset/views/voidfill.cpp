#include "dataset/views/voidfill.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/views/rastercopy.h"

#include <QFile>
#include <QFileInfo>

#include <cpl_conv.h>
#include <gdal_alg.h>
#include <gdal_priv.h>

#include <cmath>
#include <memory>
#include <vector>

namespace
{

using Dataset = std::unique_ptr<GDALDataset>;

/// Reports a part of the whole progress.
struct Share
{
    const FillProgress &progress;
    double begin; ///< percent
    double size;
    bool isStopped = false;

    static int report(double complete, const char *, void *share)
    {
        auto &self = *static_cast<Share *>(share);
        self.isStopped = !self.progress(static_cast<int>(self.begin + complete * self.size));
        return self.isStopped ? FALSE : TRUE;
    }
};

/// Rows of a band as numbers of the type Float32.
class Rows
{
public:
    explicit Rows(GDALRasterBand &band)
        : m_band(band)
        , m_cells(static_cast<std::size_t>(band.GetXSize()))
    { }

    bool read(int row) { return transfer(GF_Read, row); }
    bool write(int row) { return transfer(GF_Write, row); }
    std::vector<float> &cells() { return m_cells; }

private:
    bool transfer(GDALRWFlag direction, int row)
    {
        const int width = m_band.GetXSize();
        return m_band.RasterIO(direction, 0, row, width, 1, m_cells.data(), width, 1, GDT_Float32, 0, 0,
                               nullptr)
            == CE_None;
    }

    GDALRasterBand &m_band;
    std::vector<float> m_cells;
};

/// Copies the elevations and what the band says of them.
bool copy(GDALRasterBand &from, GDALRasterBand &to, Share &share)
{
    describeLike(from, to);
    Rows source(from);
    Rows target(to);
    for (int row = 0; row < from.GetYSize(); ++row) {
        if (!source.read(row))
            return false;
        target.cells() = source.cells();
        if (!target.write(row) || !Share::report(static_cast<double>(row) / from.GetYSize(), nullptr, &share))
            return false;
    }
    return true;
}

/// Counts the cells that were void and are not any more, and marks them in the mask, which may be null.
bool compare(GDALRasterBand &before, GDALRasterBand &after, GDALRasterBand *mask, FillResult &result)
{
    int hasNoData = FALSE;
    const auto noData = static_cast<float>(before.GetNoDataValue(&hasNoData));
    const auto isVoid = [noData](float cell) {
        return cell == noData || (std::isnan(cell) && std::isnan(noData));
    };
    Rows old(before);
    Rows now(after);
    std::unique_ptr<Rows> marks = mask ? std::make_unique<Rows>(*mask) : nullptr;
    for (int row = 0; row < before.GetYSize(); ++row) {
        if (!old.read(row) || !now.read(row))
            return false;
        for (std::size_t at = 0; at < old.cells().size(); ++at) {
            const bool isFilled = hasNoData && isVoid(old.cells()[at]) && !isVoid(now.cells()[at]);
            result.filled += isFilled ? 1 : 0;
            if (marks)
                marks->cells()[at] = isFilled ? 1.0F : 0.0F;
        }
        if (marks && !marks->write(row))
            return false;
    }
    return true;
}

bool fill(const FillRequest &request, const FillProgress &progress, FillResult &result)
{
    Dataset source(
        GDALDataset::Open(encodePath(request.dem).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    GDALRasterBand *band =
        source ? source->GetRasterBand(request.band) : nullptr; // an error where there is none
    if (!band)
        return false;
    Dataset target = createLike(request.filled, *source, GDT_Float32);
    Dataset mask = request.mask.isEmpty() ? nullptr : createLike(request.mask, *source, GDT_Byte);
    if (!target || (!request.mask.isEmpty() && !mask))
        return false;
    GDALRasterBand &from = *band;
    GDALRasterBand &to = *target->GetRasterBand(1);
    Share copying{progress, 0.0, 40.0};
    Share filling{progress, 40.0, 50.0};
    bool isDone = copy(from, to, copying);
    int hasNoData = FALSE;
    to.GetNoDataValue(&hasNoData);
    if (isDone && hasNoData) {
        isDone = GDALFillNodata(GDALRasterBand::ToHandle(&to), nullptr, request.distance, 0, 0, nullptr,
                                Share::report, &filling)
            == CE_None;
        target->FlushCache(false);
    }
    isDone = isDone && compare(from, to, mask ? mask->GetRasterBand(1) : nullptr, result);
    result.isStopped = copying.isStopped || filling.isStopped;
    target.reset(); // writes the last cells, for which a full disk may have no room
    mask.reset();
    return isDone;
}

} // namespace

FillResult fillVoids(const FillRequest &request, const FillProgress &progress)
{
    FillResult result;
    const GdalMessages messages;
    // GDAL's own files stand beside the filled DEM, where they are removed even after a sudden end.
    const CPLConfigOptionSetter folder("CPL_TMPDIR", encodePath(QFileInfo(request.filled).path()).constData(),
                                       false);
    const bool isDone = fill(request, progress, result) && messages.lastError().isEmpty();
    if (isDone)
        return result;
    for (const QString &file : {request.filled, request.mask}) {
        if (!file.isEmpty())
            QFile::remove(file);
    }
    if (!result.isStopped)
        result.problem = messages.lastError();
    return result;
}
