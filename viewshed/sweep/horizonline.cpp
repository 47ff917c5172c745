#include "viewshed/sweep/horizonline.h"

#include <algorithm>

namespace viewshed
{

namespace
{

constexpr double degrees = 180.0 / std::numbers::pi;

/// A step of one cell ahead in a sector, and `m` cells to the side.
struct Step
{
    double columns;
    double rows;
};

Step stepOf(const Frame &frame, double m)
{
    return frame.linesAreColumns ? Step{double(frame.awayStep), m} : Step{m, double(frame.awayStep)};
}

/// Joins the pieces of one edge that the end of a leaf has cut.
void appendPieces(std::vector<HorizonPiece> &pieces, const std::vector<HorizonPiece> &more)
{
    for (const HorizonPiece &piece : more) {
        HorizonPiece *const last = pieces.empty() ? nullptr : &pieces.back();
        if (last != nullptr && last->to == piece.from && last->a == piece.a && last->b == piece.b
            && last->place == piece.place)
            last->to = piece.to;
        else
            pieces.push_back(piece);
    }
}

} // namespace

HorizonLine::HorizonLine(const Sight &sight, double metresOfHeight)
    : m_sight(sight)
    , m_metresOfHeight(metresOfHeight)
{
    const GroundSteps &steps = sight.steps;
    for (std::size_t index = 0; index < m_sectors.size(); ++index) {
        Sector &sector = m_sectors[index];
        sector.frame = {.linesAreColumns = index < 2, .awayStep = index % 2 == 0 ? 1 : -1};
        const Step ahead = stepOf(sector.frame, 0.0);
        const Step aside = {stepOf(sector.frame, 1.0).columns - ahead.columns,
                            stepOf(sector.frame, 1.0).rows - ahead.rows};
        const double turn = steps.north(ahead.columns, ahead.rows) * steps.east(aside.columns, aside.rows)
            - steps.east(ahead.columns, ahead.rows) * steps.north(aside.columns, aside.rows);
        sector.clockwise = turn > 0.0;
    }
}

HorizonLine::Sector &HorizonLine::sectorOf(const Frame &frame)
{
    return m_sectors[(frame.linesAreColumns ? 0U : 2U) + (frame.awayStep > 0 ? 0U : 1U)];
}

void HorizonLine::add(const Frame &frame, int leaf, std::vector<HorizonPiece> pieces)
{
    sectorOf(frame).leaves[leaf] = std::move(pieces);
}

void HorizonLine::finish()
{
    std::vector<const Sector *> order;
    for (Sector &sector : m_sectors) {
        for (const auto &[leaf, pieces] : sector.leaves)
            appendPieces(sector.pieces, pieces);
        sector.leaves.clear();
        // Directions of cells end at ±1; a leaf ends a little farther.
        for (HorizonPiece &piece : sector.pieces) {
            piece.from = std::max(piece.from, -1.0);
            piece.to = std::min(piece.to, 1.0);
        }
        order.push_back(&sector);
    }
    const auto azimuth = [this](const Sector *sector) {
        const Step ahead = stepOf(sector->frame, 0.0);
        return m_sight.steps.azimuth(ahead.columns, ahead.rows);
    };
    std::sort(order.begin(), order.end(),
              [&](const Sector *one, const Sector *other) { return azimuth(one) < azimuth(other); });
    for (const Sector *sector : order)
        appendBreakpoints(*sector);
    if (m_breakpoints.empty())
        return;
    m_breakpoints.front().startsAnew = m_breakpoints.front().startsAnew || m_gapFollows;
    // One sector begins before north and ends behind it.
    const auto last = std::adjacent_find(
        m_breakpoints.begin(), m_breakpoints.end(),
        [](const Breakpoint &one, const Breakpoint &next) { return one.azimuth > next.azimuth; });
    if (last != m_breakpoints.end())
        std::rotate(m_breakpoints.begin(), last + 1, m_breakpoints.end());
}

/// The point of the piece's edge in the direction m.
HorizonPoint HorizonLine::pointOf(const Frame &frame, const HorizonPiece &piece, double m) const
{
    const double ahead = piece.place.sideways ? piece.place.distance / m : piece.place.distance;
    const Step step = stepOf(frame, m);
    const double columns = step.columns * ahead;
    const double rows = step.rows * ahead;
    const double above = (piece.a + piece.b * m) * ahead;
    const double square = m_sight.ground.squaredMetres(columns, rows);
    const double metres = std::sqrt(square);
    return {.azimuth = m_sight.steps.azimuth(step.columns, step.rows),
            .angle = std::atan2(above * m_metresOfHeight, metres) * degrees,
            .distance = metres,
            .column = m_sight.eye.column() + columns,
            .row = m_sight.eye.row() + rows,
            .z = above + m_sight.eye.z + m_sight.curvatureDrop * square};
}

void HorizonLine::appendBreakpoints(const Sector &sector)
{
    const std::size_t count = sector.pieces.size();
    double reached = sector.clockwise ? -1.0 : 1.0; // up to this direction the line has ground
    for (std::size_t index = 0; index < count; ++index) {
        const HorizonPiece &piece = sector.pieces[sector.clockwise ? index : count - 1 - index];
        const double begin = sector.clockwise ? piece.from : piece.to;
        const double end = sector.clockwise ? piece.to : piece.from;
        append(pointOf(sector.frame, piece, begin), begin != reached);
        if (begin != end)
            append(pointOf(sector.frame, piece, end), false);
        reached = end;
    }
    m_gapFollows = count == 0 || reached != (sector.clockwise ? 1.0 : -1.0);
}

/// Adds a point unless it is the last one.
void HorizonLine::append(const HorizonPoint &point, bool startsAnew)
{
    startsAnew = startsAnew || m_gapFollows;
    m_gapFollows = false;
    constexpr double sameCell = 1e-9;
    if (!startsAnew && !m_breakpoints.empty()) {
        const Breakpoint &last = m_breakpoints.back();
        if (std::abs(last.column - point.column) < sameCell && std::abs(last.row - point.row) < sameCell)
            return;
    }
    m_breakpoints.push_back({point, startsAnew});
}

std::optional<HorizonPoint> HorizonLine::at(double azimuth) const
{
    const double east = std::sin(azimuth / degrees);
    const double north = std::cos(azimuth / degrees);
    const GroundSteps &steps = m_sight.steps;
    const double determinant = steps.columnEast * steps.rowNorth - steps.rowEast * steps.columnNorth;
    const double columns = (east * steps.rowNorth - north * steps.rowEast) / determinant;
    const double rows = (north * steps.columnEast - east * steps.columnNorth) / determinant;
    const bool alongColumns = std::abs(columns) >= std::abs(rows);
    const double ahead = alongColumns ? columns : rows;
    const double m = (alongColumns ? rows : columns) / std::abs(ahead);
    const Sector &sector = m_sectors[(alongColumns ? 0U : 2U) + (ahead > 0.0 ? 0U : 1U)];

    auto piece = std::lower_bound(sector.pieces.begin(), sector.pieces.end(), m,
                                  [](const HorizonPiece &one, double direction) { return one.to < direction; });
    const HorizonPiece *highest = nullptr;
    for (; piece != sector.pieces.end() && piece->from <= m; ++piece) {
        if (highest == nullptr || piece->a + piece->b * m > highest->a + highest->b * m)
            highest = &*piece;
    }
    if (highest == nullptr)
        return {};
    HorizonPoint point = pointOf(sector.frame, *highest, m);
    point.azimuth = azimuth;
    return point;
}

} // namespace viewshed
