// contact_sheet <sheet.png> <file>…
//
// Paints the products into one picture, each above its file name: rasters in greys or in their own colours,
// contour lines over the product named "hillshade". Needs no display.

#include "dataset/gdalmessages.h"
#include "samples/productpicture.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <ogrsf_frmts.h>

#include <cstdio>

namespace
{

constexpr int side = 320; // of a picture, in pixels
constexpr int margin = 16;
constexpr int titleHeight = 28;
constexpr int columns = 3;
constexpr QSize pictureSize(side, side);

QString fileNamed(const QStringList &files, const QString &name)
{
    for (const QString &file : files) {
        if (QFileInfo(file).completeBaseName() == name)
            return file;
    }
    return {};
}

/// Draws contour lines over the relief, which must have the same extent. Every fifth line, at multiples of 500
/// m, is wider.
QImage linesOver(const QString &reliefFile, OGRLayer &layer)
{
    FeaturePicture picture(reliefFile, pictureSize);
    for (const auto &[filter, pen] : {std::pair{"CAST(Z AS INTEGER) % 500 <> 0", "PEN(c:#8A5A3280,w:1px)"},
                                      {"CAST(Z AS INTEGER) % 500 = 0", "PEN(c:#8A5A32,w:1.1px)"}}) {
        vectordraw::DefaultStyles styles;
        styles.lines = pen;
        layer.SetAttributeFilter(filter);
        picture.draw(layer, styles);
    }
    return picture.image();
}

QImage pictureOf(const QString &file, const QStringList &files)
{
    const DataSet dataset = openData(file);
    if (!dataset)
        return {};
    if (dataset->GetRasterCount() > 0)
        return rasterPicture(file, pictureSize);
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
