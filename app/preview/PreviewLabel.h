#pragma once

#include <QImage>
#include <QPixmap>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QVector>
#include <QWidget>

#include <optional>

/// An observer in a preview.
struct PreviewMark
{
    QPointF position; ///< cells of the DEM
    QPolygonF range;  ///< line of its maximum distance, in cells; empty: no limit
    bool enabled = true;
    bool current = false;
};

/// A picture of a DEM or of its product with marks over it, which the user zooms with the wheel and drags.
///
/// Positions are cells of the DEM: columns to the right and rows down from its upper left corner. Places are
/// pixels of the widget. The class knows nothing of the DEM's coordinates.
class PreviewLabel : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewLabel(QWidget *parent = nullptr);

    /// Shows a picture of the cells `part`. A null picture is replaced by the text.
    void setPicture(const QImage &picture, const QRectF &part);
    const QImage &picture() const { return m_picture; }

    /// The text that is shown where there is no picture.
    void setText(const QString &text);

    /// `dem`: size of the DEM in cells. `view`: the visible cells.
    void setView(const QSize &dem, const QRectF &view);
    const QRectF &view() const { return m_view; }

    void setMarks(const QVector<PreviewMark> &marks);

    /// Draws the direction of the light, an azimuth in degrees clockwise from the upper edge. Empty: no light
    /// is drawn.
    void setLight(const std::optional<double> &direction);

    /// Draws the picture pale, because it does not show the present options. setPicture() ends that.
    void setOutdated(bool outdated);

    /// The cell at the place that clicked() reports.
    QPointF cellAt(int x, int y, const QSize &shown) const;

    QSize sizeHint() const override { return {320, 300}; }
    QSize minimumSizeHint() const override { return {120, 100}; }

signals:
    /// The user clicked the picture without dragging it. `x` and `y` count from the picture's upper left
    /// corner, `shown` is the picture's size, all in pixels of the widget.
    void clicked(int x, int y, QSize shown);

    /// The mouse is over a cell.
    void hovered(const QPointF &cell);
    /// The mouse is no longer over a cell.
    void left();

    /// The user clicked a mark other than the current one. `mark`: its index.
    void markClicked(int mark);

    /// The user zoomed or dragged the picture. setView() must follow to show that part.
    void viewChanged(const QRectF &view);

    /// The user dragged a mark and dropped it on a cell. Until setMarks() is called the label draws it there.
    void markMoved(int mark, const QPointF &cell);

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QRectF shownArea() const;
    QPointF toCells(const QPointF &place) const;
    QPointF toPlace(const QPointF &cell) const;
    int markAt(const QPointF &place) const;
    void paintMarks(QPainter &painter) const;
    void paintLight(QPainter &painter) const;
    void zoom(const QPointF &place, double factor);
    void dragMark(const QPointF &place);
    void cancelDrag();

    QImage m_picture;
    QRectF m_part; ///< cells that the picture covers
    QString m_text;
    QSize m_dem;
    QRectF m_view; ///< visible cells
    QVector<PreviewMark> m_marks;
    std::optional<double> m_light;
    bool m_outdated = false;
    QPixmap m_marker;

    std::optional<QPointF> m_pressed; ///< place where the left button was pressed; empty: it is not pressed
    QRectF m_viewAtPress;
    QVector<PreviewMark> m_marksAtPress;
    int m_draggedMark = -1;  ///< index of the mark under the pressed button; -1: there is none
    bool m_dragging = false; ///< the mouse was moved far enough for a drag
};
