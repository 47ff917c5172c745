#include "colortable/editor/tablepainting.h"

#include <QPainter>
#include <QPalette>

void paintChecker(QPainter &painter, const QRect &area)
{
    constexpr int cell = 4;
    painter.save();
    painter.setClipRect(area);
    painter.fillRect(area, Qt::white);
    for (int y = 0; y * cell < area.height(); ++y) {
        for (int x = y % 2; x * cell < area.width(); x += 2)
            painter.fillRect(area.x() + x * cell, area.y() + y * cell, cell, cell, Qt::lightGray);
    }
    painter.restore();
}

void paintSwatch(QPainter &painter, const QRect &area, const QColor &color, const QPalette &palette)
{
    if (color.alpha() < 255)
        paintChecker(painter, area);
    painter.fillRect(area, color);
    painter.setPen(palette.color(QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(area.adjusted(0, 0, -1, -1));
}

void paintRamp(QPainter &painter, const QRect &area, const QList<QuvoColorDef> &entries,
               const QPalette &palette)
{
    const QList<QuvoColorDef> elevations = elevationEntries(entries);
    const qreal scale = painter.device()->devicePixelRatioF();
    QImage ramp(qMax(1, qRound(area.width() * scale)), 1, QImage::Format_ARGB32);
    for (int x = 0; x < ramp.width(); ++x)
        ramp.setPixelColor(x, 0,
                           rampColor(elevations, ramp.width() > 1 ? double(x) / (ramp.width() - 1) : 0.0));
    paintChecker(painter, area);
    painter.drawImage(area, ramp);
    painter.setPen(palette.color(QPalette::Mid));
    painter.drawRect(area.adjusted(0, 0, -1, -1));
}

void paintTableRow(QPainter &painter, const QRect &row, const QString &name, const QList<QuvoColorDef> &entries,
                   const QPalette &palette, const QColor &textColor)
{
    constexpr int gap = 6; // pixels between the parts of a row, and around them
    const QRect area = row.adjusted(gap, 3, -gap, -3);
    constexpr int narrow = 280; // a narrow row leaves more of its width to the name
    const QRect ramp(area.left(), area.top(), area.width() / (area.width() < narrow ? 3 : 2), area.height());
    const int side = qMin(area.height(), 16);
    const QRect swatch(area.right() - side + 1, area.center().y() - side / 2, side, side);
    paintRamp(painter, ramp, entries, palette);
    if (const QuvoColorDef *noData = noDataEntry(entries))
        paintSwatch(painter, swatch, noData->color, palette);
    const QRect text(ramp.right() + gap, area.top(), swatch.left() - ramp.right() - 2 * gap, area.height());
    painter.setPen(textColor);
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft,
                     painter.fontMetrics().elidedText(name, Qt::ElideMiddle, text.width()));
}

TableRowDelegate::TableRowDelegate(int entriesRole, int characters, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_entriesRole(entriesRole)
    , m_characters(characters)
{ }

void TableRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    const bool isSelected = option.state & QStyle::State_Selected;
    const QPalette &palette = option.palette;
    painter->save();
    painter->fillRect(option.rect, palette.color(isSelected ? QPalette::Highlight : QPalette::Base));
    paintTableRow(*painter, option.rect, index.data().toString(),
                  index.data(m_entriesRole).value<QList<QuvoColorDef>>(), palette,
                  palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->restore();
}

QSize TableRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {option.fontMetrics.averageCharWidth() * m_characters, option.fontMetrics.height() + 10};
}
