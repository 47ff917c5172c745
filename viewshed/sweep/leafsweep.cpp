#include "viewshed/sweep/leafsweep.h"

#include <algorithm>

namespace viewshed
{

namespace
{

/// The direction at which leaf number `leaf` of a sector begins and the leaf before it ends. All leaves
/// together cover m = -1 to 1. Their ends are shifted by 2^-40, so that no cell lies exactly at an end: the
/// direction of a cell is a quotient of lattice numbers, which equals a multiple of 1/32 or differs from it by
/// 2^-35 at least. Every cell is thus inside one leaf of a sector, and a cell on a diagonal is inside both
/// adjoining sectors.
double leafEnd(int leaf, int leaves)
{
    constexpr double shift = 0x1p-40;
    return leaf == 0 ? -1.0 - shift : -1.0 + 2.0 * leaf / leaves + shift;
}

Places columnsOf(const Window &window)
{
    return {.first = window.left, .last = window.left + window.width - 1};
}

Places rowsOf(const Window &window)
{
    return {.first = window.top, .last = window.top + window.height - 1};
}

} // namespace

template <class Line>
LeafSweep<Line>::LeafSweep(const Scene &scene, const Frame &frame, int leaf, Line &skyline, Panel &panel)
    : m_scene(scene)
    , m_frame(frame)
    , m_from(leafEnd(leaf, scene.leavesPerSector))
    , m_to(leafEnd(leaf + 1, scene.leavesPerSector))
    , m_eyeLine(frame.linesAreColumns ? scene.sight.eye.column() : scene.sight.eye.row())
    , m_eyePlace(frame.linesAreColumns ? scene.sight.eye.row() : scene.sight.eye.column())
    , m_lines(frame.linesAreColumns ? columnsOf(scene.window) : rowsOf(scene.window))
    , m_places(frame.linesAreColumns ? rowsOf(scene.window) : columnsOf(scene.window))
    , m_skyline(skyline)
    , m_panel(panel)
{
    m_skyline.restart(m_from, m_to);
}

template <class Line> void LeafSweep<Line>::run(RingSink &sink)
{
    const bool grows = m_frame.awayStep > 0;
    const double next = grows ? std::floor(m_eyeLine) + 1.0 : std::ceil(m_eyeLine) - 1.0;
    int line =
        static_cast<int>(grows ? std::max(next, double(m_lines.first)) : std::min(next, double(m_lines.last)));
    constexpr int block = BlockMaxima::side;
    while (line >= m_lines.first && line <= m_lines.last) {
        const int first = line / block * block;
        const int last = grows ? std::min(first + block - 1, m_lines.last) : std::max(first, m_lines.first);
        sweepBlock(line, last, sink);
        line = last + m_frame.awayStep;
    }
}

/// The places of the cells between the leaf's ends at the distance `ahead`, and one more at either end. They
/// may lie outside the terrain.
template <class Line> Places LeafSweep<Line>::placesAround(double ahead) const
{
    Places places{.first = static_cast<int>(std::floor(m_from * ahead + m_eyePlace)),
                  .last = static_cast<int>(std::ceil(m_to * ahead + m_eyePlace))};
    // The sums are rounded, so a cell just inside the leaf's end may have been found to be outside.
    if ((places.first - m_eyePlace) / ahead > m_from)
        --places.first;
    if ((places.last - m_eyePlace) / ahead < m_to)
        ++places.last;
    return places;
}

/// The places of the window at the distance `ahead` that the sight may reach, and one or two more at either
/// end. No line of sight to a cell within reach crosses the line elsewhere. Empty if the line is beyond reach.
template <class Line> Places LeafSweep<Line>::reachedPlaces(double ahead) const
{
    const Places all{.first = m_places.first - 1, .last = m_places.last + 1};
    const double reach = m_scene.sight.reach;
    if (std::isinf(reach))
        return all;
    // The cells within reach form an ellipse; the line cuts it at the two sides that solve the quadratic
    // equation along · side² + 2 · mixed · side + across = reach².
    const GroundForm &ground = m_scene.sight.ground;
    const double step = ahead * m_frame.awayStep;
    const double along = m_frame.linesAreColumns ? ground.yy : ground.xx;
    const double mixed = ground.xy * step;
    const double across = (m_frame.linesAreColumns ? ground.xx : ground.yy) * step * step;
    if (!(along > 0.0))
        return all;
    const double square = mixed * mixed - along * (across - reach * reach);
    constexpr double rounding = 1e-12;
    if (square < -rounding * along * (across + reach * reach))
        return {.first = 0, .last = -1};
    const double root = std::sqrt(std::max(square, 0.0));
    return {.first = std::max(all.first, static_cast<int>(std::floor(m_eyePlace - (mixed + root) / along)) - 1),
            .last = std::min(all.last, static_cast<int>(std::ceil(m_eyePlace + (root - mixed) / along)) + 1)};
}

/// Sweeps the lines of one row (or column) of blocks. If their cells are all hidden, the horizon is not raised,
/// and the lines are skipped unless the sink wants them.
template <class Line> void LeafSweep<Line>::sweepBlock(int nearestLine, int farthestLine, RingSink &sink)
{
    const Places near = placesAround(ahead(nearestLine));
    const Places far = placesAround(ahead(farthestLine));
    const Places places{.first = std::max(std::min(near.first, far.first), m_places.first - 1),
                        .last = std::min(std::max(near.last, far.last), m_places.last + 1)};
    if (places.first > m_places.last || places.last < m_places.first)
        return;
    const double greatest = greatestElevation(nearestLine, places);
    m_nothingAboveEye =
        m_nothingAboveEye && greatest <= m_scene.sight.eye.z && m_scene.sight.curvatureDrop >= 0.0;
    const bool raises = !isHidden(nearestLine, farthestLine, greatest);
    if (!raises && !sink.wantsHiddenRings())
        return;
    m_panel.load(
        m_scene.terrain, m_scene.sight, m_frame,
        {.first = std::min(nearestLine, farthestLine) - 1, .last = std::max(nearestLine, farthestLine) + 1},
        places);
    if (m_scene.endsAtReach && !std::isinf(m_scene.sight.reach))
        m_panel.dropBeyondReach(m_scene.sight, m_frame);
    sink.beginBlock(places);
    for (int line = nearestLine; line != farthestLine + m_frame.awayStep; line += m_frame.awayStep)
        sweepLine(line, raises, sink);
    sink.endBlock(nearestLine);
}

/// The greatest elevation in and around the blocks that hold the places of the line.
template <class Line> double LeafSweep<Line>::greatestElevation(int line, Places places) const
{
    constexpr int block = BlockMaxima::side;
    const int first = std::max(places.first, m_places.first) / block;
    const int last = std::min(places.last, m_places.last) / block;
    const int lines = line / block;
    return m_frame.linesAreColumns ? m_scene.maxima.greatest(lines, lines, first, last)
                                   : m_scene.maxima.greatest(first, last, lines, lines);
}

/// Whether a cell with the greatest elevation would be hidden anywhere between the two lines. It is compared
/// where it appears highest: at the nearer end if it is above the eye, at the farther end if it is below.
template <class Line> bool LeafSweep<Line>::isHidden(int nearestLine, int farthestLine, double greatest)
{
    const Sight &sight = m_scene.sight;
    const double nearestEdge = ahead(nearestLine) - 1.0; // edges lead back to the line before the nearest one
    if (sight.curvatureDrop < 0.0 || nearestEdge <= 0.0)
        return false;
    const double top = greatest - sight.eye.z + std::max(sight.targetHeight, 0.0)
        - sight.curvatureDrop * m_scene.shortestStepSquared * nearestEdge * nearestEdge;
    return top / (top > 0.0 ? nearestEdge : ahead(farthestLine)) < m_skyline.lowest() - m_scene.errorPerCell;
}

template <class Line> void LeafSweep<Line>::sweepLine(int line, bool raises, RingSink &sink)
{
    Ring ring;
    ring.ahead = ahead(line);
    const Places leaf = placesAround(ring.ahead);
    const Places reached = reachedPlaces(ring.ahead);
    const Places vertices{.first = std::max(leaf.first, reached.first),
                          .last = std::min(leaf.last, reached.last)};
    ring.intervals = vertices.last - vertices.first;
    if (ring.intervals < 1)
        return;
    ring.firstSide = vertices.first - m_eyePlace;
    ring.heights = m_panel.line(line, vertices.first);
    ring.nearer = m_panel.line(line - m_frame.awayStep, vertices.first);
    ring.farther = m_panel.line(line + m_frame.awayStep, vertices.first);
    const double *limits = m_skyline.limits(ring);
    sink.ring({.line = line,
               .firstPlace = vertices.first,
               .ring = ring,
               .limits = limits,
               .nothingAboveEye = m_nothingAboveEye});
    if (raises)
        m_skyline.raise(ring);
}

template class LeafSweep<Skyline>;
template class LeafSweep<TracedSkyline>;

} // namespace viewshed
