#pragma once

#include "app/preview/map/scalebar.h"

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QSizeF>
#include <QVector>

class QPainter;

/// An observer on the map.
struct MapMark
{
    QPointF position; ///< cells of the map
    QPolygonF range;  ///< line of its maximum distance, in cells; empty: no limit
    int number = 0;   ///< its row, from 1; 0: no number is shown
    bool enabled = true;
    bool current = false;
};

/// Where cells of the map stand in a widget: `view`, in cells, fills `area`, in pixels.
struct Places
{
    QRectF view;
    QRectF area;

    QPointF toCells(const QPointF &place) const
    {
        return view.topLeft() + (place - area.topLeft()) * (view.width() / area.width());
    }
    QPointF toPlace(const QPointF &cell) const
    {
        return area.topLeft() + (cell - view.topLeft()) * (area.width() / view.width());
    }
    QPolygonF toPlaces(const QPolygonF &cells) const;
};

/// Draws the marks that are visible: discs with the numbers of their rows, small dots where there are many, and
/// the current one above all others.
void paintMarks(QPainter &painter, const QVector<MapMark> &marks, const Places &places);

/// Index of the mark at a place of the widget, the topmost of several; -1: there is none.
int markAt(const QVector<MapMark> &marks, const Places &places, const QPointF &place);

/// Draws a sun on the side that the light comes from, and an arrow in the direction of the light, in the upper
/// left corner of `area`. direction: azimuth in degrees clockwise from the upper edge.
void paintLight(QPainter &painter, const QRectF &area, double direction);

/// Draws a line with a light rim, so that it is seen on any colour, and a place on it.
void paintMapLine(QPainter &painter, const QPolygonF &line, const QPointF *place);

/// Draws the scale bar in the lower left corner of `area`; none where it has no length.
void paintScaleBar(QPainter &painter, const QRectF &area, const ScaleBar &bar);

/// Draws the line between the DEM and its product, at a share of the width, with a knob to take hold of.
void paintSwipe(QPainter &painter, const QRectF &area, double share);
