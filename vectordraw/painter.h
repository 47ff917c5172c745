#pragma once

#include "vectordraw/geometry.h"
#include "vectordraw/hatch.h"
#include "vectordraw/stylestring.h"
#include "vectordraw/surface.h"

#include <span>

namespace vectordraw
{

/// Draws lines, areas and symbols on a surface with the tools of a style. Coordinates are the surface's pixels.
/// What lies outside the surface costs next to nothing.
class Painter
{
public:
    /// The surface outlives the painter.
    Painter(Surface &surface, const Resolution &resolution);

    ~Painter();
    Painter(const Painter &) = delete;
    Painter &operator=(const Painter &) = delete;

    const Resolution &resolution() const { return m_resolution; }
    Surface &surface() { return m_surface; }

    void fillBackground(const Color &color);

    /// A pen narrower than a pixel draws a line of a pixel's width. The line is on the surface after
    /// finishLines(), at the latest: lines of one pen are drawn together.
    void drawLine(std::span<const Point> line, const Pen &pen);
    void finishLines();

    /// A dot of the pen's width, at least three pixels, so that a single point can be seen.
    void drawDot(const Point &point, const Pen &pen);

    /// An area of one or more rings: addRing() for each, in any direction, holes included; then its interior
    /// and its outlines, as often as the style asks. The rings are forgotten at beginArea().
    void beginArea();
    void addRing(std::span<const Point> ring);
    void fillArea(const Brush &brush);
    void outlineArea(const Pen &pen);

    /// turned: of the symbol besides its own angle, in radians, clockwise.
    void drawSymbol(const Point &point, const Symbol &symbol, double turned = 0.0);

    /// Symbols at their distances along the line, turned with it; one, which is not turned, at the symbol's
    /// initial offset where it has no distance. Returns how many were drawn or lay close outside of the
    /// picture.
    long long drawSymbolsAlong(const std::vector<Point> &line, const Symbol &symbol);

private:
    void usePen(const Pen &pen, double width);
    void useBrush(const Brush &brush);
    void stroke(std::span<const Point> line, const Rect &rect);
    void shapePath(const Symbol &symbol, double radius);

    Surface &m_surface;
    Resolution m_resolution;
    HatchPatterns m_hatches;
    Rect m_visible;
    std::vector<std::vector<Point>> m_rings; ///< of the area; room that is used again
    std::size_t m_ringCount = 0;
    std::vector<Point> m_clipped;
    std::vector<Point> m_scratch;
    std::vector<double> m_dashes; ///< of the pen in use, in pixels
    Pen m_pendingPen;             ///< the pen in use
    int m_pendingVertices = 0;    ///< of lines that are in the surface's path and not yet stroked
};

} // namespace vectordraw
