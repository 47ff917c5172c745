#include "colortable/editor/ReliefPreview.h"

#include "colortable/editor/tablepainting.h"
#include "colortable/toolcolors.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{

/// How bright a slope is under light from the north-west, 0 to 1. The steepness is drawn for the eye: it is
/// measured against the range of elevations over the width of the grid.
class Shading
{
public:
    explicit Shading(const ElevationGrid &grid)
        : m_grid(grid)
    {
        const QVector<double> sorted = grid.sorted();
        const double range = sorted.isEmpty() ? 0.0 : sorted.last() - sorted.first();
        m_factor = range > 0.0 ? 0.06 * std::max(grid.width, grid.height) / range : 0.0;
    }

    double at(int column, int row) const
    {
        const double east = difference(column - 1, row, column + 1, row);
        const double south = difference(column, row - 1, column, row + 1);
        const double slope = std::sqrt(1.0 + east * east + south * south);
        const double light = (1.0 + east + south) / (slope * std::sqrt(3.0)); // the sun at 45 degrees
        return std::clamp(0.35 + light, 0.35, 1.15);
    }

private:
    double difference(int column, int row, int otherColumn, int otherRow) const
    {
        const auto elevation = [&](int x, int y) {
            return static_cast<double>(m_grid.cells.at(std::clamp(y, 0, m_grid.height - 1) * m_grid.width
                                                       + std::clamp(x, 0, m_grid.width - 1)));
        };
        const double change = elevation(otherColumn, otherRow) - elevation(column, row);
        return std::isfinite(change) ? change * m_factor : 0.0;
    }

    const ElevationGrid &m_grid;
    double m_factor = 0.0;
};

QRgb darkened(QRgb color, double light)
{
    const auto level = [&](int full) { return std::clamp(static_cast<int>(full * light), 0, 255); };
    return qRgba(level(qRed(color)), level(qGreen(color)), level(qBlue(color)), qAlpha(color));
}

} // namespace

QImage reliefImage(const ElevationGrid &grid, const ReliefRequest &request)
{
    if (grid.isEmpty())
        return {};
    QImage image(grid.width, grid.height, QImage::Format_ARGB32);
    const ToolColors colors(request.entries, request.minimum, request.maximum, grid.noDataValue);
    const Shading shading(grid);
    for (int row = 0; row < grid.height; ++row) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
        for (int column = 0; column < grid.width; ++column) {
            const float elevation = grid.cells.at(row * grid.width + column);
            const bool isVoid = std::isnan(elevation);
            QRgb color = isVoid ? colors.noDataColor() : colors.color(static_cast<double>(elevation));
            if (request.vision != ColorVision::Normal)
                color = seenWith(QColor::fromRgba(color), request.vision).rgba();
            line[column] = request.shaded && !isVoid ? darkened(color, shading.at(column, row)) : color;
        }
    }
    return image;
}

void ReliefPreview::setGrid(const ElevationGrid &grid)
{
    m_grid = grid;
    show(m_request);
}

void ReliefPreview::show(const ReliefRequest &request)
{
    m_request = request;
    m_image = reliefImage(m_grid, m_request);
    update();
}

void ReliefPreview::setHint(const QString &hint)
{
    m_hint = hint;
    update();
}

void ReliefPreview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_image.isNull()) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
        return;
    }
    QRect area({}, m_image.size().scaled(size(), Qt::KeepAspectRatio));
    area.moveCenter(rect().center());
    paintChecker(painter, area);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(area, m_image);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(area.adjusted(0, 0, -1, -1));
}
