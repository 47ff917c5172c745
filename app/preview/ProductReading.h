#pragma once

#include "app/preview/MapGrid.h"
#include "app/preview/map/mappicture.h"
#include "app/preview/map/productlook.h"
#include "dataset/rasterpicture.h"
#include "dataset/vectorpicture.h"

#include <optional>

/// What a finished product was made of.
struct ProductSource
{
    ProcessOptions options;
    QString dem;   ///< path of the DEM; the map has no relief where it cannot be opened
    int band = 1;  ///< of the DEM, counted from 1
    QString title; ///< of the process
};

/// A finished product as layers of a map, read in slices for the part that is seen, at the resolution of the
/// screen. The cells of the map are those of a raster product, those of the DEM for lines, and a division of
/// the extent for lines without a DEM. North is above and west at the left.
class ProductReading
{
public:
    /// Opens the product. source: empty where nothing is known of it; the product is then shown by itself.
    ProductReading(const QString &file, const std::optional<ProductSource> &source);

    bool isOpen() const { return m_raster.isOpen() || m_lines.isOpen(); }
    bool isVector() const { return m_lines.isOpen(); }

    /// Columns and rows of the map.
    QSize size() const { return m_size; }
    QPointF toGround(const QPointF &cell) const;
    /// As MapGrid has them; a cell of lines without a DEM has no length.
    QSizeF cellMetres(const QPointF &cell) const;
    bool isScaleKnown() const { return m_grid.isScaleKnown(); }
    /// The shorter side of a cell, in units of the coordinates.
    double cellSize() const;

    /// Begins to read the visible cells for a picture of `pixels`. lineWidth: of lines, in pixels.
    void begin(const QRectF &view, const QSize &pixels, double lineWidth);

    /// Reads for the milliseconds. Returns whether anything is left to read.
    bool advance(int milliseconds);

    /// Percentage of what has been read or drawn.
    int percent() const;

    /// Adds the layers of the part that was begun, as far as they are read, to a map.
    void addTo(MapPicture &map) const;

    /// The product's value in a cell of the map, read from the file; NaN without data, outside, and for a
    /// product whose values are not numbers.
    double value(const QPointF &cell) const;

    const ProductLook &look() const { return m_look; }
    /// For the legend: the part that was read last. The title and the options are those of the source.
    LegendFacts legendFacts() const;

private:
    void readStrip();
    QRect demPart(const QRect &part) const;

    std::optional<ProductSource> m_source;
    ProductLook m_look;
    RasterPicture m_raster;
    VectorPicture m_lines;
    RasterPicture m_dem;
    MapGrid m_demGrid;
    MapGrid m_grid;  ///< of the product, or of the DEM under lines
    QRectF m_extent; ///< of lines without a DEM, in their coordinates
    QSize m_size;

    QRect m_part; ///< cells of the map that are being read
    QSize m_pixels;
    int m_nextRow = 0;               ///< of the picture
    QImage m_colors;                 ///< of a product whose values are colours
    ElevationGrid m_values;          ///< of a product whose values are numbers
    ElevationGrid m_heights;         ///< of the DEM; empty: there is no relief
    QImage m_drawn;                  ///< the picture that m_lines draws into
    bool m_isDrawing = false;        ///< lines are being drawn
    std::optional<ValueRamp> m_ramp; ///< of the whole product, so that its colours stay when the view moves
};
