#include "vectordraw/featuremask.h"

#include "vectordraw/surface.h"

#include <cairo.h>

#include <bit>
#include <new>

namespace vectordraw
{

namespace
{

constexpr int samples = 8; // of a cell, in each direction

/// First cell of a range that reaches from that place, within the grid.
int cellAt(double place, int cells)
{
    return static_cast<int>(std::clamp(std::floor(place), 0.0, static_cast<double>(cells)));
}

} // namespace

FeatureMask::FeatureMask(OGRLayer &layer, const View &view)
    : m_reader(layer, view)
    , m_width(std::max(0, view.width))
    , m_height(std::max(0, view.height))
{
    try {
        m_cells.resize(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height));
    } catch (const std::bad_alloc &) {
        m_error = "the mask is too large for the memory";
    }
    if (m_error.empty() && m_cells.empty())
        m_error = "the mask has no cells";
}

bool FeatureMask::addNext(long long vertices)
{
    if (!error().empty())
        return false;
    constexpr long long workOfFeature = 20; // in vertices
    long long work = 0;
    do {
        if (!m_reader.next())
            return false;
        work += workOfFeature;
        if (!m_reader.geometry(m_geometry))
            continue;
        work += static_cast<long long>(m_geometry.points.size());
        for (std::size_t at = 0; at < m_geometry.parts.size(); ++at) {
            if (m_geometry.parts[at].kind == PixelGeometry::FirstRing)
                addArea(m_geometry.areaAt(at));
        }
    } while (work < vertices);
    return true;
}

void FeatureMask::addArea(const std::vector<std::span<const Point>> &rings)
{
    if (rings.front().empty())
        return;
    Rect bounds{rings[0][0].x, rings[0][0].y, rings[0][0].x, rings[0][0].y};
    for (const auto &ring : rings) {
        for (const Point &point : ring)
            bounds = {std::min(bounds.left, point.x), std::min(bounds.top, point.y),
                      std::max(bounds.right, point.x), std::max(bounds.bottom, point.y)};
    }
    const int right = cellAt(bounds.right + 1.0, m_width);
    const int bottom = cellAt(bounds.bottom + 1.0, m_height);
    // Blocks keep within cairo's limit of 32767 samples a side, and within some megabytes.
    constexpr int widest = 32767 / samples;
    constexpr int highest = 512;
    for (int top = cellAt(bounds.top, m_height); top < bottom; top += highest) {
        for (int left = cellAt(bounds.left, m_width); left < right; left += widest)
            addBlock(rings, {left, top, std::min(widest, right - left), std::min(highest, bottom - top)});
    }
}

void FeatureMask::addBlock(const std::vector<std::span<const Point>> &rings, const Block &block)
{
    Surface surface = Surface::bits(block.width * samples, block.height * samples);
    cairo_t *cairo = surface.context();
    cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE);
    cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_scale(cairo, samples, samples);
    cairo_translate(cairo, -block.left, -block.top);
    const Rect rect{static_cast<double>(block.left), static_cast<double>(block.top),
                    static_cast<double>(block.left + block.width),
                    static_cast<double>(block.top + block.height)};
    for (const auto &ring : rings) {
        m_ring.assign(ring.begin(), ring.end());
        clipRing(m_ring, rect.grown(1.0), m_scratch);
        cairo_new_sub_path(cairo); // else a line would come from the ring before
        for (const Point &point : m_ring)
            cairo_line_to(cairo, point.x, point.y);
        cairo_close_path(cairo);
    }
    cairo_fill(cairo);
    surface.flush();
    if (!surface.error().empty()) {
        m_error = surface.error();
        return;
    }
    const auto stride = static_cast<std::size_t>(surface.bytesPerRow());
    for (int row = 0; row < block.height; ++row) {
        const std::uint8_t *bits = surface.pixels() + static_cast<std::size_t>(row) * samples * stride;
        const std::size_t first = static_cast<std::size_t>(block.top + row) * static_cast<std::size_t>(m_width)
            + static_cast<std::size_t>(block.left);
        for (std::size_t column = 0; column < static_cast<std::size_t>(block.width); ++column) {
            std::uint64_t inside = 0;
            for (std::size_t sample = 0; sample < samples; ++sample)
                inside = inside << 8U | bits[sample * stride + column]; // eight samples side by side are a byte
            std::uint8_t &cell = m_cells[first + column];
            constexpr std::uint8_t full = 255;
            if (inside == 0 || cell == full)
                continue;
            if (~inside != 0)
                inside = m_samples[first + column] |= inside;
            cell = static_cast<std::uint8_t>(std::popcount(inside) * full / (samples * samples));
            if (cell == full)
                m_samples.erase(first + column);
        }
    }
}

std::uint8_t FeatureMask::coverage(int column, int row) const
{
    if (m_cells.empty() || column < 0 || row < 0 || column >= m_width || row >= m_height)
        return 0;
    return m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_width)
                   + static_cast<std::size_t>(column)];
}

} // namespace vectordraw
