#pragma once

#include "vectordraw/geometry.h"
#include "vectordraw/stylestring.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct _cairo;         // NOLINT(bugprone-reserved-identifier): the library names it so
struct _cairo_surface; // NOLINT(bugprone-reserved-identifier): likewise

namespace vectordraw
{

/// Something to draw on, measured in pixels from its upper left corner. Vector surfaces are drawn on by the
/// same calls; their file is whole after finish().
class Surface
{
public:
    /// Transparent at first; premultiplied ARGB of 32 bits in the machine's byte order.
    static Surface image(int width, int height);
    /// A bit a pixel, 0 at first: eight pixels of a row are a byte.
    static Surface bits(int width, int height);
    /// Draws into somebody's memory of that layout (as image()), which outlives the surface.
    static Surface onPixels(std::uint8_t *pixels, int width, int height, int bytesPerRow);
    /// Files; a pixel is 1/dotsPerInch inch.
    static Surface svg(const std::string &path, int width, int height);
    static Surface pdf(const std::string &path, int width, int height, double dotsPerInch);

    /// Reserves a circle of the picture, in pixels, for a text; false where it meets one that is reserved.
    bool reserve(const Point &middle, double radius);

    int width() const { return m_width; }
    int height() const { return m_height; }
    _cairo *context() const { return m_context.get(); }

    /// Rows of an image or of bits, from the top; null for a file. What was drawn is there after flush().
    const std::uint8_t *pixels() const;
    int bytesPerRow() const;
    void flush();

    /// Writes an image as PNG; false when it cannot.
    bool writePng(const std::string &path);

    /// What went wrong since it was made, in cairo's words (a size beyond its limit of 32767, say); empty when
    /// nothing did. Nothing more is drawn then.
    std::string error() const;

    /// Ends a file. Returns what went wrong on any surface since it was made, in cairo's words; empty
    /// otherwise.
    std::string finish();

private:
    Surface(_cairo_surface *surface, int width, int height);

    struct Circle
    {
        Point middle;
        double radius = 0.0;
    };

    struct Release
    {
        void operator()(_cairo *context) const;
        void operator()(_cairo_surface *surface) const;
    };

    std::unique_ptr<_cairo_surface, Release> m_surface;
    std::unique_ptr<_cairo, Release> m_context;
    int m_width;
    int m_height;
    std::vector<Circle> m_reserved; ///< by texts
};

/// Makes the colour, with its alpha, what the drawing context fills and strokes with.
void useColor(_cairo *context, const Color &color);

} // namespace vectordraw
