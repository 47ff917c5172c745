#pragma once

#include "vectordraw/featurereader.h"
#include "vectordraw/painter.h"

#include <string>
#include <unordered_map>

class OGRStyleTable;

namespace vectordraw
{

/// How features are drawn that have no style of their own.
struct DefaultStyles
{
    std::string points = "SYMBOL(id:\"ogr-sym-3\",c:#C8553D,o:#FFFFFF,s:8px)";
    std::string lines = "PEN(c:#37434F,w:1px)";
    std::string areas = "BRUSH(fc:#7FA8C880);PEN(c:#37434F,w:1px)";
};

/// Draws a layer's features into a picture, some at a time, so that whoever draws can do something else in
/// between.
class FeatureLayer
{
public:
    /// Layer and painter outlive the drawing. styles: the data source's styles by name, for features that refer
    /// to one; null where it has none.
    FeatureLayer(OGRLayer &layer, const View &view, Painter &painter, const DefaultStyles &defaults = {},
                 OGRStyleTable *styles = nullptr);

    /// Why nothing can be drawn, in GDAL's words; empty when it can.
    const std::string &error() const { return m_reader.error(); }

    /// Draws the next features, so many at most; false when there are no more.
    bool drawNext(int count);

    /// Features that reach into the picture, or near it.
    long long drawn() const { return m_drawn; }
    /// Features that could not be drawn: without a geometry, or with one that does not lie in the picture's
    /// CRS.
    long long skipped() const { return m_skipped; }
    /// Features that were read, and how many there are; -1 where the layer does not know at once.
    long long count() const { return m_reader.count(); }
    long long total() const { return m_reader.total(); }

private:
    const Style &styleOf(OGRFeature &feature);
    const Style &readStyle(const std::string &text, OGRFeature &feature, int depth);
    const Style &defaultStyle() const;
    void draw(const Tool &tool, OGRFeature &feature);
    void drawPen(const Pen &pen);
    void drawBrush(const Brush &brush);
    void drawSymbol(const Symbol &symbol);
    void drawText(const LabelText &label, OGRFeature &feature);

    FeatureReader m_reader;
    OGRLayer &m_layer;
    Painter &m_painter;
    Style m_pointStyle; ///< the defaults
    Style m_lineStyle;
    Style m_areaStyle;
    OGRStyleTable *m_styles;
    std::unordered_map<std::string, Style> m_read; ///< styles by their text
    Style m_longStyle;                             ///< the last one whose text is too long to be kept
    PixelGeometry m_geometry;
    long long m_drawn = 0;
    long long m_skipped = 0;
};

/// Paints the areas of a layer's features into an 8-bit mask in a raster's grid: 255 inside, 0 outside, the
/// covered part of a cell on their borders. Lines and points cover nothing.
class FeatureMask
{
public:
    /// The layer outlives the mask. view: the raster's grid.
    FeatureMask(OGRLayer &layer, const View &view);

    /// Why nothing can be painted, in GDAL's or cairo's words; empty when it can.
    std::string error() const { return m_reader.error().empty() ? m_surface.error() : m_reader.error(); }

    /// Adds the areas of the next features, so many at most; false when there are no more.
    bool addNext(int count);

    /// Of the cell in that column and row, from the upper left corner; 0 outside of the raster.
    std::uint8_t coverage(int column, int row) const;

    /// Rows from the top; bytesPerRow() apart.
    const std::uint8_t *pixels();
    int bytesPerRow() const { return m_surface.bytesPerRow(); }

private:
    Surface m_surface;
    Painter m_painter;
    FeatureReader m_reader;
    PixelGeometry m_geometry;
};

} // namespace vectordraw
