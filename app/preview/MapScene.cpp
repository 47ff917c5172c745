#include "app/preview/MapScene.h"

#include "app/preview/map/relief.h"

#include <algorithm>
#include <cmath>
#include <limits>

bool MapScene::setDem(const DemInfo &dem)
{
    const bool another = !dem.isSameFileAs(m_dem);
    const bool anotherBand = !dem.isSameBandAs(m_dem);
    if (anotherBand)
        m_grid = dem.path.isEmpty() ? MapGrid() : MapGrid(dem.path, dem.band);
    m_dem = dem;
    if (!anotherBand)
        return false;
    m_layers.ground.clear();
    m_relief = QImage();
    m_copySize = QSize();
    clearProduct();
    return another;
}

void MapScene::addCopy(const QString &copy, const QRect &part)
{
    const ElevationGrid elevations = readElevations(copy, m_dem.band, m_grid.mirroring());
    m_copySize = {elevations.width, elevations.height};
    m_copyPart = part;
    m_hasVoids = std::any_of(elevations.cells.begin(), elevations.cells.end(),
                             [](float cell) { return std::isnan(cell); });
    if (elevations.isEmpty())
        return;
    const QRect shown = m_grid.otherSide(part);
    const QSizeF cell = m_grid.cellMetres(QRectF(shown).center());
    m_relief = softRelief(
        elevations,
        {cell.width() * part.width() / elevations.width, cell.height() * part.height() / elevations.height});
    MapPicture::add(m_layers.ground, {m_relief, shown});
}

void MapScene::addProduct(const ProductPicture &product, const ProductLook &look, bool renewed)
{
    m_product = product;
    m_look = look;
    m_productPart = m_grid.otherSide(m_copyPart);
    m_layers.transparent = false;
    // A cell without data may have a colour of its own in the product, or 0, which is a direction to the north.
    const QImage picture = withoutVoids(product.picture, m_relief);
    addLayer(holdsRelief(look.form) ? picture : overRelief(picture, m_relief), renewed);
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
        MapPicture::add(m_layers.product, {picture, m_grid.otherSide(m_copyPart)});
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
