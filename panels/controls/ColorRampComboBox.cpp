#include "panels/controls/ColorRampComboBox.h"

#include <QPainter>
#include <QStylePainter>
#include <QStyledItemDelegate>

Q_DECLARE_METATYPE(QuvoColorDef)

namespace
{

enum Role
{
    FileRole = Qt::UserRole,
    ToolFileRole,
    EntriesRole
};

constexpr int gap = 6; // pixels between the parts of a row, and around them

/// The pattern behind a colour, which is visible where the colour is not opaque.
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

/// Paints a row: the ramp over half of its width, the name, and a square in the colour of the cells without
/// data.
void paintTable(QPainter &painter, const QRect &row, const QString &name, const QList<QuvoColorDef> &entries,
                const QPalette &palette, const QColor &textColor)
{
    const QRect area = row.adjusted(gap, 3, -gap, -3);
    const QRect ramp(area.left(), area.top(), area.width() / 2, area.height());
    const int side = qMin(area.height(), 16);
    const QRect swatch(area.right() - side + 1, area.center().y() - side / 2, side, side);
    paintRamp(painter, ramp, entries, palette);
    if (const QuvoColorDef *noData = noDataEntry(entries)) {
        paintChecker(painter, swatch);
        painter.fillRect(swatch, noData->color);
        painter.setPen(palette.color(QPalette::Mid));
        painter.drawRect(swatch.adjusted(0, 0, -1, -1));
    }
    const QRect text(ramp.right() + gap, area.top(), swatch.left() - ramp.right() - 2 * gap, area.height());
    painter.setPen(textColor);
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft,
                     painter.fontMetrics().elidedText(name, Qt::ElideMiddle, text.width()));
}

class RampDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const bool selected = option.state & QStyle::State_Selected;
        painter->save();
        painter->fillRect(option.rect, option.palette.color(selected ? QPalette::Highlight : QPalette::Base));
        paintTable(*painter, option.rect, index.data().toString(),
                   index.data(EntriesRole).value<QList<QuvoColorDef>>(), option.palette,
                   option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override
    {
        return {option.fontMetrics.averageCharWidth() * 40, option.fontMetrics.height() + 10};
    }
};

} // namespace

ColorRampComboBox::ColorRampComboBox(QWidget *parent)
    : QComboBox(parent)
{
    setItemDelegate(new RampDelegate(this));
    setMaxVisibleItems(20);
}

int ColorRampComboBox::putTable(const QString &name, const Table &table)
{
    int row = findData(table.file, FileRole);
    if (row < 0) {
        addItem(name);
        row = count() - 1;
    }
    setItemData(row, table.file, FileRole);
    setItemData(row, table.toolFile, ToolFileRole);
    setItemData(row, QVariant::fromValue(table.entries), EntriesRole);
    setItemData(row, table.file, Qt::ToolTipRole);
    update();
    return row;
}

QString ColorRampComboBox::copyOf(const QString &file) const
{
    const QString toolFile = table(findData(file, FileRole)).toolFile;
    return toolFile == file ? QString() : toolFile;
}

ColorRampComboBox::Table ColorRampComboBox::table(int row) const
{
    return {itemData(row, FileRole).toString(), itemData(row, ToolFileRole).toString(),
            itemData(row, EntriesRole).value<QList<QuvoColorDef>>()};
}

QSize ColorRampComboBox::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 44, QComboBox::sizeHint().height()};
}

QSize ColorRampComboBox::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 24, QComboBox::minimumSizeHint().height()};
}

void ColorRampComboBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    if (currentIndex() < 0)
        return;
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    paintTable(painter, field, currentText(), currentTable().entries, palette(),
               palette().color(isEnabled() ? QPalette::Normal : QPalette::Disabled, QPalette::ButtonText));
}
