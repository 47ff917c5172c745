#include "app/preview/MapScene.h"

#include "app/preview/map/relief.h"

#include <cmath>
#include <limits>

bool MapScene::setDem(const DemInfo &dem)
{
    const bool another = !dem.isSameFileAs(m_dem);
    const bool anotherBand = !dem.isSameBandAs(m_dem);
    if (anotherBand)
        m_ground = dem.path.isEmpty() ? DemGround() : DemGround(dem.path, dem.band);
    m_dem = dem;
    m_mirroring = m_ground.isGeoreferenced()
        ? Mirroring{.columns = m_ground.columnsRunWest(), .rows = m_ground.rowsRunNorth()}
        : Mirroring();
    if (!anotherBand)
        return false;
    m_layers.ground.clear();
    m_relief = QImage();
    m_copySize = QSize();
    clearProduct();
    return another;
}

QPointF MapScene::toGround(const QPointF &cell) const
{
    return m_ground.toGround(mirrored(cell, size(), m_mirroring));
}

QPointF MapScene::toCells(const QPointF &ground) const
{
    return mirrored(m_ground.toCells(ground), size(), m_mirroring);
}

QRect MapScene::otherSide(const QRect &part) const
{
    return mirrored(part, size(), m_mirroring);
}

QSizeF MapScene::cellMetres(const QPointF &cell) const
{
    const QPointF here = toGround(cell);
    const QSizeF metres = m_ground.metresPerUnit(here);
    const auto length = [&](const QPointF &there) {
        const QPointF way = there - here;
        return std::hypot(way.x() * metres.width(), way.y() * metres.height());
    };
    return {length(toGround(cell + QPointF(1.0, 0.0))), length(toGround(cell + QPointF(0.0, 1.0)))};
}

bool MapScene::isScaleKnown() const
{
    return !m_ground.crs().isEmpty();
}

void MapScene::addCopy(const QString &copy, const QRect &part)
{
    const ElevationGrid elevations = readElevations(copy, m_dem.band, m_mirroring);
    m_copySize = {elevations.width, elevations.height};
    m_copyPart = part;
    if (elevations.isEmpty())
        return;
    const QRect shown = otherSide(part);
    const QSizeF cell = cellMetres(QRectF(shown).center());
    m_relief = softRelief(
        elevations,
        {cell.width() * part.width() / elevations.width, cell.height() * part.height() / elevations.height});
    MapPicture::add(m_layers.ground, {m_relief, shown});
}

void MapScene::addProduct(const ProductPicture &product, const ProductLook &look, bool renewed)
{
    m_product = product;
    m_look = look;
    m_productPart = otherSide(m_copyPart);
    m_layers.transparent = false;
    if (look.ramp == RampKind::Direction) // 0, a direction to the north, stands in cells without data, too
        m_product.picture = withoutVoids(product.picture, m_relief);
    addLayer(look.form == ProductForm::Shade ? m_product.picture : overRelief(m_product.picture, m_relief),
             renewed);
}

void MapScene::addLines(const QImage &lines, bool renewed)
{
    m_product = {};
    m_look = {ProductForm::Lines, RampKind::Grey, false, {}, {}};
    m_layers.transparent = true;
    addLayer(lines, renewed);
}

void MapScene::addLayer(const QImage &picture, bool renewed)
{
    if (renewed || m_layers.transparent) // lines of two pictures would be seen at once
        m_layers.product.clear();
    if (!picture.isNull())
        MapPicture::add(m_layers.product, {picture, otherSide(m_copyPart)});
}

void MapScene::clearProduct()
{
    m_layers.product.clear();
    m_product = {};
    m_look = {};
}

double MapScene::productValue(const QPointF &cell) const
{
    const ElevationGrid &values = m_product.values;
    if (values.isEmpty() || !QRectF(m_productPart).contains(cell))
        return std::numeric_limits<double>::quiet_NaN();
    const auto column =
        static_cast<int>((cell.x() - m_productPart.left()) / m_productPart.width() * values.width);
    const auto row =
        static_cast<int>((cell.y() - m_productPart.top()) / m_productPart.height() * values.height);
    if (column < 0 || row < 0 || column >= values.width || row >= values.height)
        return std::numeric_limits<double>::quiet_NaN();
    return static_cast<double>(values.cells.at(row * values.width + column));
}

std::function<double(int)> MapScene::cellArea(const QSize &picture) const
{
    if (!isScaleKnown() || picture.isEmpty())
        return {};
    const QRect shown = otherSide(m_copyPart);
    return [this, picture, shown](int row) {
        const double rows = static_cast<double>(shown.height()) / picture.height();
        const double columns = static_cast<double>(shown.width()) / picture.width();
        const QSizeF cell = cellMetres({QRectF(shown).center().x(), shown.top() + (row + 0.5) * rows});
        return cell.width() * columns * cell.height() * rows;
    };
}

std::array<double, 6> MapScene::pictureToGround(const QSize &picture) const
{
    const QRect part = otherSide(m_copyPart);
    const QPointF origin = toGround(part.topLeft());
    const QPointF right =
        toGround(part.topLeft() + QPointF(part.width() / double(picture.width()), 0.0)) - origin;
    const QPointF down =
        toGround(part.topLeft() + QPointF(0.0, part.height() / double(picture.height()))) - origin;
    return {origin.x(), right.x(), down.x(), origin.y(), right.y(), down.y()};
}
