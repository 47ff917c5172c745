#pragma once

#include <QComboBox>

/// A combo box in which the user may type a text of their own. A typed text is not added to the list, and it is
/// not completed, so that a typed -9 does not become the entry -9999.
class QEditableComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit QEditableComboBox(QWidget *parent = nullptr);

    /// The row of the current entry; -1 when the shown text differs from the entry's, which means that it was
    /// typed. (Typing does not change Qt's current index.)
    int chosenIndex() const;

    /// Chooses a row and shows its text in place of a typed one. currentIndexChanged() follows for another row;
    /// textReset() follows when the row was the current one and a typed text was replaced.
    void choose(int row);

    /// Shows a text as if the user had typed it. No signal follows.
    void showTyped(const QString &text);

    /// Replaces the texts of the entries, after a change of the language, and keeps a typed text. No signal
    /// follows.
    void translateItems(const QStringList &texts);

signals:
    /// A typed text was replaced by the text of the current row, by choose() or by the user in the list.
    void textReset();

private:
    int m_editedRow = -1; ///< the row that was current when a text was typed; -1: no text was typed
};
