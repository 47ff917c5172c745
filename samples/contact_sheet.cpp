// contact_sheet <sheet.png> <file>…
//
// Paints the products into one picture, each above its file name: rasters in greys or in their own colours,
// contour lines over the product named "hillshade". Needs no display.

#include "dataset/gdalmessages.h"
#include "dataset/rasterpicture.h"
#include "vectordraw/featurelayer.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cstdio>
#include <memory>

namespace
{

constexpr int side = 320; // of a picture, in pixels
constexpr int margin = 16;
constexpr int titleHeight = 28;
constexpr int columns = 3;

using DataSet = std::unique_ptr<GDALDataset>;

QImage rasterPicture(const QString &file)
{
    const RasterPicture raster(file);
    const QSize size = raster.size().scaled(side, side, Qt::KeepAspectRatio);
    const QImage image = raster.read(QRect(QPoint(0, 0), raster.size()), size);
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white); // seen through cells without data
    QPainter(&picture).drawImage(0, 0, image);
    return image.isNull() ? image : picture;
}

QString fileNamed(const QStringList &files, const QString &name)
{
    for (const QString &file : files) {
        if (QFileInfo(file).completeBaseName() == name)
            return file;
    }
    return {};
}

DataSet open(const QString &file)
{
    return DataSet(GDALDataset::Open(QFile::encodeName(file).constData(), GDAL_OF_RASTER | GDAL_OF_VECTOR));
}

/// A pale copy of the relief, as a background for lines.
QImage paleRelief(const QString &relief)
{
    QImage ground = rasterPicture(relief).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&ground);
    painter.fillRect(ground.rect(), QColor(252, 250, 244, 130));
    return ground;
}

/// Draws contour lines over the relief, which must have the same extent. Every fifth line, at multiples of 500
/// m, is wider.
QImage linesOver(const QString &reliefFile, OGRLayer &layer)
{
    using namespace vectordraw;
    const DataSet relief = open(reliefFile);
    if (!relief)
        return {};
    QImage picture = paleRelief(reliefFile);
    View view{picture.width(), picture.height(), {}, {}};
    relief->GetGeoTransform(view.geoTransform.data());
    view.geoTransform[1] *= static_cast<double>(relief->GetRasterXSize()) / picture.width();
    view.geoTransform[5] *= static_cast<double>(relief->GetRasterYSize()) / picture.height();
    Surface surface = Surface::onPixels(picture.bits(), picture.width(), picture.height(),
                                        static_cast<int>(picture.bytesPerLine()));
    Painter painter(surface, {96.0, view.groundPerPixel()});
    for (const auto &[filter, pen] : {std::pair{"CAST(Z AS INTEGER) % 500 <> 0", "PEN(c:#8A5A3280,w:1px)"},
                                      {"CAST(Z AS INTEGER) % 500 = 0", "PEN(c:#8A5A32,w:1.1px)"}}) {
        DefaultStyles styles;
        styles.lines = pen;
        layer.SetAttributeFilter(filter);
        FeatureLayer drawing(layer, view, painter, styles);
        while (drawing.drawNext(100000)) { }
    }
    surface.flush();
    return picture.copy();
}

QImage pictureOf(const QString &file, const QStringList &files)
{
    const DataSet dataset = open(file);
    if (!dataset)
        return {};
    if (dataset->GetRasterCount() > 0)
        return rasterPicture(file);
    return linesOver(fileNamed(files, QStringLiteral("hillshade")), *dataset->GetLayer(0));
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    setUpGdal();
    const QStringList files = QGuiApplication::arguments().mid(2);
    if (files.isEmpty()) {
        std::fputs("usage: contact_sheet <sheet.png> <file>...\n", stderr);
        return 2;
    }
    const int count = static_cast<int>(files.size());
    const int rows = (count + columns - 1) / columns;
    QImage sheet(columns * (side + margin) + margin, rows * (side + titleHeight + margin) + margin,
                 QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int at = 0; at < count; ++at) {
        const QImage picture = pictureOf(files.at(at), files);
        if (picture.isNull()) {
            std::fprintf(stderr, "%s cannot be painted\n", qUtf8Printable(files.at(at)));
            return 1;
        }
        const QPoint corner(margin + at % columns * (side + margin),
                            margin + at / columns * (side + titleHeight + margin));
        painter.drawImage(corner, picture);
        painter.drawText(QRect(corner.x(), corner.y() + side, side, titleHeight), Qt::AlignCenter,
                         QFileInfo(files.at(at)).completeBaseName());
    }
    painter.end();
    return sheet.save(QGuiApplication::arguments().at(1)) ? 0 : 1;
}
