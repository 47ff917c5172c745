#include "dataset/demground.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>

DemGround::DemGround(const QString &path, int band)
    : m_band(band)
{
    // Nothing is logged: choosing the file has already reported that it cannot be opened.
    const GdalMessages messages;
    std::shared_ptr<GDALDataset> dataset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    if (!dataset || band > dataset->GetRasterCount())
        return;
    m_georeferenced = dataset->GetGeoTransform(m_toGround.data()) == CE_None;
    if (!m_georeferenced)
        m_toGround = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
    if (!GDALInvGeoTransform(m_toGround.data(), m_toCells.data()))
        return;
    m_width = dataset->GetRasterXSize();
    m_height = dataset->GetRasterYSize();
    if (const OGRSpatialReference *reference = dataset->GetSpatialRef()) {
        char *text = nullptr;
        reference->exportToWkt(&text);
        m_crs = QString::fromUtf8(text);
        CPLFree(text);
    }
    m_dataset = dataset;
}

QPointF DemGround::toGround(const QPointF &cell) const
{
    return {m_toGround[0] + cell.x() * m_toGround[1] + cell.y() * m_toGround[2],
            m_toGround[3] + cell.x() * m_toGround[4] + cell.y() * m_toGround[5]};
}

QPointF DemGround::centre() const
{
    return toGround({m_width / 2.0, m_height / 2.0});
}

QString DemGround::unit() const
{
    const OGRSpatialReference *crs = m_dataset ? m_dataset->GetSpatialRef() : nullptr;
    if (!crs)
        return {};
    if (crs->IsGeographic())
        return QStringLiteral("°");
    const double metres = crs->GetLinearUnits();
    if (metres == 1.0)
        return QStringLiteral("m");
    return std::abs(metres - 0.3048) < 1e-6 ? QStringLiteral("ft") : QString();
}

QString DemGround::elevationUnit() const
{
    const QString unit =
        m_dataset ? QString::fromUtf8(m_dataset->GetRasterBand(m_band)->GetUnitType()).toLower() : QString();
    if (unit == QLatin1String("m") || unit == QLatin1String("metre") || unit == QLatin1String("meter"))
        return QStringLiteral("m");
    const bool isFeet = unit == QLatin1String("ft") || unit.contains(QLatin1String("foot"));
    return isFeet ? QStringLiteral("ft") : QString();
}

QSizeF DemGround::metresPerUnit(const QPointF &point) const
{
    const OGRSpatialReference *crs = m_dataset ? m_dataset->GetSpatialRef() : nullptr;
    if (!crs)
        return {1.0, 1.0};
    if (!crs->IsGeographic())
        return {crs->GetLinearUnits(), crs->GetLinearUnits()};
    // Radii of curvature along the parallel and along the meridian (Snyder 1987, Map Projections, 4-20 and
    // 4-18).
    const double radian = crs->GetAngularUnits();
    const double inverse = crs->GetInvFlattening();
    const double flattening = inverse > 0.0 ? 1.0 / inverse : 0.0;
    const double square = flattening * (2.0 - flattening);
    const double sine = std::sin(point.y() * radian);
    const double normal = crs->GetSemiMajor() / std::sqrt(1.0 - square * sine * sine);
    const double meridian = normal * (1.0 - square) / (1.0 - square * sine * sine);
    return {normal * radian * std::cos(point.y() * radian), meridian * radian};
}

double DemGround::cellSize() const
{
    return std::min(std::hypot(m_toGround[1], m_toGround[4]), std::hypot(m_toGround[2], m_toGround[5]));
}

QPointF DemGround::toCells(const QPointF &point) const
{
    return {m_toCells[0] + point.x() * m_toCells[1] + point.y() * m_toCells[2],
            m_toCells[3] + point.x() * m_toCells[4] + point.y() * m_toCells[5]};
}

bool DemGround::holds(const QPointF &point) const
{
    const QPointF cell = toCells(point);
    return m_dataset && cell.x() >= 0.0 && cell.y() >= 0.0 && cell.x() < m_width && cell.y() < m_height;
}

std::array<std::optional<double>, 4> DemGround::readCells(int column, int row, int columns, int rows) const
{
    const GdalMessages messages;
    GDALRasterBand *band = m_dataset->GetRasterBand(m_band);
    std::array<double, 4> values{};
    std::array<std::optional<double>, 4> cells;
    if (band->RasterIO(GF_Read, column, row, columns, rows, values.data(), columns, rows, GDT_Float64, 0, 0,
                       nullptr)
        != CE_None)
        return cells;
    int hasNoData = FALSE;
    double noData = band->GetNoDataValue(&hasNoData);
    if (band->GetRasterDataType() == GDT_Float32)
        noData = static_cast<float>(noData);
    for (std::size_t at = 0; at < static_cast<std::size_t>(columns * rows); ++at) {
        if (std::isfinite(values[at]) && !(hasNoData && values[at] == noData))
            cells[at] = values[at];
    }
    return cells;
}

std::optional<double> DemGround::elevation(const QPointF &point) const
{
    if (!holds(point))
        return std::nullopt;
    const QPointF cell = toCells(point);
    return readCells(static_cast<int>(cell.x()), static_cast<int>(cell.y()), 1, 1)[0];
}

std::optional<double> DemGround::surfaceElevation(const QPointF &point) const
{
    if (!holds(point))
        return std::nullopt;
    // Cells from the first cell's centre, within the outermost centres.
    const QPointF cell = toCells(point);
    const double u = std::clamp(cell.x() - 0.5, 0.0, m_width - 1.0);
    const double v = std::clamp(cell.y() - 0.5, 0.0, m_height - 1.0);
    const int column = std::min(static_cast<int>(u), std::max(m_width - 2, 0));
    const int row = std::min(static_cast<int>(v), std::max(m_height - 2, 0));
    const int columns = std::min(m_width, 2);
    const int rows = std::min(m_height, 2);
    const auto around = readCells(column, row, columns, rows);
    double sum = 0.0;
    for (int at = 0; at < columns * rows; ++at) {
        const int ofColumn = column + at % columns;
        const int ofRow = row + at / columns;
        const double weight = (1.0 - std::abs(ofColumn - u)) * (1.0 - std::abs(ofRow - v));
        if (weight <= 0.0)
            continue; // the point lies on the line between other centres
        if (!around[static_cast<std::size_t>(at)])
            return elevation(point);
        sum += weight * *around[static_cast<std::size_t>(at)];
    }
    return sum;
}
