#include "viewshed/terrain.h"

#include <algorithm>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace viewshed
{

namespace
{

constexpr std::align_val_t hugePage{std::size_t(1) << 21};

/// Allocates memory in huge pages where the system has them, because the page faults of small pages cost more
/// time than reading the file. Throws std::bad_alloc.
template <class Number> Number *allocated(std::size_t cells)
{
    const std::size_t bytes = cells * sizeof(Number);
    void *memory = ::operator new[](bytes, hugePage);
#ifdef MADV_HUGEPAGE
    if (bytes >= static_cast<std::size_t>(hugePage))
        madvise(memory, bytes, MADV_HUGEPAGE); // only advice: failure does no harm
#endif
    return static_cast<Number *>(memory);
}

} // namespace

void Terrain::Release::operator()(void *cells) const
{
    ::operator delete[](cells, hugePage);
}

Terrain::Terrain(int width, int height, Storage storage)
    : m_width(width)
    , m_height(height)
{
    const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (storage == Storage::Float)
        m_cells = Floats(allocated<float>(cells));
    else
        m_cells = Doubles(allocated<double>(cells));
}

Terrain::Terrain(int width, int height, const std::vector<double> &heights)
    : Terrain(width, height, Storage::Double)
{
    std::copy(heights.begin(), heights.end(), std::get<Doubles>(m_cells).get());
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
