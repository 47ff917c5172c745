#include "panels/controls/scalecombo.h"

#include "panels/controls/QEditableComboBox.h"
#include "panels/controls/labels.h"

#include <QFrame>
#include <QLineEdit>
#include <QVBoxLayout>

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
