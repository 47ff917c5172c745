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
                 OGRStyleTable *styles = nullptr, FeatureReader::Order order = FeatureReader::AsStored);

    /// Why nothing can be drawn, in GDAL's words; empty when it can.
    const std::string &error() const { return m_reader.error(); }

    /// Draws at least one feature, and further features until their vertices add up to `vertices`. Returns
    /// false when no feature is left. A feature, a symbol and a label count as the number of vertices that
    /// could be drawn in the same time.
    bool drawNext(long long vertices);

    /// Features that reach into the picture, or near it.
    long long drawn() const { return m_drawn; }
    /// Features that could not be drawn: without a geometry, or with one that does not lie in the picture's
    /// CRS.
    long long skipped() const { return m_skipped; }
    /// Features that were read, and how many there are; -1 where the layer does not know at once.
    long long count() const { return m_reader.count(); }
    long long total() const { return m_reader.total(); }

private:
    void drawFeature();
    const Style &styleOf(OGRFeature &feature);
    const Style &readStyle(const std::string &text, OGRFeature &feature, int depth);
    bool drawsNothing(const Style &style) const;
    const Style &defaultStyle() const;
    void drawPen(const Pen &pen, bool dots);
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
    Style m_ownStyle; ///< the last one that is not kept: of a long text, or with a feature's values in it
    PixelGeometry m_geometry;
    long long m_work = 0; ///< done by drawNext(), in vertices
    long long m_drawn = 0;
    long long m_skipped = 0;
};

} // namespace vectordraw
