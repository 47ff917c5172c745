#include "app/preview/ProductReading.h"

#include "app/preview/map/relief.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr int vectorCells = 4096; // on the longer side of lines without a DEM
constexpr int stripRows = 32;     // of the picture, read at a time

} // namespace

ProductReading::ProductReading(const QString &file, const std::optional<ProductSource> &source)
    : m_source(source)
    , m_raster(file)
    , m_lines(m_raster.isOpen() ? VectorPicture() : VectorPicture(file))
    , m_dem(source ? RasterPicture(source->dem, source->band) : RasterPicture())
    , m_demGrid(source ? MapGrid(source->dem, source->band) : MapGrid())
    , m_grid(m_raster.isOpen() ? MapGrid(file, 1) : m_demGrid)
{
    m_look.form = m_raster.isOpen() && m_raster.isGrey() ? ProductForm::Shade : ProductForm::Colors;
    if (source)
        m_look = lookOf(source->options, m_demGrid.ground().elevationUnit());
    else if (m_lines.isOpen())
        m_look.form = ProductForm::Lines;
    if (m_grid.isOpen()) {
        m_size = m_grid.size();
        return;
    }
    if (!m_lines.isOpen())
        return;
    m_extent = m_lines.extent();
    if (m_extent.isEmpty()) // the file has no line, or one that runs along an axis
        m_extent.adjust(-0.5, -0.5, 0.5, 0.5);
    m_size = m_extent.size().scaled(vectorCells, vectorCells, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
}

QPointF ProductReading::toGround(const QPointF &cell) const
{
    if (m_grid.isOpen())
        return m_grid.toGround(cell);
    return {m_extent.left() + cell.x() / m_size.width() * m_extent.width(),
            m_extent.bottom() - cell.y() / m_size.height() * m_extent.height()}; // y grows northwards
}

QSizeF ProductReading::cellMetres(const QPointF &cell) const
{
    return m_grid.isOpen() ? m_grid.cellMetres(cell) : QSizeF(0.0, 0.0);
}

double ProductReading::cellSize() const
{
    return m_grid.isOpen() ? m_grid.ground().cellSize() : m_extent.width() / std::max(1, m_size.width());
}

/// The cells of the DEM for a part of the map; empty where they are not the product's own cells, as after a
/// change of the CRS.
QRect ProductReading::demPart(const QRect &part) const
{
    constexpr double tolerance = 0.01; // cells
    if (!m_dem.isOpen() || holdsRelief(m_look.form) || m_demGrid.ground().crs() != m_grid.ground().crs())
        return {};
    const QRect own = m_grid.otherSide(part);
    const QPointF first = m_demGrid.ground().toCells(m_grid.ground().toGround(own.topLeft()));
    const QPointF last = m_demGrid.ground().toCells(
        m_grid.ground().toGround(own.topLeft() + QPointF(own.width(), own.height())));
    const QRect there(qRound(first.x()), qRound(first.y()), own.width(), own.height());
    const bool sameCells = std::abs(first.x() - there.x()) < tolerance
        && std::abs(first.y() - there.y()) < tolerance
        && std::abs(last.x() - first.x() - own.width()) < tolerance
        && std::abs(last.y() - first.y() - own.height()) < tolerance;
    return sameCells && QRect(QPoint(0, 0), m_dem.size()).contains(there) ? there : QRect();
}

void ProductReading::begin(const QRectF &view, const QSize &pixels, double lineWidth)
{
    m_part = view.toAlignedRect().intersected(QRect(QPoint(0, 0), m_size));
    const QSize room = QSizeF(m_part.size()).scaled(pixels, Qt::KeepAspectRatio).toSize();
    // More pixels than cells show no more of a raster.
    m_pixels = (m_lines.isOpen() ? room : room.boundedTo(m_part.size())).expandedTo({1, 1});
    m_nextRow = 0;
    const auto empty = [this] {
        return QVector<float>(m_pixels.width() * m_pixels.height(), std::numeric_limits<float>::quiet_NaN());
    };
    const bool isNumbers = m_look.form == ProductForm::Values;
    m_values = isNumbers ? ElevationGrid{m_pixels.width(), m_pixels.height(), empty()} : ElevationGrid();
    m_colors = isNumbers || m_lines.isOpen() ? QImage() : QImage(m_pixels, QImage::Format_ARGB32_Premultiplied);
    m_colors.fill(Qt::transparent);
    m_heights = demPart(m_part).isEmpty() ? ElevationGrid()
                                          : ElevationGrid{m_pixels.width(), m_pixels.height(), empty()};
    if (!m_lines.isOpen())
        return;
    m_drawn = QImage(m_pixels, QImage::Format_ARGB32_Premultiplied);
    m_drawn.fill(Qt::transparent);
    m_lines.begin(m_drawn,
                  pixelsToGround([this](const QPointF &cell) { return toGround(cell); }, m_part, m_pixels),
                  lineWidth);
    m_isDrawing = true;
}

/// Reads some rows of the picture, from those of the file that they show.
void ProductReading::readStrip()
{
    const QRect file = m_grid.otherSide(m_part);
    const QRect dem = demPart(m_part);
    const int end = std::min(m_nextRow + stripRows, m_pixels.height());
    const auto rowOf = [&](int row) {
        return static_cast<int>(qint64{row} * file.height() / m_pixels.height());
    };
    const int first = rowOf(m_nextRow);
    const int count = std::max(1, rowOf(end) - first);
    const QSize size(m_pixels.width(), end - m_nextRow);
    const bool isCount = m_look.sight == SightResult::Count; // a mean of whole numbers would be none
    const auto read = [&](const RasterPicture &raster, const QRect &part, ElevationGrid &grid) {
        const QVector<float> cells =
            raster.values({part.left(), part.top() + first, part.width(), count}, size, isCount);
        std::copy(cells.begin(), cells.end(),
                  grid.cells.begin() + static_cast<std::ptrdiff_t>(m_nextRow) * m_pixels.width());
    };
    if (!m_values.isEmpty())
        read(m_raster, file, m_values);
    if (!m_heights.isEmpty())
        read(m_dem, dem, m_heights);
    if (!m_colors.isNull()) {
        const bool isZones = m_source && std::holds_alternative<IntervisibilityOptions>(m_source->options);
        const QImage strip =
            m_raster.read({file.left(), file.top() + first, file.width(), count}, size, isZones);
        const QImage rows = strip.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        for (int row = 0; row < rows.height(); ++row)
            std::copy_n(rows.constScanLine(row), rows.bytesPerLine(), m_colors.scanLine(m_nextRow + row));
    }
    m_nextRow = end;
}

bool ProductReading::advance(int milliseconds)
{
    const bool hasStrips = !m_values.isEmpty() || !m_colors.isNull() || !m_heights.isEmpty();
    QElapsedTimer timer;
    timer.start();
    while (hasStrips && m_nextRow < m_pixels.height()) {
        readStrip();
        if (timer.elapsed() >= milliseconds)
            return true;
    }
    if (!m_values.isEmpty() && !m_ramp && m_part.size() == m_size)
        m_ramp = rampOf(m_look, m_values);
    if (m_isDrawing)
        m_isDrawing = m_lines.advance(std::max(1, milliseconds - static_cast<int>(timer.elapsed())));
    return m_isDrawing;
}

int ProductReading::percent() const
{
    constexpr int whole = 100;
    return m_isDrawing ? m_lines.percent() : whole * m_nextRow / std::max(1, m_pixels.height());
}

void ProductReading::addTo(MapPicture &map) const
{
    QImage relief;
    if (!m_heights.isEmpty()) {
        const QSizeF cell = cellMetres(QRectF(m_part).center());
        relief = softRelief(mirrored(m_heights, m_grid.mirroring()),
                            {cell.width() * m_part.width() / m_pixels.width(),
                             cell.height() * m_part.height() / m_pixels.height()});
    }
    QImage picture = m_lines.isOpen() ? m_drawn.copy()
                                      : m_colors.mirrored(m_grid.mirroring().columns, m_grid.mirroring().rows);
    if (!m_values.isEmpty())
        picture =
            rampPicture(mirrored(m_values, m_grid.mirroring()), m_ramp.value_or(rampOf(m_look, m_values)));
    map.transparent = m_lines.isOpen();
    QImage ground = relief;
    if (relief.isNull()) { // the product alone is the map
        ground = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        ground.fill(Qt::white);
    }
    MapPicture::add(map.ground, {ground, m_part});
    if (m_lines.isOpen())
        map.product.clear(); // lines of two pictures would be seen at once
    MapPicture::add(map.product,
                    {m_lines.isOpen() ? picture : overRelief(withoutVoids(picture, relief), relief), m_part});
}

double ProductReading::value(const QPointF &cell) const
{
    const bool hasNumbers = m_raster.isOpen() && m_raster.isGrey();
    const auto value = hasNumbers ? m_grid.ground().elevation(toGround(cell)) : std::nullopt;
    return value.value_or(std::numeric_limits<double>::quiet_NaN());
}

LegendFacts ProductReading::legendFacts() const
{
    LegendFacts facts;
    facts.look = m_look;
    facts.elevationUnit = m_demGrid.ground().elevationUnit();
    if (!m_source)
        return facts;
    facts.title = m_source->title;
    facts.options = m_source->options;
    facts.product.picture = m_colors;
    facts.product.values = m_values;
    if (!m_values.isEmpty()) {
        facts.product.ramp = m_ramp.value_or(rampOf(m_look, m_values));
        facts.product.picture = rampPicture(m_values, facts.product.ramp);
    }
    facts.hasVoids = std::any_of(m_heights.cells.begin(), m_heights.cells.end(),
                                 [](float height) { return std::isnan(height); });
    facts.cellArea = m_grid.pixelArea(m_part, m_pixels);
    return facts;
}
