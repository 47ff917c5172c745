#include "viewshed/terrain.h"

#include <algorithm>
#include <utility>

namespace viewshed
{

Terrain::Terrain(int width, int height, Storage storage)
    : m_width(width)
    , m_height(height)
    , m_cells(std::in_place_type<Floats>, 0)
{
    const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (storage == Storage::Float)
        m_cells.emplace<Floats>(cells);
    else
        m_cells.emplace<Doubles>(cells);
}

Terrain::Terrain(int width, int height, const std::vector<double> &heights)
    : Terrain(width, height, Storage::Double)
{
    std::copy(heights.begin(), heights.end(), std::get<Doubles>(m_cells).data());
}

void Terrain::findVoids(int row, std::uint64_t *words) const
{
    withCells([&](const auto *cells) {
        const auto *line = cells + index(0, row);
        for (int column = 0; column < m_width; ++column)
            words[column / 64] |= std::uint64_t(std::isnan(line[column]) ? 1 : 0) << (column % 64);
    });
}

} // namespace viewshed
