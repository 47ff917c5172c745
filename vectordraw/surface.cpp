#include "vectordraw/surface.h"

#include <algorithm>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

namespace vectordraw
{

void Surface::Release::operator()(_cairo *context) const
{
    cairo_destroy(context);
}

void Surface::Release::operator()(_cairo_surface *surface) const
{
    cairo_surface_destroy(surface);
}

Surface::Surface(_cairo_surface *surface, int width, int height)
    : m_surface(surface)
    , m_context(cairo_create(surface))
    , m_width(width)
    , m_height(height)
{ }

Surface Surface::image(int width, int height)
{
    return {cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height), width, height};
}

Surface Surface::bits(int width, int height)
{
    return {cairo_image_surface_create(CAIRO_FORMAT_A1, width, height), width, height};
}

Surface Surface::onPixels(std::uint8_t *pixels, int width, int height, int bytesPerRow)
{
    return {cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_ARGB32, width, height, bytesPerRow), width,
            height};
}

Surface Surface::svg(const std::string &path, int width, int height)
{
    cairo_surface_t *surface = cairo_svg_surface_create(path.c_str(), width, height);
    cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
    return {surface, width, height};
}

Surface Surface::pdf(const std::string &path, int width, int height, double dotsPerInch)
{
    constexpr double pointsPerInch = 72.0;
    const double scale = pointsPerInch / dotsPerInch;
    Surface surface(cairo_pdf_surface_create(path.c_str(), width * scale, height * scale), width, height);
    cairo_scale(surface.context(), scale, scale);
    return surface;
}

const std::uint8_t *Surface::pixels() const
{
    return cairo_surface_get_type(m_surface.get()) == CAIRO_SURFACE_TYPE_IMAGE
        ? cairo_image_surface_get_data(m_surface.get())
        : nullptr;
}

int Surface::bytesPerRow() const
{
    return pixels() ? cairo_image_surface_get_stride(m_surface.get()) : 0;
}

void Surface::flush()
{
    cairo_surface_flush(m_surface.get());
}

bool Surface::writePng(const std::string &path)
{
    flush();
    return cairo_surface_write_to_png(m_surface.get(), path.c_str()) == CAIRO_STATUS_SUCCESS;
}

std::string Surface::error() const
{
    cairo_status_t status = cairo_status(m_context.get());
    if (status == CAIRO_STATUS_SUCCESS)
        status = cairo_surface_status(m_surface.get());
    return status == CAIRO_STATUS_SUCCESS ? std::string() : cairo_status_to_string(status);
}

bool Surface::reserve(const Point &middle, double radius)
{
    const bool isFree = std::none_of(m_reserved.begin(), m_reserved.end(), [&](const Circle &other) {
        return distance(other.middle, middle) < other.radius + radius;
    });
    if (isFree)
        m_reserved.push_back({middle, radius});
    return isFree;
}

std::string Surface::finish()
{
    std::string before = error();
    cairo_surface_finish(m_surface.get());
    const cairo_status_t status = cairo_surface_status(m_surface.get());
    return before.empty() && status != CAIRO_STATUS_SUCCESS ? cairo_status_to_string(status) : before;
}

void useColor(_cairo *context, const Color &color)
{
    cairo_set_source_rgba(context, color.red / 255.0, color.green / 255.0, color.blue / 255.0,
                          color.alpha / 255.0);
}

} // namespace vectordraw
