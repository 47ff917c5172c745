#pragma once

#include "app/preview/map/mappicture.h"
#include "app/preview/mapmarks.h"

#include <QWidget>

#include <optional>

/// A map of a DEM and of its product with marks over it, which the user zooms and moves.
///
/// Positions are cells of the map: columns to the right and rows down from its upper left corner. Places are
/// pixels of the widget. The class knows nothing of the DEM's coordinates.
class MapView : public QWidget
{
    Q_OBJECT

public:
    explicit MapView(QWidget *parent = nullptr);

    /// Shows other layers, at the opacity and the swipe of `map`. Without a ground the text is shown instead.
    void setMap(const MapPicture &map);
    const MapPicture &map() const { return m_map; }

    /// What the user can do, or why there is no product: across the map, or in its place while there is none.
    void setText(const QString &text);

    /// `dem`: size of the map in cells. `view`: the visible cells.
    void setView(const QSize &dem, const QRectF &view);
    const QRectF &view() const { return m_view; }

    void setMarks(const QVector<MapMark> &marks);

    /// A line over the map, in cells; empty: none.
    void setLine(const QPolygonF &line);

    /// A place on that line; empty: none.
    void setLinePlace(const std::optional<QPointF> &cell);

    /// Draws the direction of the light, an azimuth in degrees clockwise from the upper edge. Empty: no light
    /// is drawn.
    void setLight(const std::optional<double> &direction);

    /// The scale bar's length on the ground, in metres a cell to the right; 0: no bar. known: false where the
    /// length of a unit of the coordinates is not known.
    void setScale(double metresPerCell, bool known);

    /// Draws the product pale, because it does not show the present options. Another product ends that.
    void setOutdated(bool outdated);

    /// Whether a double click zooms. It does not where a click already does something.
    void setDoubleClickZooms(bool zooms) { m_doubleClickZooms = zooms; }

    /// The cell at the place that clicked() reports.
    QPointF cellAt(int x, int y, const QSize &shown) const;

    /// The visible cells with the marks over them, in a picture of as many pixels as the screen shows.
    QImage picture();

    QSize sizeHint() const override { return {560, 460}; }
    QSize minimumSizeHint() const override { return {200, 150}; }

public slots:
    void slot_zoomIn();
    void slot_zoomOut();
    void slot_showWhole();

signals:
    /// The user clicked the map without dragging it, or pressed Insert, which stands for a click in its middle.
    /// `x` and `y` count from the map's upper left corner, `shown` is the map's size, all in pixels of the
    /// widget.
    void clicked(int x, int y, QSize shown);

    /// The mouse is over a cell.
    void hovered(const QPointF &cell);
    /// The mouse is no longer over a cell.
    void left();

    /// The user clicked a mark other than the current one. `mark`: its index.
    void markClicked(int mark);
    /// The user drags a mark (markMoving()), and has let it go at a cell (markMoved()). When the user gives up
    /// a drag with Escape, markMoving() reports the cell where the drag began. Each press of an arrow key with
    /// Shift moves the current mark, with both signals. byKey: the mark was moved so, and not dragged.
    void markMoving(int mark, const QPointF &cell);
    void markMoved(int mark, const QPointF &cell, bool byKey);

    /// The user zoomed or moved the view. The widget shows it once setView() is called.
    void viewChanged(const QRectF &view);

    /// The user asked for the DEM alone (0) or the product (1) by a key.
    void opacityChosen(double opacity);
    /// The user dragged the swipe line to a share of the map's width.
    void swipeMoved(double share);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    /// What a pressed mouse button moves.
    enum class Drag
    {
        None,
        View,
        Mark,
        Swipe
    };

    QRectF shownArea() const;
    QPointF toCells(const QPointF &place) const;
    QPointF toPlace(const QPointF &cell) const;
    Places places() const;
    void drawCanvases();
    void paintMap(QPainter &painter);
    void paintOver(QPainter &painter);
    void paintText(QPainter &painter);
    bool isOnSwipe(const QPointF &place) const;
    void zoom(const QPointF &place, double factor);
    void hover(const QPointF &place);
    void moveCurrentMark(const QPointF &by);
    void dragMark(const QPointF &place);
    void dragSwipe(const QPointF &place);
    void cancelDrag();
    Qt::CursorShape restingCursor(const QPointF &place) const;

    MapPicture m_map;
    QImage m_ground;           ///< the ground in pixels of the screen; a null image has to be drawn anew
    QImage m_product;          ///< the product over the ground, in pixels of the screen
    bool m_hasProduct = false; ///< whether m_product shows the present layers
    QString m_text;
    QSize m_dem;
    QRectF m_view;
    QVector<MapMark> m_marks;
    QPolygonF m_line;
    std::optional<QPointF> m_linePlace;
    std::optional<double> m_light;
    double m_metresPerCell = 0.0;
    bool m_scaleKnown = true;
    bool m_outdated = false;
    bool m_doubleClickZooms = true;
    Drag m_drag = Drag::None;
    int m_draggedMark = -1;
    QPointF m_grip;                   ///< from the mouse to the dragged mark's place, in pixels
    std::optional<QPointF> m_pressed; ///< place where the left button went down
    bool m_moved = false;             ///< the mouse has left that place
    QRectF m_viewAtPress;
    QVector<MapMark> m_marksAtPress;
};
