#include "dataset/QuvoFilerDialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QVariant>

namespace
{

constexpr char answersProperty[] = "quvoFilerAnswers";
constexpr char shownProperty[] = "quvoFilerShown";

} // namespace

QString QuvoFilerDialog::getSelection(QWidget *parent, Kind kind, const QString &title, const QString &start,
                                      const QString &filter)
{
    const QVariant beforehand = qApp->property(answersProperty);
    if (beforehand.isValid()) {
        QStringList answers = beforehand.toStringList();
        const QString answer = answers.isEmpty() ? QString() : answers.takeFirst();
        qApp->setProperty(answersProperty, answers);
        qApp->setProperty(shownProperty,
                          qApp->property(shownProperty).toStringList()
                              << QStringList{title, start, filter}.join('|'));
        return answer;
    }
    if (kind == OpenFile)
        return QFileDialog::getOpenFileName(parent, title, start, filter);
    return QFileDialog::getSaveFileName(parent, title, start, filter, nullptr,
                                        QFileDialog::DontConfirmOverwrite);
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
