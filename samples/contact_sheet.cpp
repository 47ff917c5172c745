// contact_sheet <sheet.png> <file>…
//
// Paints the products into one picture, each with its file name below: rasters of one band in greys, stretched
// from the 2nd to the 98th percentile, rasters of more bands in their colours, contour lines over the file
// named "hillshade". Without a display.

#include "vectordraw/featurelayer.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

namespace
{

constexpr int side = 320; // of a picture, in pixels
constexpr int margin = 16;
constexpr int titleHeight = 28;
constexpr int columns = 3;

using DataSet = std::unique_ptr<GDALDataset>;
using Cells = std::vector<double>;

/// The band reduced to the picture; cells without data are NaN.
Cells readBand(GDALRasterBand &band, const QSize &size)
{
    Cells cells(static_cast<std::size_t>(size.width()) * size.height());
    int hasNoData = FALSE;
    const double noData = band.GetNoDataValue(&hasNoData);
    if (band.RasterIO(GF_Read, 0, 0, band.GetXSize(), band.GetYSize(), cells.data(), size.width(),
                      size.height(), GDT_Float64, 0, 0, nullptr)
        != CE_None)
        return {};
    for (double &cell : cells) {
        if (hasNoData && cell == noData)
            cell = std::nan("");
    }
    return cells;
}

/// Maps the cells to 0 to 255, from the 2nd to the 98th percentile.
void stretch(Cells &cells)
{
    Cells sorted;
    std::copy_if(cells.begin(), cells.end(), std::back_inserter(sorted),
                 [](double cell) { return !std::isnan(cell); });
    if (sorted.empty())
        return;
    std::sort(sorted.begin(), sorted.end());
    const double low = sorted[sorted.size() / 50];
    const double high = sorted[sorted.size() - 1 - sorted.size() / 50];
    for (double &cell : cells)
        cell = high > low ? std::clamp((cell - low) / (high - low) * 255.0, 0.0, 255.0) : 128.0;
}

QImage rasterPicture(GDALDataset &dataset)
{
    const QSize size =
        QSize(dataset.GetRasterXSize(), dataset.GetRasterYSize()).scaled(side, side, Qt::KeepAspectRatio);
    const bool grey = dataset.GetRasterCount() < 3;
    std::vector<Cells> bands;
    for (int band = 1; band <= (grey ? 1 : 3); ++band)
        bands.push_back(readBand(*dataset.GetRasterBand(band), size));
    if (grey)
        stretch(bands.front());
    QImage picture(size, QImage::Format_RGB32);
    for (int at = 0; at < size.width() * size.height(); ++at) {
        const auto part = [&](std::size_t band) {
            const double value = bands[grey ? 0 : band].at(at);
            return std::isnan(value) ? 255 : static_cast<int>(value);
        };
        picture.setPixel(at % size.width(), at / size.width(), qRgb(part(0), part(1), part(2)));
    }
    return picture;
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

/// A pale copy of the relief, as a ground for lines.
QImage paleRelief(GDALDataset &relief)
{
    QImage ground = rasterPicture(relief).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&ground);
    painter.fillRect(ground.rect(), QColor(252, 250, 244, 130));
    return ground;
}

/// The lines over the relief, which has the same extent; every fifth level is heavier.
QImage linesOver(GDALDataset &relief, OGRLayer &layer)
{
    using namespace vectordraw;
    QImage picture = paleRelief(relief);
    View view{picture.width(), picture.height(), {}, {}};
    relief.GetGeoTransform(view.geoTransform.data());
    view.geoTransform[1] *= static_cast<double>(relief.GetRasterXSize()) / picture.width();
    view.geoTransform[5] *= static_cast<double>(relief.GetRasterYSize()) / picture.height();
    Surface surface =
        Surface::onPixels(picture.bits(), picture.width(), picture.height(), picture.bytesPerLine());
    Painter painter(surface, {96.0, view.groundPerPixel()});
    for (const auto &[filter, width] :
         {std::pair{"CAST(Z AS INTEGER) % 500 <> 0", "0.5"}, {"CAST(Z AS INTEGER) % 500 = 0", "1.1"}}) {
        DefaultStyles styles;
        styles.lines = std::string("PEN(c:#8A5A32,w:") + width + "px)";
        layer.SetAttributeFilter(filter);
        FeatureLayer drawing(layer, view, painter, styles);
        while (drawing.drawNext(1000)) { }
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
        return rasterPicture(*dataset);
    const DataSet relief = open(fileNamed(files, QStringLiteral("hillshade")));
    return relief ? linesOver(*relief, *dataset->GetLayer(0)) : QImage();
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    CPLSetConfigOption("GDAL_FILENAME_IS_UTF8", "NO");
    CPLSetConfigOption("GDAL_PAM_ENABLED", "NO");
    const QGuiApplication application(argc, argv);
    GDALAllRegister();
    const QStringList files = QGuiApplication::arguments().mid(2);
    if (files.isEmpty()) {
        std::fputs("usage: contact_sheet <sheet.png> <file>...\n", stderr);
        return 2;
    }
    const int rows = (static_cast<int>(files.size()) + columns - 1) / columns;
    QImage sheet(columns * (side + margin) + margin, rows * (side + titleHeight + margin) + margin,
                 QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int at = 0; at < files.size(); ++at) {
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
