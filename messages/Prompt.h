#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QWidget;

/// The message boxes of the program. Texts are shown as plain text.
///
/// A test can supply the answers: then no box is shown, each box gets the next of the supplied answers, and its
/// text is recorded. Both lists are properties of the application object.
class Prompt
{
public:
    static void warning(QWidget *parent, const QString &text);
    static void critical(QWidget *parent, const QString &text);
    /// Returns whether the user answered yes; "no" is the default button.
    static bool question(QWidget *parent, const QString &text);

    enum SaveAnswer
    {
        Save,
        Discard,
        Cancel
    };
    /// Asks whether to save changes before they are lost. A supplied answer "yes" saves, "no" discards.
    static SaveAnswer saveQuestion(QWidget *parent, const QString &text);

    /// Asks which of the buttons' texts is wanted, the first by default. Returns its index; -1 when the user
    /// cancels. A supplied answer "yes" is the first button, "no" the last.
    static int choice(QWidget *parent, const QString &text, const QStringList &buttons);

    /// Shows a line beside a button that was used, to confirm what it did. The line goes by itself.
    static void notice(QWidget *button, const QString &text);

    /// From here on no box is shown: each gets the next of the answers, and "no" when none is left.
    static void answerBeforehand(const QVector<bool> &answers);

    /// Returns "title: text" of each box, and the text of each notice, that was not shown, and clears the
    /// record.
    static QStringList takeShown();
};
