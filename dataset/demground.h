#pragma once

#include <QPointF>
#include <QString>

#include <array>
#include <memory>
#include <optional>

class GDALDataset;

/// Where a DEM lies, and its elevations cell by cell. Coordinates are the DEM's own: those of its CRS, or
/// columns and rows where it has no georeference.
class DemGround
{
public:
    DemGround() = default;

    /// band: from 1. The raster is opened for reading and nothing is written beside it.
    DemGround(const QString &path, int band);

    /// Whether it could be opened and its grid has an area.
    bool isOpen() const { return m_dataset != nullptr; }

    int width() const { return m_width; }
    int height() const { return m_height; }
    QString crs() const { return m_crs; } ///< as WKT; empty where it has none

    QPointF centre() const;

    /// Side of a cell in the DEM's unit, the smaller of both.
    double cellSize() const;

    bool holds(const QPointF &point) const;

    /// Of the cell under the point; none outside of the DEM and where there is no data.
    std::optional<double> elevation(const QPointF &point) const;

private:
    QPointF toCells(const QPointF &point) const;

    std::shared_ptr<GDALDataset> m_dataset;
    int m_band = 1;
    int m_width = 0;
    int m_height = 0;
    QString m_crs;
    std::array<double, 6> m_toGround{};
    std::array<double, 6> m_toCells{};
};
