#include "dataset/elevationpicture.h"

#include <algorithm>
#include <cmath>

QImage elevationPicture(const ElevationGrid &grid)
{
    if (grid.isEmpty())
        return {};
    constexpr double tail = 0.02; // part of the cells at each end that the stretch leaves out
    const QVector<double> sorted = grid.sorted();
    QImage picture(grid.width, grid.height, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    if (sorted.isEmpty())
        return picture;
    const auto last = static_cast<double>(sorted.size() - 1);
    const double low = sorted.at(static_cast<int>(tail * last));
    const double high = sorted.at(static_cast<int>((1.0 - tail) * last));
    const double factor = high > low ? 255.0 / (high - low) : 0.0;
    for (int row = 0; row < grid.height; ++row) {
        auto line = reinterpret_cast<QRgb *>(picture.scanLine(row));
        for (int column = 0; column < grid.width; ++column) {
            const double cell = grid.cells.at(row * grid.width + column);
            if (!std::isfinite(cell))
                continue;
            const int grey = high > low ? static_cast<int>(std::clamp((cell - low) * factor, 0.0, 255.0)) : 128;
            line[column] = qRgb(grey, grey, grey);
        }
    }
    return picture;
}
