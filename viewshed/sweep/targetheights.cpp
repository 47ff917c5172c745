#include "viewshed/sweep/targetheights.h"

#include "viewshed/lineofsight.h"

#include <algorithm>

namespace viewshed
{

TargetHeights::TargetHeights(const Scene &scene, const Frame &frame, const HeightsFound &found,
                             HeightBuffers &buffers)
    : m_scene(scene)
    , m_frame(frame)
    , m_found(found)
    , m_buffers(buffers)
{ }

void TargetHeights::beginBlock(Places places)
{
    if (!m_frame.linesAreColumns)
        return;
    m_firstPlace = places.first;
    const auto count = static_cast<std::size_t>(places.last - places.first + 1);
    if (m_buffers.columns.size() < count * BlockMaxima::side)
        m_buffers.columns.resize(count * BlockMaxima::side);
    m_buffers.columnsOfPlaces.assign(count, {.first = 0, .last = -1});
}

/// The vertices of the ring that are cells of the scene's window and belong to this leaf alone.
Places TargetHeights::ownVertices(const SweptRing &swept) const
{
    const Window &window = m_scene.window;
    const Places places = m_frame.linesAreColumns ? Places{window.top, window.top + window.height - 1}
                                                  : Places{window.left, window.left + window.width - 1};
    Places own{.first = std::max(places.first - swept.firstPlace, 0),
               .last = std::min(places.last - swept.firstPlace, swept.ring.intervals)};
    // The cells on a diagonal belong to two sectors.
    const auto isOthers = [&](int vertex) {
        return std::isinf(swept.limits[vertex])
            || (!m_frame.linesAreColumns && std::abs(swept.ring.side(vertex)) == swept.ring.ahead);
    };
    while (own.first <= own.last && isOthers(own.first))
        ++own.first;
    while (own.first <= own.last && isOthers(own.last))
        --own.last;
    return own;
}

void TargetHeights::ring(const SweptRing &swept)
{
    const Places own = ownVertices(swept);
    if (own.last < own.first)
        return;
    const int count = own.last + 1 - own.first;
    if (m_buffers.ring.size() < static_cast<std::size_t>(count))
        m_buffers.ring.resize(static_cast<std::size_t>(count));
    double *const heights = m_buffers.ring.data();
    const double *const limits = swept.limits + own.first;
    const double *const ground = swept.ring.heights + own.first;
    const double error = swept.ring.ahead * m_scene.errorPerCell;
    int doubtful = m_scene.sight.hasBounds() || m_scene.sight.field.hasSlopes() ? 1 : 0;
    for (int cell = 0; cell < count; ++cell) {
        const double height = limits[cell] - ground[cell];
        heights[cell] = height < 0.0 ? 0.0 : height;
        doubtful |= std::abs(height) <= error ? 1 : 0;
    }
    for (int cell = 0; doubtful != 0 && cell < count; ++cell) {
        if (!std::isnan(heights[cell]))
            heights[cell] = heightOf(swept, own.first + cell, limits[cell]);
    }
    if (m_frame.linesAreColumns)
        collectColumn(swept.line, swept.firstPlace + own.first, count);
    else
        m_found({.column = swept.firstPlace + own.first, .row = swept.line, .count = count}, heights);
}

/// Collects the heights of one column. They are reported once a block and not once a line, because neighbours
/// in a row are neighbours in memory.
void TargetHeights::collectColumn(int line, int firstPlace, int count)
{
    constexpr int side = BlockMaxima::side;
    const int inBlock = line % side;
    const std::ptrdiff_t first = firstPlace - m_firstPlace;
    double *to = m_buffers.columns.data() + first * side + inBlock;
    for (int cell = 0; cell < count; ++cell, to += side)
        *to = m_buffers.ring[static_cast<std::size_t>(cell)];
    Places *columns = m_buffers.columnsOfPlaces.data() + first;
    for (int cell = 0; cell < count; ++cell, ++columns)
        *columns = columns->last < columns->first
            ? Places{inBlock, inBlock}
            : Places{std::min(columns->first, inBlock), std::max(columns->last, inBlock)};
}

void TargetHeights::endBlock(int nearestLine)
{
    if (!m_frame.linesAreColumns)
        return;
    constexpr int side = BlockMaxima::side;
    const int firstColumn = nearestLine / side * side;
    for (std::size_t place = 0; place < m_buffers.columnsOfPlaces.size(); ++place) {
        const Places columns = m_buffers.columnsOfPlaces[place];
        if (columns.first <= columns.last)
            m_found({.column = firstColumn + columns.first,
                     .row = m_firstPlace + static_cast<int>(place),
                     .count = columns.last + 1 - columns.first},
                    m_buffers.columns.data() + place * side + columns.first);
    }
}

/// The height at one vertex, where it is within the rounding of the horizon or the sight has bounds.
double TargetHeights::heightOf(const SweptRing &swept, int vertex, double limit) const
{
    const Sight &sight = m_scene.sight;
    const int column = m_frame.column(swept.line, swept.firstPlace + vertex);
    const int row = m_frame.row(swept.line, swept.firstPlace + vertex);
    if (!sight.reaches(column, row))
        return neverSeen;
    const double ground = swept.ring.heights[vertex];
    double height = std::max(limit - ground, 0.0);
    if (std::abs(limit - ground) <= swept.ring.ahead * m_scene.errorPerCell) {
        const bool isClear = swept.nothingAboveEye && ground >= 0.0;
        height = isClear ? 0.0 : hiddenHeight(m_scene.terrain, sight, column, row);
    }
    return heightWithinSlopes(height, ground, sight, column, row);
}

} // namespace viewshed
