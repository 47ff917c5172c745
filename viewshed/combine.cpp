#include "viewshed/combine.h"

#include <algorithm>

namespace viewshed
{

namespace
{

/// Columns or rows from `first` to `last`; empty if `last` < `first`.
struct Range
{
    int first;
    int last;
};

/// The columns (or rows) of a raster with `side` of them that are within `half` cells of `middle`.
Range around(double middle, double half, int side)
{
    const double first = std::clamp(std::ceil(middle - half), 0.0, static_cast<double>(side));
    const double last = std::clamp(std::floor(middle + half), -1.0, side - 1.0);
    return {static_cast<int>(first), static_cast<int>(last)};
}

/// Clears the bits of a row of the picture that are 0 in `seen`, which begins at the word `seenFrom` and has
/// `seenWords` words, and all bits outside it.
void andRow(std::uint64_t *picture, int words, const std::uint64_t *seen, int seenFrom, int seenWords)
{
    for (int word = 0; word < words; ++word) {
        const bool inside = word >= seenFrom && word < seenFrom + seenWords;
        picture[word] &= inside ? seen[word - seenFrom] : 0;
    }
}

} // namespace

Window windowOf(const Sight &sight, int rasterWidth, int rasterHeight)
{
    const GroundForm &ground = sight.ground;
    const double determinant = ground.xx * ground.yy - ground.xy * ground.xy;
    if (std::isinf(sight.reach) || !(determinant > 0.0))
        return {.left = 0, .top = 0, .width = rasterWidth, .height = rasterHeight};
    // The cells within reach form an ellipse. These are half the sides of its bounding rectangle, with one cell
    // added for rounding.
    const double halfWidth = sight.reach * std::sqrt(ground.yy / determinant) + 1.0;
    const double halfHeight = sight.reach * std::sqrt(ground.xx / determinant) + 1.0;
    const Range columns = around(sight.eye.column(), halfWidth, rasterWidth);
    const Range rows = around(sight.eye.row(), halfHeight, rasterHeight);
    if (columns.last < columns.first || rows.last < rows.first)
        return {};
    const int left = columns.first - columns.first % BitGrid::bitsPerWord;
    return {.left = left,
            .top = rows.first,
            .width = columns.last + 1 - left,
            .height = rows.last + 1 - rows.first};
}

std::vector<Part> partsOf(const Sight &sight, const Window &window)
{
    const int bottom = window.top + window.height;
    const auto eyeRow = static_cast<std::int64_t>(std::floor(sight.eye.row()));
    if (eyeRow < window.top || eyeRow + 1 >= bottom)
        return {{.window = window, .firstRow = window.top, .endRow = bottom}};
    // A line of sight that crosses the very centre of a cell needs that cell's neighbours, too, so each part
    // has one row beyond the cut.
    const int cut = static_cast<int>(eyeRow) + 1;
    Window upper = window;
    upper.height = cut + 1 - window.top;
    Window lower = window;
    lower.top = cut - 1;
    lower.height = bottom - lower.top;
    return {{.window = upper, .firstRow = window.top, .endRow = cut},
            {.window = lower, .firstRow = cut, .endRow = bottom}};
}

Sight within(Sight sight, const Window &window)
{
    sight.eye.x -= std::int64_t(window.left) * latticePoints;
    sight.eye.y -= std::int64_t(window.top) * latticePoints;
    return sight;
}

void add(BitGrid &picture, const BitGrid &seen, const Part &part)
{
    for (int row = part.firstRow; row < part.endRow; ++row) {
        std::uint64_t *words = picture.row(row) + part.window.left / BitGrid::bitsPerWord;
        const std::uint64_t *seenRow = seen.row(row - part.window.top);
        for (int word = 0; word < seen.wordsPerRow(); ++word)
            words[word] |= seenRow[word];
    }
}

void combine(BitGrid &picture, const BitGrid &seen, const Window &window, const Sight &sight, Combination how)
{
    const int firstWord = window.left / BitGrid::bitsPerWord;
    if (how == Combination::And) {
        const std::vector<std::uint64_t> nothing(static_cast<std::size_t>(seen.wordsPerRow()));
        for (int row = 0; row < picture.height(); ++row) {
            const bool inside = row >= window.top && row < window.top + window.height;
            andRow(picture.row(row), picture.wordsPerRow(),
                   inside ? seen.row(row - window.top) : nothing.data(), firstWord, seen.wordsPerRow());
        }
        return;
    }
    for (int row = 0; row < window.height && how == Combination::Overwrite; ++row) {
        for (int column = 0; column < window.width; ++column) {
            if (sight.reaches(column, row))
                picture.set(window.left + column, window.top + row, false);
        }
    }
    add(picture, seen, {.window = window, .firstRow = window.top, .endRow = window.top + window.height});
}

} // namespace viewshed
