#include "app/preview/previewgeometry.h"

#include "messages/shownnumber.h"
#include "runner/quoting.h"

#include <algorithm>
#include <cmath>

QSize reducedSize(const QSize &cells)
{
    const int longest = std::max(cells.width(), cells.height());
    if (longest <= longestReducedSide)
        return cells;
    const double scale = static_cast<double>(longestReducedSide) / longest;
    return {std::max(1, qRound(cells.width() * scale)), std::max(1, qRound(cells.height() * scale))};
}

QRect previewPart(const QRectF &seen, const QSize &dem, const QVector<QPointF> &observers)
{
    const QRect whole(QPoint(0, 0), dem);
    if (seen.isEmpty())
        return whole;
    constexpr double reducedCells = 2.0;
    const double margin =
        reducedCells * std::max(1.0, std::max(seen.width(), seen.height()) / longestReducedSide);
    QRectF part = seen.adjusted(-margin, -margin, margin, margin);
    for (const QPointF &observer : observers) {
        if (QRectF(whole).contains(observer))
            part = part.united(QRectF(observer - QPointF(1.0, 1.0), QSizeF(2.0, 2.0)));
    }
    return part.toAlignedRect().intersected(whole);
}

QString reductionArguments(const Reduction &reduction)
{
    const QRect &part = reduction.part;
    QString text;
    if (!reduction.georeferenced)
        text +=
            QStringLiteral("-a_ullr %1 %2 %3 %4 ")
                .arg(QString::number(part.left()), QString::number(part.top()),
                     QString::number(part.left() + part.width()), QString::number(part.top() + part.height()));
    if (part.size() != reduction.demSize)
        text += QStringLiteral("-srcwin %1 %2 %3 %4 ")
                    .arg(QString::number(part.left()), QString::number(part.top()),
                         QString::number(part.width()), QString::number(part.height()));
    const QSize size = reducedSize(part.size());
    if (size != part.size()) {
        text += QStringLiteral("-r average ");
        if (reduction.ignoresOverviews)
            text += QStringLiteral("-ovr NONE ");
    }
    return text
        + QStringLiteral("-outsize  %1 %2 ").arg(QString::number(size.width()), QString::number(size.height()))
        + quotedArgument(reduction.dem) + QLatin1Char(' ') + quotedArgument(reduction.copy);
}

namespace
{

/// The view moved into the DEM. A side longer than the DEM's is shortened to it.
QRectF within(QRectF view, const QSize &dem)
{
    view.setSize(view.size().boundedTo(dem));
    view.moveLeft(qBound(0.0, view.left(), dem.width() - view.width()));
    view.moveTop(qBound(0.0, view.top(), dem.height() - view.height()));
    return view;
}

} // namespace

QRectF zoomed(const QRectF &view, const QPointF &at, double factor, const QSize &dem, const QSizeF &area)
{
    constexpr double fewestCells = 8.0;
    const double now = std::max(view.width() / area.width(), view.height() / area.height()); // cells per pixel
    const double most = std::max(dem.width() / area.width(), dem.height() / area.height());
    const double least = std::min(most, fewestCells / std::min(area.width(), area.height()));
    const double scale = qBound(least, now / factor, most);
    const QSizeF size = (area * scale).boundedTo(dem);
    const QPointF way = view.topLeft() - at;
    const QPointF corner =
        at + QPointF(way.x() * size.width() / view.width(), way.y() * size.height() / view.height());
    return within(QRectF(corner, size), dem);
}

QRectF moved(const QRectF &view, const QPointF &by, const QSize &dem)
{
    return within(view.translated(by), dem);
}

QRectF shownRect(const QRectF &view, const QSizeF &area)
{
    if (view.isEmpty() || area.isEmpty())
        return {};
    const double scale = std::min(area.width() / view.width(), area.height() / view.height());
    const QSizeF size = view.size() * scale;
    return {QPointF((area.width() - size.width()) / 2.0, (area.height() - size.height()) / 2.0), size};
}

QPointF mirrored(const QPointF &cell, const QSize &dem, const Mirroring &mirroring)
{
    return {mirroring.columns ? dem.width() - cell.x() : cell.x(),
            mirroring.rows ? dem.height() - cell.y() : cell.y()};
}

QRect mirrored(const QRect &part, const QSize &dem, const Mirroring &mirroring)
{
    QRect moved = part;
    if (mirroring.columns)
        moved.moveLeft(dem.width() - part.x() - part.width());
    if (mirroring.rows)
        moved.moveTop(dem.height() - part.y() - part.height());
    return moved;
}

ElevationGrid mirrored(ElevationGrid grid, const Mirroring &mirroring)
{
    if (mirroring.columns) {
        for (int row = 0; row < grid.height; ++row) {
            float *line = grid.cells.data() + static_cast<std::ptrdiff_t>(row) * grid.width;
            std::reverse(line, line + grid.width);
        }
    }
    if (mirroring.rows) {
        for (int row = 0; row < grid.height / 2; ++row) {
            float *line = grid.cells.data() + static_cast<std::ptrdiff_t>(row) * grid.width;
            float *other = grid.cells.data() + static_cast<std::ptrdiff_t>(grid.height - 1 - row) * grid.width;
            std::swap_ranges(line, line + grid.width, other);
        }
    }
    return grid;
}

int coordinateDecimals(double cellSize)
{
    constexpr int most = 8;
    return cellSize > 0.0 ? qBound(0, static_cast<int>(std::ceil(-std::log10(cellSize))) + 1, most) : 0;
}

QString lengthText(double length, const QLocale &locale)
{
    constexpr int most = 8;
    constexpr double precision = 0.001;
    int decimals = 0;
    while (decimals < most) {
        const double power = std::pow(10.0, decimals);
        if (std::abs(std::round(length * power) / power - length) < precision * length)
            break;
        ++decimals;
    }
    return shownNumber(length, 'f', decimals, locale);
}
