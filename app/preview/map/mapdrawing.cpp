#include "app/preview/map/mapdrawing.h"

#include "app/preview/map/mappicture.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

void MapDrawing::add(const MapDrawing &other, const QPointF &by)
{
    for (Box box : other.boxes) {
        box.place.translate(by);
        boxes += box;
    }
    for (Line line : other.lines) {
        for (QPointF &point : line.points)
            point += by;
        lines += line;
    }
    for (Text text : other.texts) {
        text.place += by;
        texts += text;
    }
}

void paintDrawing(QPainter &painter, const MapDrawing &drawing, const QFont &font, const QColor &ink,
                  const QColor &paper)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const MapDrawing::Box &box : drawing.boxes) {
        painter.fillRect(box.place, box.hatched ? voidHatch(paper, 1.0) : QBrush(box.fill));
        if (!box.framed)
            continue;
        QColor frame = ink;
        frame.setAlphaF(0.5);
        painter.setPen(QPen(frame, 0.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(box.place);
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
    for (const MapDrawing::Line &line : drawing.lines) {
        painter.setPen(QPen(line.color.isValid() ? line.color : ink, line.width));
        painter.drawPolyline(line.points.constData(), static_cast<int>(line.points.size()));
    }
    painter.setPen(ink);
    for (const MapDrawing::Text &text : drawing.texts) {
        QFont face = font;
        face.setBold(text.bold);
        painter.setFont(face);
        const double width = QFontMetricsF(face).horizontalAdvance(text.text);
        const double left = text.align == Qt::AlignRight ? width
            : text.align == Qt::AlignHCenter             ? width / 2
                                                         : 0.0;
        painter.drawText(text.place - QPointF(left, 0.0), text.text);
    }
    painter.restore();
}

QString elided(const QString &text, double room, const TextWidth &widthOf)
{
    if (widthOf(text, false) <= room)
        return text;
    QString shorter = text;
    while (shorter.size() > 2) {
        const int middle = static_cast<int>(shorter.size()) / 2;
        shorter.remove(middle, 1);
        const QString candidate = shorter.left(middle) + QStringLiteral("…") + shorter.mid(middle);
        if (widthOf(candidate, false) <= room)
            return candidate;
    }
    return shorter;
}
