#include "app/preview/map/relief.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

/// Rise per unit of length to the right and downwards.
struct Gradient
{
    float right = 0.0f;
    float down = 0.0f;
};

/// The gradients of all cells, from the neighbours left, right, above and below. A neighbour without data, or
/// beyond an edge, counts like the cell itself.
std::vector<Gradient> gradientsOf(const ElevationGrid &grid, const QSizeF &cell)
{
    const float *cells = grid.cells.constData();
    std::vector<Gradient> gradients(static_cast<std::size_t>(grid.cells.size()));
    const auto across = static_cast<float>(0.5 / cell.width());
    const auto along = static_cast<float>(0.5 / cell.height());
    for (int row = 0; row < grid.height; ++row) {
        const float *line = cells + static_cast<std::ptrdiff_t>(row) * grid.width;
        const float *above = row > 0 ? line - grid.width : line;
        const float *below = row + 1 < grid.height ? line + grid.width : line;
        for (int column = 0; column < grid.width; ++column) {
            const float here = line[column];
            const auto known = [here](float value) { return std::isnan(value) ? here : value; };
            const float left = known(line[std::max(column - 1, 0)]);
            const float right = known(line[std::min(column + 1, grid.width - 1)]);
            Gradient &gradient = gradients[static_cast<std::size_t>(line - cells + column)];
            gradient.right = (right - left) * across;
            gradient.down = (known(below[column]) - known(above[column])) * along;
        }
    }
    return gradients;
}

/// The factor by which slopes are drawn, so that the steeper ones of this ground show as hillsides.
float exaggerationFor(const std::vector<Gradient> &gradients)
{
    constexpr std::size_t sample = 20000;
    constexpr float hillside = 0.7f;
    constexpr float most = 30.0f; // ground that is flatter still stays flat
    std::vector<float> steepness;
    const std::size_t step = std::max<std::size_t>(1, gradients.size() / sample);
    for (std::size_t at = 0; at < gradients.size(); at += step) {
        const float slope = std::hypot(gradients[at].right, gradients[at].down);
        if (std::isfinite(slope))
            steepness.push_back(slope);
    }
    if (steepness.empty())
        return 1.0f;
    const auto steep = steepness.begin() + static_cast<std::ptrdiff_t>(steepness.size() * 9 / 10);
    std::nth_element(steepness.begin(), steep, steepness.end());
    return *steep > 0.0f ? std::min(hillside / *steep, most) : 1.0f;
}

} // namespace

QImage softRelief(const ElevationGrid &grid, const QSizeF &cell)
{
    if (grid.isEmpty())
        return {};
    // The unit vector to the light: azimuth 315°, 50° above the horizon.
    constexpr float up = 0.766f;
    constexpr float left = 0.4545f;
    constexpr float darkest = 105.0f;
    constexpr float lightest = 250.0f;
    const std::vector<Gradient> gradients = gradientsOf(grid, cell);
    const float factor = exaggerationFor(gradients);
    QImage picture(grid.width, grid.height, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < grid.height; ++row) {
        auto pixels = reinterpret_cast<QRgb *>(picture.scanLine(row));
        const std::ptrdiff_t first = static_cast<std::ptrdiff_t>(row) * grid.width;
        for (int column = 0; column < grid.width; ++column) {
            if (std::isnan(grid.cells.constData()[first + column])) {
                pixels[column] = 0;
                continue;
            }
            const Gradient &gradient = gradients[static_cast<std::size_t>(first + column)];
            const float right = gradient.right * factor;
            const float down = gradient.down * factor;
            // The normal of the surface z(x, y) is (-dz/dx, -dz/dy, 1).
            const float light =
                (up + left * right + left * down) / std::sqrt(1.0f + right * right + down * down);
            const int grey = static_cast<int>(darkest + (lightest - darkest) * std::clamp(light, 0.0f, 1.0f));
            pixels[column] = qRgb(grey, grey, grey);
        }
    }
    return picture;
}

QImage overRelief(const QImage &product, const QImage &relief)
{
    if (product.isNull() || relief.isNull())
        return product;
    QImage picture = product.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage ground = relief;
    {
        QPainter onWhite(&ground); // multiplying by white changes nothing
        onWhite.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        onWhite.fillRect(ground.rect(), Qt::white);
    }
    if (ground.size() != picture.size())
        ground = ground.scaled(picture.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage opacity = picture;
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.drawImage(0, 0, ground);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, opacity);
    return picture;
}

QImage withoutVoids(const QImage &product, const QImage &relief)
{
    if (product.size() != relief.size())
        return product;
    QImage picture = product.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, relief); // its opacity alone counts
    return picture;
}
