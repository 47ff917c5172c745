#pragma once

#include "panels/options/observerpoints.h"

#include <QObject>

class QLineEdit;

/// The two fields with the position of the current observer, in the DEM's coordinates.
class PositionFields : public QObject
{
    Q_OBJECT

public:
    /// The fields outlive this object.
    PositionFields(QLineEdit *x, QLineEdit *y);

    /// Shows the position of the point; without one the fields are empty and disabled.
    void show(const std::optional<ObserverPoint> &point);

    /// Leaves the keys of undo and redo to the actions of a field that has nothing of its own to undo.
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The user typed another position.
    void moved(const QPointF &position);

private:
    void apply();

    QLineEdit *m_x;
    QLineEdit *m_y;
    std::optional<ObserverPoint> m_point; ///< the point that the fields show
};
