#include "panels/controls/scalecombo.h"

#include "messages/label.h"

#include <QFrame>
#include <QVBoxLayout>

QStringList scaleLabels()
{
    return {labelText({"MESS_UNIT_MEME_XYZ", "X, Y et Z sont dans la même unité (1)"}),
            labelText({"MESS_UNIT_XY_M_Z_FT", "X et Y sont en mètres, Z en pieds (0.31)"}),
            labelText({"MESS_UNIT_XY_DEG_Z_M", "X et Y sont en degrés, Z en mètres (111120)"}),
            labelText({"MESS_UNIT_XY_DEG_Z_FT", "X et Y sont en degrés, Z en pieds (370400)"})};
}

QEditableComboBox *makeScaleCombo(QFrame *frame)
{
    auto combo = new QEditableComboBox(frame);
    combo->addItems(scaleLabels());
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(24);
    combo->lineEdit()->setCursorPosition(0);
    auto layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(combo);
    return combo;
}

void showScale(QEditableComboBox &combo, int scaleIndex, const QString &scaleText)
{
    if (scaleIndex >= 0)
        combo.choose(scaleIndex);
    else
        combo.showTyped(scaleText);
}
