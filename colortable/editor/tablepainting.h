#pragma once

#include "colortable/QuvoColorDef.h"

#include <QColor>
#include <QRect>
#include <QStyledItemDelegate>

class QPainter;
class QPalette;

/// Paints the pattern that shows behind a colour which is not opaque.
void paintChecker(QPainter &painter, const QRect &area);

/// Paints a framed square in a colour, over that pattern.
void paintSwatch(QPainter &painter, const QRect &area, const QColor &color, const QPalette &palette);

/// Paints the ramp of a table from its first to its last elevation.
void paintRamp(QPainter &painter, const QRect &area, const QList<QuvoColorDef> &entries,
               const QPalette &palette);

/// Paints a row of a list of tables: the ramp, the name, and a square in the colour of
/// the cells without data.
void paintTableRow(QPainter &painter, const QRect &row, const QString &name, const QList<QuvoColorDef> &entries,
                   const QPalette &palette, const QColor &textColor);

/// Paints the rows of a list of tables by paintTableRow().
class TableRowDelegate : public QStyledItemDelegate
{
public:
    /// entriesRole: role of the item's data with the table, a QList<QuvoColorDef>. characters: wanted width of
    /// a row.
    TableRowDelegate(int entriesRole, int characters, QObject *parent);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    int m_entriesRole;
    int m_characters;
};
