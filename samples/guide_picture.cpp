// guide_picture <picture.png> <product> [<relief> | --numbers]
//
// Paints a product for the guide, in a small picture. With a relief of the same extent, the product is drawn
// over it: features in their own styles, a raster half transparent. With --numbers the greys go from the least
// to the greatest value. Needs no display.

#include "dataset/gdalmessages.h"
#include "dataset/rasterpicture.h"
#include "samples/productpicture.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <ogrsf_frmts.h>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr QSize pictureSize(240, 160);

/// The values of the first band in greys.
QImage numberPicture(const QString &file)
{
    const RasterPicture raster(file);
    const QSize size = raster.size().scaled(pictureSize, Qt::KeepAspectRatio);
    const QVector<float> values = raster.values(QRect(QPoint(0, 0), raster.size()), size, true);
    if (values.isEmpty())
        return {};
    const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
    constexpr float white = 255.0F;
    QImage picture(size, QImage::Format_Grayscale8);
    for (int at = 0; at < values.size(); ++at) {
        const float share = (values.at(at) - *least) / std::max(1.0F, *greatest - *least);
        picture.scanLine(at / size.width())[at % size.width()] = static_cast<uchar>(white * share);
    }
    return picture;
}

QImage productPicture(const QString &file, const QString &relief)
{
    if (relief == QLatin1String("--numbers"))
        return numberPicture(file);
    const DataSet product = openData(file);
    if (!product)
        return {};
    if (product->GetRasterCount() == 0) {
        FeaturePicture picture(relief, pictureSize);
        picture.draw(*product->GetLayer(0), {});
        return picture.image();
    }
    const QImage raster = rasterPicture(file, pictureSize);
    if (relief.isEmpty() || raster.isNull())
        return raster;
    constexpr double opacity = 0.5;
    QImage picture = rasterPicture(relief, pictureSize);
    QPainter painter(&picture);
    painter.setOpacity(opacity);
    painter.drawImage(0, 0, raster);
    painter.end();
    return picture;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    setUpGdal();
    const QStringList files = QGuiApplication::arguments().mid(1);
    if (files.size() < 2) {
        std::fputs("usage: guide_picture <picture.png> <product> [<relief> | --numbers]\n", stderr);
        return 2;
    }
    const QImage picture = productPicture(files.at(1), files.value(2));
    if (picture.isNull()) {
        std::fprintf(stderr, "%s cannot be painted\n", qUtf8Printable(files.at(1)));
        return 1;
    }
    const QImage saved = picture.allGray() ? picture.convertToFormat(QImage::Format_Grayscale8) : picture;
    return saved.save(files.at(0)) ? 0 : 1;
}
