#pragma once

#include "dataset/extraction/cellrect.h"

#include <QImage>
#include <QWidget>

/// A picture of a whole DEM with a rectangle of cells over it, which the user drags.
///
/// The mouse moves the rectangle's edges by their handles, the whole rectangle from inside, and drags a new one
/// from outside. The arrow keys move it, with Shift they move its lower right corner, and with Ctrl both in
/// single cells.
class ExtractionView : public QWidget
{
    Q_OBJECT

public:
    explicit ExtractionView(QWidget *parent = nullptr);

    /// Columns and rows of the DEM.
    void setGrid(const QSize &grid);
    /// The picture covers the whole DEM, whatever its own size. A null one shows nothing.
    void setPicture(const QImage &picture);
    /// Shows the rectangle without a signal. It lies on the grid.
    void setCells(const QRect &cells);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The user changed the rectangle.
    void cellsChanged(const QRect &cells);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Drag
    {
        None,
        Edges,
        Whole,
        New
    };

    QRectF area() const;
    QRectF shown(const QRect &cells) const;
    QPointF cellAt(const QPointF &position) const;
    Handle handleAt(const QPointF &position) const;
    void showPointer(const QPointF &position);
    void change(const QRect &cells);

    QSize m_grid;
    QImage m_picture;
    QRect m_cells;
    Drag m_drag = Drag::None;
    Handle m_handle; ///< the handle that is dragged
    QPointF m_from;  ///< where the drag began, in columns and rows
    QRect m_before;  ///< the rectangle when the drag began
};
