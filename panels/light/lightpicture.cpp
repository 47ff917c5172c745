#include "panels/light/lightpicture.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "panels/options/lightpresets.h"

#include <QCoreApplication>

#include <gdal_priv.h>
#include <gdal_utils.h>

#include <cstring>
#include <memory>

namespace
{

struct Freer
{
    void operator()(GDALDEMProcessingOptions *options) const { GDALDEMProcessingOptionsFree(options); }
    void operator()(GDALTranslateOptions *options) const { GDALTranslateOptionsFree(options); }
    void operator()(GDALDataset *dataset) const { GDALClose(dataset); }
};

using Dataset = std::unique_ptr<GDALDataset, Freer>;

/// The words of a text without quotes, as GDAL's functions take them.
class Words
{
public:
    explicit Words(const QString &text)
        : m_words(CSLTokenizeString2(text.toUtf8().constData(), " ", 0))
    { }
    ~Words() { CSLDestroy(m_words); }
    Q_DISABLE_COPY(Words)
    char **list() const { return m_words; }

private:
    char **m_words;
};

/// The middle of the DEM, in memory, with a cell more at each side.
Dataset middleOf(const QString &dem, const QSize &size)
{
    const Dataset file(GDALDataset::Open(encodePath(dem).constData(), GDAL_OF_RASTER));
    const QSize seen = size + QSize(2, 2);
    if (!file || file->GetRasterXSize() < seen.width() || file->GetRasterYSize() < seen.height())
        return nullptr;
    const Words words(QStringLiteral("-q -of MEM -b 1 -srcwin %1 %2 %3 %4")
                          .arg((file->GetRasterXSize() - seen.width()) / 2)
                          .arg((file->GetRasterYSize() - seen.height()) / 2)
                          .arg(seen.width())
                          .arg(seen.height()));
    const std::unique_ptr<GDALTranslateOptions, Freer> options(GDALTranslateOptionsNew(words.list(), nullptr));
    return Dataset(
        GDALDataset::FromHandle(GDALTranslate("", GDALDataset::ToHandle(file.get()), options.get(), nullptr)));
}

} // namespace

QImage lightPicture(const QString &dem, const ShadedOptions &light, const QSize &size)
{
    const GdalMessages messages; // a missing sample is no error
    const Dataset ground = middleOf(dem, size);
    if (!ground)
        return {};
    const Words words(QStringLiteral("-q -of MEM ") + shadedFragment(withLight({}, light)));
    const std::unique_ptr<GDALDEMProcessingOptions, Freer> options(
        GDALDEMProcessingOptionsNew(words.list(), nullptr));
    const Dataset relief(GDALDataset::FromHandle(GDALDEMProcessing(
        "", GDALDataset::ToHandle(ground.get()), "hillshade", nullptr, options.get(), nullptr)));
    QImage picture(size, QImage::Format_Grayscale8);
    if (!relief
        || relief->GetRasterBand(1)->RasterIO(GF_Read, 1, 1, size.width(), size.height(), picture.bits(),
                                              size.width(), size.height(), GDT_Byte, 1, picture.bytesPerLine(),
                                              nullptr)
            != CE_None)
        return {};
    return picture;
}

QString sampleDem()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/samples/sample_dem.tif");
}
