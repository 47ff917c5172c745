#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVector>

#include <functional>

class QFont;
class QPainter;

/// Legend, scale bar and histogram as plain shapes, so that a window and a saved picture draw the same. Lengths
/// are points, y grows downwards.
struct MapDrawing
{
    /// A filled rectangle.
    struct Box
    {
        QRectF place;
        QColor fill;
        bool hatched = false; ///< filled with the hatch of cells without data instead
        bool framed = true;
    };
    struct Line
    {
        QVector<QPointF> points;
        QColor color; ///< not valid: the colour of texts
        double width = 1.0;
    };
    struct Text
    {
        QPointF place; ///< on the base line, at the end that `align` names
        QString text;
        Qt::AlignmentFlag align = Qt::AlignLeft;
        bool bold = false;
    };

    QVector<Box> boxes; ///< drawn in this order, before the lines and the texts
    QVector<Line> lines;
    QVector<Text> texts;
    QSizeF size{0.0, 0.0};

    /// Adds the other drawing's shapes, moved by `by`. The size stays.
    void add(const MapDrawing &other, const QPointF &by);
};

/// Measures the width of a text in points.
using TextWidth = std::function<double(const QString &text, bool bold)>;

/// Height of the letters that drawings reckon with, in points.
constexpr double drawingTextSize = 11.0;

/// Draws the shapes in the painter's coordinates. ink: colour of texts and frames. paper: behind the hatch.
void paintDrawing(QPainter &painter, const MapDrawing &drawing, const QFont &font, const QColor &ink,
                  const QColor &paper);

/// The text, shortened with "…" in its middle to at most `room` points.
QString elided(const QString &text, double room, const TextWidth &widthOf);
