#pragma once

#include "panels/options/observerpoints.h"

#include <QAbstractTableModel>
#include <QIcon>

/// The observers as a table: enabled, height or altitude, what that counts from, and how far they see. It knows
/// the ground under each, so that nobody has to ask the DEM twice.
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
    /// For editing, heights and distances are doubles, the mode its text, the enabled flag a boolean.
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    const ObserverPoint &point(int row) const { return m_rows.at(row).point; }
    QList<ObserverPoint> points() const;
    void setPoint(int row, const ObserverPoint &point);
    /// As many as there are rows.
    void setPoints(const QList<ObserverPoint> &points);
    void addPoints(const QList<ObserverPoint> &points);
    void removePoint(int row);
    void clear();

    /// Another DEM lies under the points.
    void setGround(const DemGround &ground);

    /// Whether the point's altitude counts from ground that is not there.
    bool lacksGround(int row) const;

    /// Switches off the enabled points that lack ground; returns how many.
    int switchOffGroundless();

    int enabledCount() const;

    /// The enabled points with their altitudes; those that lack ground are left out.
    QList<ToolObserver> observers() const;

    /// Texts are in another language now.
    void retranslate();

private:
    struct Row
    {
        ObserverPoint point;
        std::optional<double> ground;
    };

    void replace(int row, const ObserverPoint &point);
    QString text(const ObserverPoint &point, int column) const;

    QList<Row> m_rows;
    DemGround m_ground;
    QIcon m_on;
    QIcon m_off;
};
