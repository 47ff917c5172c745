#include "panels/controls/QEditableComboBox.h"

#include <QLineEdit>
#include <QSignalBlocker>

QEditableComboBox::QEditableComboBox(QWidget *parent)
    : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_editedRow = currentIndex(); });
    connect(this, qOverload<int>(&QComboBox::activated), this, [this](int row) {
        const bool sameRow = row == m_editedRow; // its index does not change, so Qt emits no other signal
        m_editedRow = -1;
        if (sameRow)
            emit textReset();
    });
}

int QEditableComboBox::chosenIndex() const
{
    return currentText() == itemText(currentIndex()) ? currentIndex() : -1;
}

void QEditableComboBox::choose(int row)
{
    if (row != currentIndex()) {
        setCurrentIndex(row);
        return;
    }
    if (currentText() == itemText(row))
        return;
    setEditText(itemText(row));
    emit textReset();
}

void QEditableComboBox::showTyped(const QString &text)
{
    setEditText(text);
    m_editedRow = currentIndex();
}

void QEditableComboBox::translateItems(const QStringList &texts)
{
    const QSignalBlocker blocker(this);
    const bool typed = chosenIndex() < 0;
    const QString text = currentText();
    for (int row = 0; row < qMin(count(), static_cast<int>(texts.size())); ++row)
        setItemText(row, texts.at(row));
    if (typed)
        setEditText(text);
    else
        lineEdit()->setCursorPosition(0); // of a long entry, the beginning is visible
}
