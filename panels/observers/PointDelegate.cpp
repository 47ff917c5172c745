#include "panels/observers/PointDelegate.h"

#include "panels/controls/numberfield.h"
#include "panels/observers/ObserverPointsModel.h"

#include <QComboBox>
#include <QLineEdit>

QWidget *PointDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    if (index.column() == ObserverPointsModel::ModeColumn) {
        auto combo = new QComboBox(parent);
        combo->addItems({altitudeModeText(AltitudeMode::Relative), altitudeModeText(AltitudeMode::Absolute)});
        return combo;
    }
    QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
    auto field = qobject_cast<QLineEdit *>(editor);
    if (field && isNumberColumn(index.column())) {
        const auto [lowest, highest, mayBeEmpty] = rangeOf(index.column());
        (mayBeEmpty ? makeOptionalNumberField : makeNumberField)(field, lowest, highest);
    }
    return editor;
}

void PointDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto combo = qobject_cast<QComboBox *>(editor))
        combo->setCurrentText(index.data(Qt::EditRole).toString());
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void PointDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (const auto combo = qobject_cast<QComboBox *>(editor))
        model->setData(index, combo->currentText());
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}
