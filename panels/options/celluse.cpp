#include "panels/options/celluse.h"

namespace
{

CellUse useOf(const ShadedOptions &options)
{
    return {.neighbours = true, .lengths = options.scaleIndex == 0, .light = true};
}

CellUse useOf(const SlopeOptions &options)
{
    return {.neighbours = true, .lengths = options.scaleIndex == 0};
}

CellUse useOf(const AspectOptions &options)
{
    return {.neighbours = true,
            .directions = true,
            .zeroWithoutData = options.zeroForFlat,
            .trigonometric = options.trigonometric};
}

CellUse useOf(const ColorReliefOptions &options)
{
    return options.shaded ? useOf(options.shade) : CellUse();
}

CellUse useOf(const TerrainIndexOptions &)
{
    return {.neighbours = true, .heights = true};
}

CellUse useOf(const IntervisibilityOptions &options)
{
    return {.sight = sightResult(options)};
}

/// The other processes look at each cell by itself, or know the grid themselves.
template <class Record> CellUse useOf(const Record &)
{
    return {};
}

} // namespace

CellUse cellUse(const ProcessOptions &options)
{
    return std::visit([](const auto &record) { return useOf(record); }, options);
}
