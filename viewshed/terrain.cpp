#include "viewshed/terrain.h"

#include <algorithm>

namespace viewshed
{

Terrain::Terrain(int width, int height, Storage storage)
    : m_width(width)
    , m_height(height)
{
    const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (storage == Storage::Float)
        m_cells = std::make_unique_for_overwrite<float[]>(cells);
    else
        m_cells = std::make_unique_for_overwrite<double[]>(cells);
}

Terrain::Terrain(int width, int height, const std::vector<double> &heights)
    : Terrain(width, height, Storage::Double)
{
    std::copy(heights.begin(), heights.end(), std::get<Doubles>(m_cells).get());
}

} // namespace viewshed
