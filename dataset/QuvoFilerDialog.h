#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QWidget;

/// The file dialogs of the program. Size, columns and the folder of the last choice are remembered for all of
/// them while the program runs, in a property of the application object; state() is for those who store it.
///
/// A test can supply the answers: then no dialog is shown, each call returns the next of the supplied paths,
/// and its arguments are recorded. Both lists are properties of the application object.
class QuvoFilerDialog
{
public:
    enum Kind
    {
        OpenFile,
        SaveFile,
        OpenFolder
    };

    /// Lets the user choose a file or a folder. Returns its path, or an empty text when the user cancels.
    /// start: the folder or file shown first; empty: the folder in which something was chosen last. A dialog
    /// that saves does not ask before overwriting, because the run asks when it starts.
    static QString getSelection(QWidget *parent, Kind kind, const QString &title, const QString &start,
                                const QString &filter);

    /// Size, columns and folder, in bytes to be stored. Empty before the first dialog.
    static QByteArray state();
    /// Restores them; bytes that are no state are ignored.
    static void setState(const QByteArray &state);

    /// Lets the user choose several existing files. Empty when the user cancels. A supplied answer holds their
    /// paths, separated by line feeds.
    static QStringList getFiles(QWidget *parent, const QString &title, const QString &start,
                                const QString &filter);

    /// From here on no dialog is shown: each call returns the next of the paths, and an empty one when none is
    /// left.
    static void answerBeforehand(const QStringList &paths);

    /// Returns "title|start|filter" of each dialog that was not shown, and clears the record.
    static QStringList takeShown();
};
