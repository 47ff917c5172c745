#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// The file dialogs of the program.
///
/// A test answers beforehand: the paths are taken one a dialog instead of showing it, and what each dialog
/// would have been opened with is kept. They live in a property of the application object.
class QuvoFilerDialog
{
public:
    enum Kind
    {
        OpenFile,
        SaveFile
    };

    /// Asks for a file; an empty text when nothing was chosen. start: the folder or file to begin with. A file
    /// dialog that saves does not ask before overwriting: the run does, when it starts.
    static QString getSelection(QWidget *parent, Kind kind, const QString &title, const QString &start,
                                const QString &filter);

    /// From here on no dialog is shown; each takes the next of the paths, and an empty one when they run out.
    static void answerBeforehand(const QStringList &paths);

    /// "title|start|filter" of the dialogs that were not shown; forgets them.
    static QStringList takeShown();
};
