#include "dataset/QuvoFilerDialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QVariant>

#include <optional>

namespace
{

constexpr char answersProperty[] = "quvoFilerAnswers";
constexpr char shownProperty[] = "quvoFilerShown";

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
    if (kind == OpenFolder)
        return QFileDialog::getExistingDirectory(parent, title, start);
    if (kind == OpenFile)
        return QFileDialog::getOpenFileName(parent, title, start, filter);
    return QFileDialog::getSaveFileName(parent, title, start, filter, nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}

QStringList QuvoFilerDialog::getFiles(QWidget *parent, const QString &title, const QString &start,
                                      const QString &filter)
{
    if (const auto answer = answerOf(title, start, filter))
        return answer->isEmpty() ? QStringList() : answer->split(QLatin1Char('\n'));
    return QFileDialog::getOpenFileNames(parent, title, start, filter);
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
