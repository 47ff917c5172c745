#pragma once

#include <QBrush>
#include <QColor>
#include <QImage>
#include <QRectF>
#include <QVector>

#include <optional>

class QPainter;

/// A picture of some cells of a DEM. Cells count columns to the right and rows down from the upper left corner
/// of the map, where north is above.
struct MapLayer
{
    QImage picture; ///< cells without data are transparent
    QRectF part;    ///< the cells that it covers
};

/// What a map shows: the ground and a product over it, each as pictures of which a later one covers the earlier
/// ones. Cells without data are hatched; where there is no picture of the product yet, the ground is shown.
///
/// It knows no widget: draw() paints it anywhere.
struct MapPicture
{
    QVector<MapLayer> ground;    ///< the coarsest first
    QVector<MapLayer> product;   ///< empty: the ground alone is shown
    bool transparent = false;    ///< the ground shows through the product's transparent cells, as between lines
    double opacity = 1.0;        ///< of the product, 0 to 1
    std::optional<double> swipe; ///< the product is shown right of this share of the width, 0 to 1
    QColor paper = Qt::white;    ///< behind the hatch

    /// Adds a layer, and drops those which it covers.
    static void add(QVector<MapLayer> &layers, const MapLayer &layer);

    bool hasProduct() const { return !product.isEmpty(); }

    /// The ground alone, and the product as it is seen at full opacity over it (`below`), for `view` (in cells)
    /// in a picture of `size` pixels. scale: pixels in a point of the hatch.
    QImage groundCanvas(const QRectF &view, const QSize &size, double scale) const;
    QImage productCanvas(const QRectF &view, const QSize &size, double scale, const QImage &below) const;

    /// Draws both canvases with the opacity and the swipe into `place`.
    void compose(QPainter &painter, const QRectF &place, const QImage &below, const QImage &above) const;

    /// Both steps at once: the picture of `view` in `size` pixels.
    QImage drawn(const QRectF &view, const QSize &size, double scale = 1.0) const;
};

/// The hatch that marks cells without data on a map and in its legend. scale: pixels in a point.
QBrush voidHatch(const QColor &paper, double scale);
