#include "viewshed/io/numbers.h"

#include "viewshed/io/stop.h"

#include <cmath>
#include <limits>

namespace viewshed
{

namespace
{

constexpr int rowsAtATime = 32;

/// Writes the rows of a band of numbers. readRow(row, numbers) fills one row of the product; its cells without
/// elevation get `noData` afterwards.
template <class Number, class ReadRow>
void writeNumbers(GDALDataset &product, const Analysis &analysis, Number noData, const ReadRow &readRow)
{
    product.GetRasterBand(1)->SetNoDataValue(noData);
    BlockWriter<Number> writer(product);
    const int width = product.GetRasterXSize();
    const int height = product.GetRasterYSize();
    const int step = std::min(writer.step(rowsAtATime), height);
    if (2.0 * sizeof(Number) * width * step > availableMemory())
        throw Problem(
            "The product's blocks are larger than the available memory; choose a smaller BLOCKYSIZE.");
    std::vector<Number> numbers(static_cast<std::size_t>(width) * static_cast<std::size_t>(step));
    const auto rowOf = [&](int row) { return numbers.data() + static_cast<std::ptrdiff_t>(row) * width; };
    for (int top = 0; top < height; top += step) {
        checkStop();
        const int count = std::min(step, height - top);
        for (int row = 0; row < count; ++row) {
            readRow(top + row, rowOf(row));
            for (int column = 0; analysis.voids && column < width; ++column) {
                if (analysis.voids->test(column, top + row))
                    rowOf(row)[column] = noData;
            }
        }
        writer.write(top, count, [&](int /*band*/, int row) { return rowOf(row); });
    }
}

} // namespace

ProductForm countForm(std::size_t observers)
{
    const bool fits = observers < std::numeric_limits<std::uint16_t>::max();
    return {.bands = 1, .type = fits ? GDT_UInt16 : GDT_UInt32};
}

void writeCounts(GDALDataset &product, const Analysis &analysis)
{
    constexpr auto none = std::numeric_limits<std::uint32_t>::max();
    const auto readRow = [&](int row, std::uint32_t *counts) { analysis.counts->readRow(row, counts); };
    if (product.GetRasterBand(1)->GetRasterDataType() == GDT_UInt32) {
        writeNumbers(product, analysis, none, readRow);
        return;
    }
    std::vector<std::uint32_t> counts(static_cast<std::size_t>(product.GetRasterXSize()));
    writeNumbers(product, analysis, std::numeric_limits<std::uint16_t>::max(), [&](int row, std::uint16_t *to) {
        readRow(row, counts.data());
        std::transform(counts.begin(), counts.end(), to,
                       [](std::uint32_t count) { return static_cast<std::uint16_t>(count); });
    });
}

void writeHeights(GDALDataset &product, const Analysis &analysis)
{
    constexpr float none = -9999.0F;
    const auto width = static_cast<std::size_t>(product.GetRasterXSize());
    writeNumbers(product, analysis, none, [&](int row, float *to) {
        const float *heights = analysis.heights->row(row);
        std::transform(heights, heights + width, to,
                       [](float height) { return std::isinf(height) ? none : height; });
    });
}

} // namespace viewshed
