#include "app/preview/map/mappicture.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace
{

/// Draws the layers over each other. hatch: what their transparent cells show; no brush: what is there already.
void drawLayers(QPainter &painter, const QVector<MapLayer> &layers, const QBrush &hatch, const QRectF &view,
                const QSize &size)
{
    const double across = size.width() / view.width();
    const double along = size.height() / view.height();
    for (const MapLayer &layer : layers) {
        const QRectF place((layer.part.left() - view.left()) * across, (layer.part.top() - view.top()) * along,
                           layer.part.width() * across, layer.part.height() * along);
        // A cell larger than a pixel is drawn in one colour: colours between those of two classes would mean
        // nothing.
        painter.setRenderHint(QPainter::SmoothPixmapTransform, place.width() < layer.picture.width());
        painter.fillRect(place, hatch);
        painter.drawImage(place, layer.picture);
    }
}

} // namespace

QBrush voidHatch(const QColor &paper, double scale)
{
    const int side = std::max(4, qRound(7.0 * scale));
    QImage tile(side, side, QImage::Format_ARGB32_Premultiplied);
    tile.fill(paper);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(176, 64, 150, 150), 1.1 * scale));
    for (const int shift : {-side, 0, side}) // the neighbours' lines reach into the corners
        painter.drawLine(QPointF(shift - 1.0, side + 1.0), QPointF(shift + side + 1.0, -1.0));
    painter.end();
    return {tile};
}

void MapPicture::add(QVector<MapLayer> &layers, const MapLayer &layer)
{
    layers.erase(std::remove_if(layers.begin(), layers.end(),
                                [&](const MapLayer &other) { return layer.part.contains(other.part); }),
                 layers.end());
    constexpr int most = 4; // the whole and some parts that the user has just come from
    if (layers.size() >= most)
        layers.removeAt(1);
    layers += layer;
}

QImage MapPicture::groundCanvas(const QRectF &view, const QSize &size, double scale) const
{
    QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    painter.fillRect(canvas.rect(), paper);
    if (!view.isEmpty())
        drawLayers(painter, ground, voidHatch(paper, scale), view, size);
    return canvas;
}

QImage MapPicture::productCanvas(const QRectF &view, const QSize &size, double scale, const QImage &below) const
{
    if (product.isEmpty() || view.isEmpty())
        return {};
    QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    painter.drawImage(0, 0, below);
    drawLayers(painter, product, transparent ? QBrush() : voidHatch(paper, scale), view, size);
    return canvas;
}

void MapPicture::compose(QPainter &painter, const QRectF &place, const QImage &below, const QImage &above) const
{
    painter.drawImage(place, below);
    if (above.isNull())
        return;
    painter.save();
    if (swipe)
        painter.setClipRect(place.adjusted(place.width() * *swipe, 0.0, 0.0, 0.0), Qt::IntersectClip);
    painter.setOpacity(painter.opacity() * opacity);
    painter.drawImage(place, above);
    painter.restore();
}

QImage MapPicture::drawn(const QRectF &view, const QSize &size, double scale) const
{
    const QImage below = groundCanvas(view, size, scale);
    const QImage above = productCanvas(view, size, scale, below);
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    compose(painter, QRectF(QPointF(0.0, 0.0), QSizeF(size)), below, above);
    return picture;
}
