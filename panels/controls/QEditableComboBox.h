#pragma once

#include <QComboBox>

/// A combo box in which a text of one's own may be typed. What is typed enters no list and is completed by
/// nothing, so that a typed -9 does not become another entry's -9999.
class QEditableComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit QEditableComboBox(QWidget *parent = nullptr);

    /// The current entry's row; -1 when the text was typed, which is when it differs from the entry's. (Typing
    /// does not change Qt's current index.)
    int chosenIndex() const;

    /// Chooses a row and shows its text in place of a typed one. A row that is current already is chosen anew:
    /// textReset() follows where the text changed and the index did not.
    void choose(int row);

    /// Shows a text as if it had been typed. No signal follows.
    void showTyped(const QString &text);

    /// Puts other texts in the place of the entries', in another language, and keeps what was typed. No signal
    /// follows.
    void translateItems(const QStringList &texts);

signals:
    /// A typed text was replaced by that of the current row, by choose() or in the list.
    void textReset();

private:
    int m_editedRow = -1; ///< current row while another text was typed; -1: none was
};
