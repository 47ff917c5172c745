#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QWidget;

/// The message boxes of the program. Texts are shown as plain text.
///
/// A test answers beforehand: answers() are taken one a box instead of showing it, and what the boxes would
/// have said is kept. They live in a property of the application object.
class Prompt
{
public:
    static void warning(QWidget *parent, const QString &text);
    static void critical(QWidget *parent, const QString &text);
    /// Whether yes was answered; "no" is the default.
    static bool question(QWidget *parent, const QString &text);

    /// From here on no box is shown; each takes the next of the answers, and "no" when they run out.
    static void answerBeforehand(const QVector<bool> &answers);

    /// The texts of the boxes that were not shown, as "title: text"; forgets them.
    static QStringList takeShown();
};
