#include "viewshed/terrain.h"

namespace viewshed
{

Terrain::Terrain(int width, int height, Storage storage)
    : m_width(width)
    , m_height(height)
{
    const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (storage == Storage::Float)
        m_cells = Floats(cells, std::numeric_limits<float>::quiet_NaN());
    else
        m_cells = Doubles(cells, noHeight);
}

Terrain::Terrain(int width, int height, const std::vector<double> &heights)
    : m_width(width)
    , m_height(height)
    , m_cells(heights)
{ }

} // namespace viewshed
