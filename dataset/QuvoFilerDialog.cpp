#include "dataset/QuvoFilerDialog.h"

#include <QApplication>
#include <QDataStream>
#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QTreeView>
#include <QVariant>

#include <algorithm>
#include <optional>

namespace
{

constexpr char answersProperty[] = "quvoFilerAnswers";
constexpr char shownProperty[] = "quvoFilerShown";
constexpr char stateProperty[] = "quvoFilerState";

struct FilerState
{
    QSize size;       ///< empty: no dialog was shown yet
    QByteArray parts; ///< QFileDialog::saveState(): columns, splitter, view
    QString folder;   ///< of the last choice
};

FilerState readState()
{
    FilerState state;
    QDataStream stream(QuvoFilerDialog::state());
    stream.setVersion(QDataStream::Qt_5_15);
    stream >> state.size >> state.parts >> state.folder;
    return stream.status() == QDataStream::Ok ? state : FilerState{};
}

void writeState(const FilerState &state)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << state.size << state.parts << state.folder;
    QuvoFilerDialog::setState(bytes);
}

/// Makes the columns of Qt's own dialog (a desktop's has none) wide enough for usual names, sizes and dates,
/// and the dialog wide enough for the columns.
void widenColumns(QFileDialog &dialog)
{
    const auto files = dialog.findChild<QTreeView *>(QStringLiteral("treeView"));
    if (!files)
        return;
    constexpr int nameLength = 36;
    const QString date = QLocale().toString(QDateTime(QDate(2000, 12, 30), QTime(20, 0)), QLocale::ShortFormat);
    const QStringList samples{QString(nameLength, QLatin1Char('n')), QStringLiteral("1 023,99 GiB"),
                              QStringLiteral("jpeg File"), date};
    const QFontMetrics metrics = files->fontMetrics();
    constexpr int padding = 3; // average characters
    int width = 0;
    for (int column = 0; column < samples.size(); ++column) {
        const QString head = files->model()->headerData(column, Qt::Horizontal).toString();
        const int needed =
            std::max(metrics.horizontalAdvance(samples.at(column)), metrics.horizontalAdvance(head))
            + padding * metrics.averageCharWidth();
        files->header()->resizeSection(column, needed);
        width += needed;
    }
    constexpr int besides = 200; // pixels: the list of places
    dialog.resize(QSize(width + besides, dialog.sizeHint().height()).expandedTo(dialog.sizeHint()));
}

/// Shows a folder, or a file in its folder. Empty: the current directory.
void goTo(QFileDialog &dialog, const QString &start)
{
    const QFileInfo first(start);
    dialog.setDirectory(first.isDir() ? start : first.path());
    if (!start.isEmpty() && !first.isDir())
        dialog.selectFile(first.fileName());
}

/// Returns what the user chose.
QStringList runDialog(QFileDialog &dialog, const QString &start)
{
    FilerState state = readState();
    dialog.setViewMode(QFileDialog::Detail);
    if (state.size.isEmpty() || !dialog.restoreState(state.parts))
        widenColumns(dialog);
    else
        dialog.resize(state.size);
    goTo(dialog,
         start.isEmpty() ? state.folder : start); // restoreState() goes to the folder of the last choice
    const bool accepted = dialog.exec() == QDialog::Accepted;
    state.size = dialog.size();
    state.parts = dialog.saveState();
    const QStringList chosen = accepted ? dialog.selectedFiles() : QStringList();
    if (!chosen.isEmpty())
        state.folder = dialog.fileMode() == QFileDialog::Directory ? chosen.first()
                                                                   : QFileInfo(chosen.first()).absolutePath();
    writeState(state);
    return chosen;
}

/// The answer that a test supplied; nothing when the dialog must be shown.
std::optional<QString> answerOf(const QString &title, const QString &start, const QString &filter)
{
    const QVariant beforehand = qApp->property(answersProperty);
    if (!beforehand.isValid())
        return std::nullopt;
    QStringList answers = beforehand.toStringList();
    const QString answer = answers.isEmpty() ? QString() : answers.takeFirst();
    qApp->setProperty(answersProperty, answers);
    qApp->setProperty(shownProperty,
                      qApp->property(shownProperty).toStringList()
                          << QStringList{title, start, filter}.join('|'));
    return answer;
}

} // namespace

QString QuvoFilerDialog::getSelection(QWidget *parent, Kind kind, const QString &title, const QString &start,
                                      const QString &filter)
{
    if (const auto answer = answerOf(title, start, filter))
        return *answer;
    QFileDialog dialog(parent, title, {}, filter);
    dialog.setAcceptMode(kind == SaveFile ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(kind == SaveFile       ? QFileDialog::AnyFile
                           : kind == OpenFile ? QFileDialog::ExistingFile
                                              : QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, kind == OpenFolder);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, kind == SaveFile);
    return runDialog(dialog, start).value(0);
}

QByteArray QuvoFilerDialog::state()
{
    return qApp->property(stateProperty).toByteArray();
}

void QuvoFilerDialog::setState(const QByteArray &state)
{
    qApp->setProperty(stateProperty, state);
}

QStringList QuvoFilerDialog::getFiles(QWidget *parent, const QString &title, const QString &start,
                                      const QString &filter)
{
    if (const auto answer = answerOf(title, start, filter))
        return answer->isEmpty() ? QStringList() : answer->split(QLatin1Char('\n'));
    QFileDialog dialog(parent, title, {}, filter);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    return runDialog(dialog, start);
}

void QuvoFilerDialog::answerBeforehand(const QStringList &paths)
{
    qApp->setProperty(answersProperty, paths);
    qApp->setProperty(shownProperty, QStringList());
}

QStringList QuvoFilerDialog::takeShown()
{
    const QStringList shown = qApp->property(shownProperty).toStringList();
    qApp->setProperty(shownProperty, QStringList());
    return shown;
}
