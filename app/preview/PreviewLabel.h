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
    QPolygonF range;  ///< how far it sees, in cells; empty: without limit
    bool enabled = true;
    bool current = false;
};

/// A picture of a DEM, or of its product, that can be zoomed by the wheel and dragged about, with marks over
/// it. It knows cells and nothing of coordinates: columns to the right and rows down from the DEM's upper left
/// corner.
class PreviewLabel : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewLabel(QWidget *parent = nullptr);

    /// The picture, and the cells that it covers; a null one leaves the text.
    void setPicture(const QImage &picture, const QRectF &part);
    const QImage &picture() const { return m_picture; }

    /// What stands in the place of a picture.
    void setText(const QString &text);

    /// Size of the DEM in cells, and the part of it that is shown.
    void setView(const QSize &dem, const QRectF &view);
    const QRectF &view() const { return m_view; }

    void setMarks(const QVector<PreviewMark> &marks);

    /// Azimuth of the light, clockwise from the upper edge in degrees; none: it is not drawn.
    void setLight(const std::optional<double> &direction);

    /// The picture is not that of the present options.
    void setOutdated(bool outdated);

    /// The cell at a place of the picture as clicked() tells it.
    QPointF cellAt(int x, int y, const QSize &shown) const;

    QSize sizeHint() const override { return {320, 300}; }
    QSize minimumSizeHint() const override { return {120, 100}; }

signals:
    /// A click on the picture, not the end of a drag: its place from the picture's upper left corner, and the
    /// picture's size, both in pixels of the widget.
    void clicked(int x, int y, QSize shown);

    /// The mouse is over a cell; left() when it is over none any more.
    void hovered(const QPointF &cell);
    void left();

    /// A click on a mark that is not the current one.
    void markClicked(int mark);

    /// The user wants another part to be seen.
    void viewChanged(const QRectF &view);

    /// A mark was dragged to another cell; while it is, the picture alone shows it there.
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
    QRectF shown() const;
    QPointF toCells(const QPointF &place) const;
    QPointF toPlace(const QPointF &cell) const;
    int markAt(const QPointF &place) const;
    void paintMarks(QPainter &painter) const;
    void paintLight(QPainter &painter) const;
    void zoom(const QPointF &place, double factor);
    void dragMark(const QPointF &place);

    QImage m_picture;
    QRectF m_part;
    QString m_text;
    QSize m_dem;
    QRectF m_view;
    QVector<PreviewMark> m_marks;
    std::optional<double> m_light;
    bool m_outdated = false;
    QPixmap m_marker;

    std::optional<QPointF> m_pressed; ///< where the left button went down
    QRectF m_viewAtPress;
    int m_draggedMark = -1;
    bool m_dragging = false;
};
