#pragma once

#include "panels/options/observerpoints.h"

#include <QAbstractTableModel>
#include <QIcon>

/// The observers as a table, one row each: enabled, height or altitude, altitude mode, maximum distance. The
/// model reads the ground under an observer from the DEM once, when the observer or the DEM changes.
class ObserverPointsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        EnabledColumn,
        HeightColumn,
        ModeColumn,
        DistanceColumn,
        ColumnCount
    };

    explicit ObserverPointsModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// In the edit role, heights, distances and modes are texts and the enabled flag is a boolean.
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    const ObserverPoint &point(int row) const { return m_rows.at(row).point; }
    QList<ObserverPoint> points() const;
    void setPoint(int row, const ObserverPoint &point);
    /// Replaces the points of all rows; there must be as many points as rows.
    void setPoints(const QList<ObserverPoint> &points);
    void addPoints(const QList<ObserverPoint> &points);
    void removePoint(int row);
    void clear();

    /// Sets the DEM under the points. No signal follows.
    void setGround(const DemGround &ground);

    /// Number of enabled points without ground: their heights are relative, and the DEM has no data under them.
    int groundlessCount() const;

    /// Switches off the enabled points without ground. Returns their number.
    int switchOffGroundless();

    int enabledCount() const;

    /// The enabled points with their absolute altitudes. Relative heights count from the ground of `copy`, a
    /// reduced copy of the DEM, where it has data, and otherwise from the DEM's. Points without ground are left
    /// out.
    QList<ToolObserver> observers(const DemGround &copy = {}) const;

    /// Refreshes the headers after a change of the language.
    void retranslate();

private:
    struct Row
    {
        ObserverPoint point;
        std::optional<double> ground; ///< elevation of the DEM under the point; nothing where it has no data

        bool isGroundless() const { return point.enabled && !absoluteAltitude(point, ground); }
    };

    void replace(int row, const ObserverPoint &point);
    QString text(const ObserverPoint &point, int column) const;

    QList<Row> m_rows;
    DemGround m_ground;
    QIcon m_on;
    QIcon m_off;
};
