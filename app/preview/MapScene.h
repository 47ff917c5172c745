#pragma once

#include "app/preview/MapGrid.h"
#include "app/preview/map/mappicture.h"
#include "app/preview/map/productlook.h"
#include "dataset/deminfo.h"

/// A DEM, its reduced copies and its product, as layers of a map. Cells are those of the map, with north above
/// and west at the left, where nothing else is said; "ground" are coordinates of the DEM.
class MapScene
{
public:
    /// Shows another DEM, or another band of it. Returns whether its cells are others, so that all layers are
    /// gone.
    bool setDem(const DemInfo &dem);

    const DemInfo &dem() const { return m_dem; }
    const MapGrid &grid() const { return m_grid; }
    const DemGround &ground() const { return m_grid.ground(); }
    QSize size() const { return m_grid.size(); }

    /// Adds a reduced copy as ground. part: cells of the DEM that it covers.
    void addCopy(const QString &copy, const QRect &part);
    /// Whether the copy has cells without data.
    bool hasVoids() const { return m_hasVoids; }
    /// Columns and rows of the copy that was added last, and the part of the DEM that it covers.
    QSize copySize() const { return m_copySize; }
    QRect copyPart() const { return m_copyPart; }

    /// Adds a product of the copy that was added last. renewed: the options have changed, so that earlier
    /// pictures of the product do not show the same.
    void addProduct(const ProductPicture &product, const ProductLook &look, bool renewed);
    /// Adds a picture of lines over the relief, on a transparent ground.
    void addLines(const QImage &lines, bool renewed);
    void clearProduct();

    /// The layers; opacity and swipe are those of an empty map.
    const MapPicture &layers() const { return m_layers; }

    /// The product that was added last, its look, and its value in a cell: NaN without data, and outside.
    const ProductPicture &product() const { return m_product; }
    const ProductLook &look() const { return m_look; }
    double productValue(const QPointF &cell) const;

private:
    void addLayer(const QImage &picture, bool renewed);

    DemInfo m_dem;
    MapGrid m_grid;
    MapPicture m_layers;
    QImage m_relief; ///< the relief of the copy that was added last
    bool m_hasVoids = false;
    QSize m_copySize;
    QRect m_copyPart; ///< cells of the DEM
    ProductPicture m_product;
    ProductLook m_look;
    QRect m_productPart; ///< cells of the map that m_product covers
};
