#include "viewshed/targetheights.h"

#include "viewshed/lineofsight.h"

#include <algorithm>

namespace viewshed
{

TargetHeights::TargetHeights(const Scene &scene, const Frame &frame, const HeightsFound &found,
                             std::vector<double> &buffer)
    : m_scene(scene)
    , m_frame(frame)
    , m_found(found)
    , m_heights(buffer)
{ }

void TargetHeights::ring(const SweptRing &swept)
{
    const Places places = m_frame.linesAreColumns
        ? Places{m_scene.window.top, m_scene.window.top + m_scene.window.height - 1}
        : Places{m_scene.window.left, m_scene.window.left + m_scene.window.width - 1};
    const int first = std::max(places.first - swept.firstPlace, 0);
    const int end = std::min(places.last - swept.firstPlace, swept.ring.intervals) + 1;
    if (end <= first)
        return;
    const auto count = static_cast<std::size_t>(end - first);
    if (m_heights.size() < count)
        m_heights.resize(count);
    const double error = swept.ring.ahead * m_scene.errorPerCell;
    const Sight &sight = m_scene.sight;
    const bool plain = !sight.hasBounds() && !sight.field.hasSlopes();
    bool doubtful = !plain;
    for (int vertex = first; vertex < end; ++vertex) {
        // The limit of a vertex outside the leaf is infinite; minus itself it is NaN, as without data.
        const double limit = swept.limits[vertex];
        const double height = limit - swept.ring.heights[vertex] + 0.0 * limit;
        m_heights[static_cast<std::size_t>(vertex - first)] = height < 0.0 ? 0.0 : height;
        doubtful |= std::abs(height) <= error;
    }
    for (int vertex = first; doubtful && vertex < end; ++vertex) {
        double &height = m_heights[static_cast<std::size_t>(vertex - first)];
        if (!std::isnan(height))
            height = heightOf(swept, vertex, swept.limits[vertex]);
    }
    m_found({.column = m_frame.column(swept.line, swept.firstPlace + first),
             .row = m_frame.row(swept.line, swept.firstPlace + first),
             .columnStep = m_frame.linesAreColumns ? 0 : 1,
             .rowStep = m_frame.linesAreColumns ? 1 : 0,
             .count = end - first},
            m_heights.data());
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
