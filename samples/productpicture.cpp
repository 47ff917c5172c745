#include "samples/productpicture.h"

#include "dataset/rasterpicture.h"

#include <QColor>
#include <QFile>
#include <QPainter>

DataSet openData(const QString &file)
{
    return DataSet(GDALDataset::Open(QFile::encodeName(file).constData(), GDAL_OF_RASTER | GDAL_OF_VECTOR));
}

QImage rasterPicture(const QString &file, const QSize &size)
{
    const RasterPicture raster(file);
    const QSize own = raster.size().scaled(size, Qt::KeepAspectRatio);
    const QImage image = raster.read(QRect(QPoint(0, 0), raster.size()), own);
    QImage picture(own, QImage::Format_RGB32);
    picture.fill(Qt::white); // seen through cells without data
    QPainter(&picture).drawImage(0, 0, image);
    return image.isNull() ? image : picture;
}

FeaturePicture::FeaturePicture(const QString &reliefFile, const QSize &size)
{
    const DataSet relief = openData(reliefFile);
    if (!relief)
        return;
    m_picture = rasterPicture(reliefFile, size).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&m_picture);
        painter.fillRect(m_picture.rect(), QColor(252, 250, 244, 130));
    }
    m_view.width = m_picture.width();
    m_view.height = m_picture.height();
    relief->GetGeoTransform(m_view.geoTransform.data());
    m_view.geoTransform[1] *= static_cast<double>(relief->GetRasterXSize()) / m_picture.width();
    m_view.geoTransform[5] *= static_cast<double>(relief->GetRasterYSize()) / m_picture.height();
}

void FeaturePicture::draw(OGRLayer &layer, const vectordraw::DefaultStyles &styles)
{
    using namespace vectordraw;
    if (m_picture.isNull())
        return;
    Surface surface = Surface::onPixels(m_picture.bits(), m_picture.width(), m_picture.height(),
                                        static_cast<int>(m_picture.bytesPerLine()));
    constexpr double dotsPerInch = 96.0;
    Painter painter(surface, {dotsPerInch, m_view.groundPerPixel()});
    FeatureLayer drawing(layer, m_view, painter, styles);
    constexpr long long vertices = 100000;
    while (drawing.drawNext(vertices)) { }
    surface.flush();
}
