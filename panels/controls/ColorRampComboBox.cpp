#include "panels/controls/ColorRampComboBox.h"

#include "colortable/editor/tablepainting.h"

#include <QPainter>
#include <QStylePainter>

namespace
{

enum Role
{
    FileRole = Qt::UserRole,
    ToolFileRole,
    EntriesRole
};

} // namespace

ColorRampComboBox::ColorRampComboBox(QWidget *parent)
    : QComboBox(parent)
{
    setItemDelegate(new TableRowDelegate(EntriesRole, 40, this));
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

bool ColorRampComboBox::holds(const QString &file) const
{
    return findData(file, FileRole) >= 0;
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
    paintTableRow(painter, field, currentText(), currentTable().entries, palette(),
                  palette().color(isEnabled() ? QPalette::Normal : QPalette::Disabled, QPalette::ButtonText));
}
