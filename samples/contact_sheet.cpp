// contact_sheet <sheet.png> <file>…
//
// Paints the products into one picture, each with its file name below: rasters of one band in greys, stretched from the
// 2nd to the 98th percentile, rasters of more bands in their colours, vector lines as lines. Without a display.

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

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

using Cells = std::vector<double>;

/// The band reduced to the picture; cells without data are NaN.
Cells readBand(GDALRasterBand &band, const QSize &size)
{
    Cells cells(static_cast<std::size_t>(size.width()) * size.height());
    int hasNoData = FALSE;
    const double noData = band.GetNoDataValue(&hasNoData);
    if (band.RasterIO(GF_Read, 0, 0, band.GetXSize(), band.GetYSize(), cells.data(), size.width(), size.height(),
                      GDT_Float64, 0, 0, nullptr)
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
    std::copy_if(cells.begin(), cells.end(), std::back_inserter(sorted), [](double cell) { return !std::isnan(cell); });
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

QImage vectorPicture(OGRLayer &layer)
{
    QImage picture(side, side, QImage::Format_RGB32);
    picture.fill(QColor(248, 246, 240));
    OGREnvelope extent;
    if (layer.GetExtent(&extent) != OGRERR_NONE)
        return picture;
    const double scale = side / std::max(extent.MaxX - extent.MinX, extent.MaxY - extent.MinY);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(140, 96, 60), 0.7));
    for (auto &feature : layer) {
        const OGRGeometry *geometry = feature->GetGeometryRef();
        if (!geometry || wkbFlatten(geometry->getGeometryType()) != wkbLineString)
            continue;
        QPolygonF line;
        for (const OGRPoint &point : *geometry->toLineString())
            line += QPointF((point.getX() - extent.MinX) * scale, (extent.MaxY - point.getY()) * scale);
        painter.drawPolyline(line);
    }
    return picture;
}

QImage pictureOf(const QString &file)
{
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(QFile::encodeName(file).constData(), GDAL_OF_RASTER | GDAL_OF_VECTOR));
    if (!dataset)
        return {};
    return dataset->GetRasterCount() > 0 ? rasterPicture(*dataset) : vectorPicture(*dataset->GetLayer(0));
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
        const QImage picture = pictureOf(files.at(at));
        if (picture.isNull()) {
            std::fprintf(stderr, "%s cannot be painted\n", qUtf8Printable(files.at(at)));
            return 1;
        }
        const QPoint corner(margin + at % columns * (side + margin), margin + at / columns * (side + titleHeight + margin));
        painter.drawImage(corner, picture);
        painter.drawText(QRect(corner.x(), corner.y() + side, side, titleHeight), Qt::AlignCenter,
                         QFileInfo(files.at(at)).completeBaseName());
    }
    painter.end();
    return sheet.save(QGuiApplication::arguments().at(1)) ? 0 : 1;
}
